#include "middleware/XVDataBase_CR_Middleware.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "support/trace/XVArquivoRecusado.h"
#include "support/trace/XVProfiler.h"

namespace {

// One CRC over the bytes of the fields, in memory order. They are laid side by side first: eight bytes
// together cost less than one alone.
template <class... TCampos>
XVUInt64 CrcDosCampos(TCampos... campos) {
    std::array<XVByte, (sizeof(campos) + ...)> aBytes;
    XVByte* p = aBytes.data();
    ((std::memcpy(p, &campos, sizeof(campos)), p += sizeof(campos)), ...);
    return XVCrc64(aBytes.data(), aBytes.size());
}

}  // namespace

CXVDataBase_CR_Middleware::CXVDataBase_CR_Middleware()
    : CXVDataBase(XV_DF),
      m_IndexIntegracao(k_pszArquivoIndexIntegracao, this),
      m_Integracao(k_pszArquivoIntegracao, this, k_uiMinimoAbertos),
      m_JSONIntegracao(k_pszArquivoJSONIntegracao, this, k_uiMinimoAbertos),
      m_MensagemIntegracao(k_pszArquivoMensagemIntegracao, this, k_uiMinimoAbertos),
      m_JSONRetornoIntegracao(k_pszArquivoJSONRetornoIntegracao, this, k_uiMinimoAbertos),
      m_ChaveRegistroParaTerceiro(k_pszArquivoChaveRegistroParaTerceiro, this),
      m_DataHoraIntegracao(k_pszArquivoDataHoraIntegracao, this) {}

CXVDataBase_CR_Middleware::~CXVDataBase_CR_Middleware() {
    XVIgnora(Finaliza());
}

HRESULT CXVDataBase_CR_Middleware::OnInicializa() {
    XV_ESCOPO();
    XV_CHECK_SUPER(CXVDataBase, OnInicializa());
    // The readers of the log know the blanks of these texts, which the formatter would take away.
    using EColuna = EColuna_Indexacao_Middleware;
    // Repeats are allowed: external systems number orders, products and customers apart, so one key and
    // system may belong to several integrations.
    XV_CHECK_TEXTO(m_IndexIntegracao.IncluiIndex(this, EColuna::eIndexacao_ChaveIntegracaoComSistemaTerceiro,
                                                 true, true),
                   "m_IndexIntegracao.IncluiIndex(this, "
                   "EColuna_Indexacao_Middleware::eIndexacao_ChaveIntegracaoComSistemaTerceiro, true )");
    XV_CHECK_TEXTO(m_IndexIntegracao.IncluiIndex(this, EColuna::eIndexacao_DMCIntegracao),
                   "m_IndexIntegracao.IncluiIndex(this, "
                   "EColuna_Indexacao_Middleware::eIndexacao_DMCIntegracao )");
    XV_CHECK_TEXTO(m_IndexIntegracao.IncluiIndex(this, EColuna::eIndexacao_ChaveIntegracao, true, true),
                   "m_IndexIntegracao.IncluiIndex(this, "
                   "EColuna_Indexacao_Middleware::eIndexacao_ChaveIntegracao , true, true)");
    XV_CHECK(m_ChaveRegistroParaTerceiro.IncluiIndex(
        this, EColuna_Indexacao_ChaveRegistroParaTerceiro::eIndexacao_SistemaTipoIntegracaoChaveTelvo, false,
        true));
    XV_CHECK(m_ChaveRegistroParaTerceiro.IncluiIndex(
        this, EColuna_Indexacao_ChaveRegistroParaTerceiro::eIndexacao_SistemaTipoIntegracaoIDTerceiro, false,
        true));
    XV_CHECK_TEXTO(
        m_DataHoraIntegracao.IncluiIndex(
            this, EColuna_Indexacao_DataHoraIntegracao::eIndexacao_SistemaTipoIntegracaoTipoData, false,
            true),
        "m_DataHoraIntegracao .IncluiIndex(this, "
        "EColuna_Indexacao_DataHoraIntegracao::eIndexacao_SistemaTipoIntegracaoTipoData , false, true)");
    return S_OK;
}

HRESULT CXVDataBase_CR_Middleware::OnFinaliza() {
    XV_ESCOPO();
    m_mapaDias.clear();
    m_IndexIntegracao.RemoveDeclaracoesIndex();
    m_ChaveRegistroParaTerceiro.RemoveDeclaracoesIndex();
    m_DataHoraIntegracao.RemoveDeclaracoesIndex();
    XV_CHECK_SUPER(CXVDataBase, OnFinaliza());
    return S_OK;
}

bool CXVDataBase_CR_Middleware::EstaDiaAberto(XVUInt64 uiChaveNomeArquivo) const {
    return m_Integracao.TemArquivoAberto(uiChaveNomeArquivo) &&
           m_JSONIntegracao.TemArquivoAberto(uiChaveNomeArquivo) &&
           m_MensagemIntegracao.TemArquivoAberto(uiChaveNomeArquivo) &&
           m_JSONRetornoIntegracao.TemArquivoAberto(uiChaveNomeArquivo);
}

HRESULT CXVDataBase_CR_Middleware::RecusaMembro(XVUInt64 uiChaveNomeArquivo,
                                                const std::string& sPadrao) const {
    const std::string sNome = XVNomeArquivo::ChaveParaNome(uiChaveNomeArquivo, sPadrao);
    std::string sPath;
    if (FAILED(CXVDataBaseUtil::GetPathArquivo(GetModulo(), GetEmpresa(), sNome, &sPath))) sPath = sNome;
    return XVArquivoRecusado::Anota(E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS, sPath, this);
}

CXVGroupTextFileDynamic& CXVDataBase_CR_Middleware::GetGrupo(ETexto eTexto) {
    if (eTexto == ETexto::eJSON) return m_JSONIntegracao;
    return eTexto == ETexto::eMensagem ? m_MensagemIntegracao : m_JSONRetornoIntegracao;
}

HRESULT CXVDataBase_CR_Middleware::LeMaioresPonteiros(XVUInt64 uiChaveNomeArquivo, SDia* pDia) {
    if (!m_Integracao.TemMembro(uiChaveNomeArquivo)) return S_OK;
    XVUInt64 uiQuantidade = 0;
    XV_CHECK(m_Integracao.GetQtdRegistros(uiChaveNomeArquivo, &uiQuantidade));
    std::vector<REG_CR_INTEGRACAO_MIDDLEWARE_V2> aRegistros;
    if (uiQuantidade > 0) XV_CHECK(m_Integracao.LeColecao(uiChaveNomeArquivo, 1, uiQuantidade, aRegistros));
    for (const REG_CR_INTEGRACAO_MIDDLEWARE_V2& reg : aRegistros) {
        const std::array<XVUInt, k_uiTextos> aulPonteiros{
            reg.ulPonteiroJSONRegistro, reg.ulPonteiroMensagemRetorno, reg.ulPonteiroJSONRetornoIntegracao};
        for (std::size_t i = 0; i < k_uiTextos; ++i)
            pDia->aulMaior[i] = std::max(pDia->aulMaior[i], aulPonteiros[i]);
    }
    return S_OK;
}

HRESULT CXVDataBase_CR_Middleware::ConfereTextos(XVUInt64 uiChaveNomeArquivo, ETexto eTexto) {
    const auto uiTexto = static_cast<std::size_t>(eTexto);
    auto it = m_mapaDias.find(uiChaveNomeArquivo);
    if (it == m_mapaDias.end()) {
        SDia dia;
        XV_CHECK(LeMaioresPonteiros(uiChaveNomeArquivo, &dia));
        it = m_mapaDias.emplace(uiChaveNomeArquivo, dia).first;
    }
    if (it->second.abConferido[uiTexto]) return S_OK;
    CXVGroupTextFileDynamic& rGrupo = GetGrupo(eTexto);
    XVUInt64 uiQuantidade = 0;
    if (rGrupo.TemMembro(uiChaveNomeArquivo))
        XV_CHECK(rGrupo.GetQtdRegistros(uiChaveNomeArquivo, &uiQuantidade));
    if (it->second.aulMaior[uiTexto] > uiQuantidade) {
        XVProfiler::RecordError(
            this, "CXVDataBase_CR_Middleware::ConfereTextos", XVNomeFonte(), __LINE__,
            "Um registro de %s aponta o texto %u; textos no arquivo: %llu",
            XVNomeArquivo::ChaveParaNome(uiChaveNomeArquivo, m_Integracao.GetNomeArquivo()).c_str(),
            it->second.aulMaior[uiTexto], static_cast<unsigned long long>(uiQuantidade));
        return RecusaMembro(uiChaveNomeArquivo, rGrupo.GetNomeArquivo());
    }
    it->second.abConferido[uiTexto] = true;
    return S_OK;
}

XVUInt64 CXVDataBase_CR_Middleware::GetChaveIndexSistemaTerceiro(XVUInt64 uiChaveIntegracaoSistemaTerceiro,
                                                                 XVUInt eSistemaIntegracao) {
    if (uiChaveIntegracaoSistemaTerceiro == 0 || eSistemaIntegracao == 0) return 0;
    // Four zero bytes follow the system; in one value with it they are fetched at once.
    return CrcDosCampos(uiChaveIntegracaoSistemaTerceiro, XVUInt64{eSistemaIntegracao});
}

XVUInt64 CXVDataBase_CR_Middleware::GetChaveIndex(const REG_CR_INDEX_INTEGRACAO_V1& reg,
                                                  XVUInt uiColuna) const {
    switch (uiColuna) {
        case eIndexacao_ChaveIntegracaoComSistemaTerceiro:
            return GetChaveIndexSistemaTerceiro(reg.uiChaveIntegracaoSistemaTerceiro, reg.eSistemaIntegracao);
        case eIndexacao_DMCIntegracao:
            return GetChaveIndex(reg.regDmcIntegracao);
        case eIndexacao_ChaveIntegracao:
            return reg.uiChaveIntegracaoSistemaTerceiro;
        default:
            return 0;
    }
}

XVUInt64 CXVDataBase_CR_Middleware::GetChaveIndex(const REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2& reg,
                                                  XVUInt uiColuna) const {
    switch (uiColuna) {
        case eIndexacao_SistemaTipoIntegracaoChaveTelvo:
            return CrcDosCampos(reg.eSistemaIntegracao, reg.eTipoIntegracao, reg.regDmcRegistroTelvo,
                                reg.uiBaseDadosTerceiro);
        case eIndexacao_SistemaTipoIntegracaoIDTerceiro:
            return CrcDosCampos(reg.eSistemaIntegracao, reg.eTipoIntegracao,
                                reg.uiChaveRegistroSistemaTerceiro, reg.uiBaseDadosTerceiro);
        default:
            return 0;
    }
}

XVUInt64 CXVDataBase_CR_Middleware::GetChaveIndex(const REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1& reg,
                                                  XVUInt uiColuna) const {
    if (uiColuna != eIndexacao_SistemaTipoIntegracaoTipoData) return 0;
    return CrcDosCampos(reg.eSistemaIntegracao, reg.eTipoIntegracao, reg.eTipoData);
}

template XV_PREPARACAO_INTEGRACAO(PreparaNoMembro);
template XV_PREPARACAO_INTEGRACAO(PreparaNoMembroFechado);
template XV_PREPARACAO_INTEGRACAO(PreparaNoMembroDoMapa);
