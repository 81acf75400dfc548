// CXVConversaoMiddleware: which steps run, and the order of writing, moving and stamping in each.
#include "middleware/ConversaoMiddleware.h"

#include "core/xvdatabase/XVCabecalho.h"
#include "core/xvdatabase/XVCodigosArquivo.h"
#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVModoAbertura.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "core/xvdatabase/XVRegistroVersao.h"
#include "middleware/XVCheckOperacao.h"
#include "middleware/XVDataBase_CR_Middleware.h"
#include "platform/XVPlataforma.h"
#include "support/XVArquivoRecusado.h"
#include "support/XVCodigos.h"
#include "support/XVProfiler.h"

namespace {
constexpr const char* k_pszMarcaConversao = "DFXXMARCA2";
constexpr int k_iTentativasMarca = 500;
constexpr XVUInt k_ulEsperaTentativa = 10;  // ms
}  // namespace

HRESULT CXVConversaoMiddleware::OnInicializa() {
    XV_CHECK_TEXTO(CXVBaseParaRotinas::OnInicializa(), "__super::OnInicializa()");
    SetProfiler(GetEmpresa(), k_usUsuarioConversao, GetNumeroSessaoProprio());
    return S_OK;
}

HRESULT CXVConversaoMiddleware::LeVersao(XVUShort* pusVersao) {
    *pusVersao = 0;
    REG_CR_MIDDLEWARE_VERSAO regVersao;
    XV_CHECK_TEXTO_EM("ExecutaConversao",
                      CXVDataBaseUtil::LeSingleReg(this, XV_DF, &regVersao, k_pszArquivoVersao),
                      "CXVDataBaseUtil::LeSingleReg(this, XV_DF, &regVersao, \"CRMIDDLEWAREVS.dat\")");
    *pusVersao = regVersao.usVersao;
    return S_OK;
}

HRESULT CXVConversaoMiddleware::Recusa(HRESULT hr, const std::string& sNome) {
    std::string sPath;
    XV_CHECK(MontaPath(sNome, &sPath));
    return XVArquivoRecusado::Anota(hr, sPath, this);
}

HRESULT CXVConversaoMiddleware::RecusaVersaoPosterior(XVUShort usVersao) {
    if (usVersao <= k_usVersaoAtualBase) return S_OK;
    return Recusa(E_XVCR_VERSAO_BASE_SUPERIOR_VERSAO_SISTEMA, k_pszArquivoVersao);
}

HRESULT CXVConversaoMiddleware::MarcaConversao(std::unique_ptr<IXVMarcaDiretorio>& marca) {
    std::string sDiretorio;
    XV_CHECK(CXVDataBaseUtil::GetPathDados(XV_DF, GetEmpresa(), &sDiretorio));
    CXVErroArquivo erro;
    for (int i = 1; i <= k_iTentativasMarca; ++i) {
        erro = XVPlataforma::SistemaArquivos().MarcaDiretorio(sDiretorio, k_pszMarcaConversao, marca);
        if (erro.GetCausa() != ECausaArquivo::eViolacaoCompartilhamento) break;
        if (i < k_iTentativasMarca) XVPlataforma::Relogio().Dorme(k_ulEsperaTentativa);
    }
    if (!erro.Ok())
        XV_CHECK_TEXTO(Recusa(XVCodigosArquivo::DeExcecao(erro.GetCausa()).hr, k_pszMarcaConversao),
                       "MarcaDiretorio(sDiretorio, marca)");
    return S_OK;
}

HRESULT CXVConversaoMiddleware::ControlaArquivoVersao() {
    CXVDataBaseControleCriacaoArquivos controle(XV_DF, k_pszArquivoVersao);
    XV_CHECK(controle.Inicializa(this));
    XV_CHECK(controle.GerenciaControleCriacaoArquivos(EXVDataBase_ModoAbertura::eModoLeituraGravacao));
    return S_OK;
}

HRESULT CXVConversaoMiddleware::ExecutaConversao() {
    XV_ESCOPO();
    const CXVAcessoDefault acesso(this);
    XVUShort usVersao = 0;
    HRESULT hr = LeVersao(&usVersao);
    if (FAILED(hr)) return hr;
    if (FAILED(hr = RecusaVersaoPosterior(usVersao))) return hr;
    XV_CHECK(ControlaArquivoVersao());
    if (usVersao == k_usVersaoAtualBase) {
        XV_CHECK(RemoveDiario());  // of a conversion that ended between its last version record and this
        return S_OK;
    }
    std::unique_ptr<IXVMarcaDiretorio> marca;
    XV_CHECK(MarcaConversao(marca));
    // Another process may have converted while this one waited.
    hr = LeVersao(&usVersao);
    if (FAILED(hr)) return hr;

    if (usVersao < 1) XV_CHECK(ConverteBaseV01());
    if (usVersao < 1 && FAILED(hr = ConcluiPasso(1))) return hr;
    if (usVersao < 2) XV_CHECK(ConverteBaseV02());
    if (usVersao < 2 && FAILED(hr = ConcluiPasso(2))) return hr;
    if (usVersao < 3) XV_CHECK(ConverteBaseV03());
    if (usVersao < 3 && FAILED(hr = ConcluiPasso(3))) return hr;
    if (usVersao < 4) XV_CHECK(ConverteBaseV04());
    if (usVersao < 4 && FAILED(hr = ConcluiPasso(4))) return hr;
    if (usVersao < 5) XV_CHECK(ConverteBaseV05());
    if (usVersao < 5 && FAILED(hr = ConcluiPasso(5))) return hr;
    return S_OK;
}

// The version record ends a step; the journal has served then.
HRESULT CXVConversaoMiddleware::ConcluiPasso(XVUShort usPasso) {
    REG_CR_MIDDLEWARE_VERSAO regVersao{};
    regVersao.usVersao = usPasso;
    XV_CHECK_TEXTO_EM("ExecutaConversao",
                      CXVDataBaseUtil::GravaSingleReg(this, XV_DF, regVersao, k_pszArquivoVersao),
                      "CXVDataBaseUtil::GravaSingleReg(this, XV_DF, regVersao, \"CRMIDDLEWAREVS.dat\")");
    XV_CHECK_EM("ExecutaConversao", RemoveDiario());
    if (m_pObservador != nullptr) m_pObservador->OnFimPasso(usPasso);
    return S_OK;
}

HRESULT CXVConversaoMiddleware::ListaArquivosDoPasso(XVUShort usPasso, CListaNomes* plistaNomes) {
    plistaNomes->clear();
    if (usPasso == 2) {
        *plistaNomes = {k_pszArquivoChaveRegistroParaTerceiro};
    } else if (usPasso == 5) {
        *plistaNomes = {k_pszArquivoDataHoraIntegracao, k_pszArquivoChaveRegistroParaTerceiro};
    } else {
        std::vector<std::pair<XVUInt64, std::string>> listaMembros;
        XV_CHECK(CXVDataBaseUtil::ListaMembros(this, XV_DF, k_pszArquivoIntegracao, &listaMembros));
        for (auto& membro : listaMembros) plistaNomes->push_back(std::move(membro.second));
    }
    return S_OK;
}

bool CXVConversaoMiddleware::EhArquivoDoPasso(XVUShort usPasso, const std::string& sNome) {
    if (usPasso == 2) return sNome == k_pszArquivoChaveRegistroParaTerceiro;
    if (usPasso == 5)
        return sNome == k_pszArquivoDataHoraIntegracao || sNome == k_pszArquivoChaveRegistroParaTerceiro;
    return XVNomeArquivo::NomeParaChave(sNome, k_pszArquivoIntegracao).has_value();
}

// Copies left by a step that did not come to its journal; the live files were not touched yet.
HRESULT CXVConversaoMiddleware::RemoveCopias(const CListaNomes& listaNomes) {
    for (const std::string& sNome : listaNomes) {
        std::string sPath;
        XV_CHECK(MontaPath(XVNomeArquivo::TrocaExtensao(sNome, "tra"), &sPath));
        bool bExiste = false;
        XV_CHECK(CXVDataBaseUtil::Existe(this, sPath, &bExiste));
        if (!bExiste) continue;
        const CXVErroArquivo erro = XVPlataforma::SistemaArquivos().Apaga(sPath);
        if (!erro.Ok())
            XV_CHECK_TEXTO(
                XVArquivoRecusado::Anota(XVCodigosArquivo::DeExcecao(erro.GetCausa()).hr, sPath, this),
                "RemoveCopias(listaNomes)");
    }
    return S_OK;
}

// The copies that still stand beside their files take their place; the others have done so already.
HRESULT CXVConversaoMiddleware::ConcluiTroca(XVUShort usPasso, const CListaNomes& listaNomes) {
    for (const std::string& sNome : listaNomes) {
        std::string sPath;
        XV_CHECK(MontaPath(XVNomeArquivo::TrocaExtensao(sNome, "tra"), &sPath));
        bool bExiste = false;
        XV_CHECK(CXVDataBaseUtil::Existe(this, sPath, &bExiste));
        if (bExiste) {
            XV_CHECK_TEXTO(CXVDataBaseUtil::RenomeiaArquivoTRA(this, XV_DF, sNome, usPasso),
                           "CXVDataBaseUtil::RenomeiaArquivoTRA(this, XV_DF, name)");
            continue;
        }
        XV_CHECK(CXVDataBaseUtil::ConcluiRenomeacao(this, XV_DF, sNome, usPasso));
    }
    return S_OK;
}

HRESULT CXVConversaoMiddleware::MontaPath(const std::string& sNome, std::string* psPath) {
    XV_CHECK(CXVDataBaseUtil::GetPathArquivo(XV_DF, GetEmpresa(), sNome, psPath));
    return S_OK;
}

// Bytes after the header, 0 for an absent file; nothing is changed, whatever state the file is in.
HRESULT CXVConversaoMiddleware::TamanhoDados(const std::string& sPath, XVUInt64* puiTamanho) {
    *puiTamanho = 0;
    bool bExiste = false;
    XV_CHECK(CXVDataBaseUtil::Existe(this, sPath, &bExiste));
    if (!bExiste) return S_OK;
    constexpr SAberturaArquivo k_abertura{EAcessoArquivo::eLeitura, ECompartilhamentoArquivo::eNegaNada,
                                          ECriacaoArquivo::eSomenteExistente};
    std::unique_ptr<IXVArquivo> pArquivo;
    CXVErroArquivo erro = XVPlataforma::SistemaArquivos().Abre(sPath, k_abertura, pArquivo);
    if (erro.Ok()) erro = pArquivo->GetTamanho(*puiTamanho);
    REG_XVCABECALHO_A regA;
    const bool bCabe = erro.Ok() && *puiTamanho >= k_uiTamanhoCabecalho;
    if (bCabe) erro = pArquivo->Le(0, &regA, sizeof(regA));
    if (!erro.Ok())
        XV_CHECK_TEXTO(XVArquivoRecusado::Anota(XVCodigosArquivo::DeExcecao(erro.GetCausa()).hr, sPath, this),
                       "TamanhoDados(sPath, &uiTamanho)");
    if (bCabe && XVCabecalho::AssinaturaConfere(regA)) *puiTamanho -= k_uiTamanhoCabecalho;
    return S_OK;
}

HRESULT CXVConversaoMiddleware::Simula(XVUShort* pusVersao, std::vector<SPassoPrevisto>* plistaPassos) {
    plistaPassos->clear();
    HRESULT hr = LeVersao(pusVersao);
    if (FAILED(hr)) return hr;
    if (FAILED(hr = RecusaVersaoPosterior(*pusVersao))) return hr;
    for (auto usPasso = static_cast<XVUShort>(*pusVersao + 1); usPasso <= k_usVersaoAtualBase; ++usPasso) {
        SPassoPrevisto passo;
        passo.usPasso = usPasso;
        CListaNomes listaNomes;
        XV_CHECK(ListaArquivosDoPasso(usPasso, &listaNomes));
        for (std::string& sNome : listaNomes) {
            std::string sPath;
            XV_CHECK(MontaPath(sNome, &sPath));
            XVUInt64 uiTamanho = 0;
            XV_CHECK(TamanhoDados(sPath, &uiTamanho));
            if (uiTamanho != 0) passo.listaArquivos.push_back({std::move(sNome), uiTamanho});
        }
        plistaPassos->push_back(std::move(passo));
    }
    return S_OK;
}

HRESULT CXVConversaoMiddleware::ValidaVersaoAtual() {
    XVUShort usVersao = 0;
    const HRESULT hr = LeVersao(&usVersao);
    if (FAILED(hr)) return hr;
    if (usVersao == k_usVersaoAtualBase) {
        XV_CHECK(ValidaArquivosUnicos());
        return S_OK;
    }
    XV_CHECK_TEXTO(RecusaVersaoPosterior(usVersao), "E_XVCR_VERSAO_BASE_SUPERIOR_VERSAO_SISTEMA");
    std::string sPathIndex;
    XV_CHECK(MontaPath(k_pszArquivoIndexIntegracao, &sPathIndex));
    bool bExiste = false;
    XV_CHECK(CXVDataBaseUtil::Existe(this, sPathIndex, &bExiste));
    if (usVersao != 0 || bExiste)
        XV_CHECK_TEXTO(Recusa(E_XVCR_VERSAO_INCOMPATIVEL, k_pszArquivoVersao), "E_XVCR_VERSAO_INCOMPATIVEL");
    return S_OK;
}

// Viewing opens without the control's check: a listed file that is missing must not look like an empty one.
// For an absent file the control's own check only reads.
HRESULT CXVConversaoMiddleware::ValidaArquivosUnicos() {
    for (const char* pszNome : {k_pszArquivoIndexIntegracao, k_pszArquivoChaveRegistroParaTerceiro,
                                k_pszArquivoDataHoraIntegracao}) {
        std::string sPath;
        XV_CHECK(MontaPath(pszNome, &sPath));
        std::string sNomeReal;
        bool bExiste = false;
        XV_CHECK(CXVDataBaseUtil::ExistePath(this, sPath, &bExiste, &sNomeReal));
        if (bExiste) continue;
        CXVDataBaseControleCriacaoArquivos controle(XV_DF, pszNome);
        XV_CHECK(controle.Inicializa(this));
        XV_CHECK(controle.GerenciaControleCriacaoArquivos(EXVDataBase_ModoAbertura::eModoLeituraGravacao));
    }
    return S_OK;
}
