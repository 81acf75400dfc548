// CXVConversaoMiddleware: which steps run, and the order of writing, moving and stamping in each.
#include "middleware/ConversaoMiddleware.h"

#include <algorithm>
#include <iterator>

#include "contract/XVRegistroInicializacao.h"
#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVDiarioFormato.h"
#include "core/xvdatabase/XVMarcas.h"
#include "core/xvdatabase/XVModoAbertura.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "core/xvdatabase/XVRegistroVersao.h"
#include "middleware/ConversaoIndicios.h"
#include "middleware/XVDataBase_CR_Middleware.h"
#include "platform/XVTentativas.h"
#include "support/codes/XVCodigos.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/trace/XVArquivoRecusado.h"
#include "support/trace/XVProfiler.h"
#include "support/values/XVTextoAscii.h"

HRESULT CXVConversaoMiddleware::OnInicializa() {
    XV_CHECK_SUPER(CXVBaseParaRotinas, OnInicializa());
    SetProfiler(GetEmpresa(), k_usUsuarioConversao, GetNumeroSessaoProprio());
    return S_OK;
}

HRESULT CXVConversaoMiddleware::LeVersao(XVUShort* pusVersao) {
    bool bTemDados = false;
    return LeVersao(pusVersao, &bTemDados);
}

HRESULT CXVConversaoMiddleware::LeVersao(XVUShort* pusVersao, bool* pbTemDados) {
    *pusVersao = 0;
    *pbTemDados = true;
    REG_CR_MIDDLEWARE_VERSAO regVersao;
    // The log shows this call as it is written and has to name the file, so the name is spelled out here.
    static_assert(std::string_view(k_pszArquivoVersao) == "CRMIDDLEWAREVS.dat");
    XV_CHECK_EM("ExecutaConversao",
                CXVDataBaseUtil::LeSingleReg(this, XV_DF, &regVersao, "CRMIDDLEWAREVS.dat"));
    *pusVersao = regVersao.usVersao;
    if (regVersao.usVersao >= k_usVersaoAtualBase) return S_OK;
    CXVIndiciosVersao indicios;
    XV_CHECK_EM("ExecutaConversao", indicios.Inicializa(this));
    if (regVersao.usVersao != 0) {
        XV_CHECK_EM("ExecutaConversao", indicios.ConfereVersaoAnterior(regVersao.usVersao));
        return S_OK;
    }
    XV_CHECK_EM("ExecutaConversao", indicios.ConfereVersaoZero());
    *pbTemDados = indicios.TemDados();
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
    const std::string sMarca = XVMarcas::Nome(XV_DF, IXVArqMarcaEnum::Conversao);
    const CXVErroArquivo erro = XVTentaMarca(k_iTentativasLongas, sDiretorio, sMarca, marca);
    if (!erro.Ok()) XV_CHECK(Recusa(XVCodigosArquivo::CodigoDeExcecao(erro), sMarca));
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
    if (usVersao < k_usVersaoAtualBase) XV_CHECK(ConfereArquivosControlados());

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
    XV_CHECK_EM("ExecutaConversao",
                CXVDataBaseUtil::GravaSingleReg(this, XV_DF, regVersao, "CRMIDDLEWAREVS.dat"));
    XV_CHECK_EM("ExecutaConversao", RemoveDiario());
    if (m_pObservador != nullptr) m_pObservador->OnFimPasso(usPasso);
    return S_OK;
}

HRESULT CXVConversaoMiddleware::RemoveDiario() {
    CXVDiarioConversao diario;
    XV_CHECK(diario.Inicializa(this));
    XV_CHECK(diario.Remove());
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

HRESULT CXVConversaoMiddleware::MontaPath(const std::string& sNome, std::string* psPath) {
    XV_CHECK(CXVDataBaseUtil::GetPathArquivo(XV_DF, GetEmpresa(), sNome, psPath));
    return S_OK;
}

HRESULT CXVConversaoMiddleware::Simula(XVUShort* pusVersao, std::vector<SPassoPrevisto>* plistaPassos) {
    plistaPassos->clear();
    HRESULT hr = LeVersao(pusVersao);
    if (FAILED(hr)) return hr;
    if (FAILED(hr = RecusaVersaoPosterior(*pusVersao))) return hr;
    if (*pusVersao < k_usVersaoAtualBase) XV_CHECK(ConfereArquivosControlados());
    for (auto usPasso = static_cast<XVUShort>(*pusVersao + 1); usPasso <= k_usVersaoAtualBase; ++usPasso) {
        SPassoPrevisto passo;
        passo.usPasso = usPasso;
        CListaNomes listaNomes;
        XV_CHECK(ListaArquivosDoPasso(usPasso, &listaNomes));
        for (std::string& sNome : listaNomes) {
            std::string sPath;
            XV_CHECK(MontaPath(sNome, &sPath));
            SArquivoConversao arquivo;
            XV_CHECK(XVConversaoArquivo::Descreve(this, sPath, sNome, &arquivo));
            if (arquivo.PrecisaDoPasso(usPasso))
                passo.listaArquivos.push_back({std::move(sNome), arquivo.uiTamanhoDados});
        }
        plistaPassos->push_back(std::move(passo));
    }
    return S_OK;
}

HRESULT CXVConversaoMiddleware::ValidaVersaoAtual() {
    XVUShort usVersao = 0;
    bool bTemDados = false;
    const HRESULT hr = LeVersao(&usVersao, &bTemDados);
    if (FAILED(hr)) return hr;
    if (usVersao == k_usVersaoAtualBase) {
        XV_CHECK(ValidaArquivosUnicos());
        return S_OK;
    }
    XV_CHECK(RecusaVersaoPosterior(usVersao));
    bool bExiste = false;
    XV_CHECK(TemArquivosDeDados(&bExiste));
    // A new store passes through the versions while it is made; whoever makes it has, or had, it open.
    bool bEmCriacao = false;
    std::string sPathDiario;
    XV_CHECK(MontaPath(k_pszNomeDiario, &sPathDiario));
    XV_CHECK(CXVDataBaseUtil::Existe(this, sPathDiario, &bEmCriacao));
    if (bExiste || (usVersao == 0 ? bTemDados : !bEmCriacao))
        XV_CHECK(Recusa(E_XVCR_VERSAO_INCOMPATIVEL, k_pszArquivoVersao));
    return S_OK;
}

HRESULT CXVConversaoMiddleware::TemArquivosDeDados(bool* pbTem) {
    *pbTem = false;
    for (const char* pszNome : k_apszArquivosUnicos) {
        std::string sPath;
        XV_CHECK(MontaPath(pszNome, &sPath));
        XV_CHECK(CXVDataBaseUtil::Existe(this, sPath, pbTem));
        if (*pbTem) return S_OK;
    }
    std::string sDiretorio;
    XV_CHECK(CXVDataBaseUtil::GetPathDados(XV_DF, GetEmpresa(), &sDiretorio));
    bool bHaDiretorio = false;
    XV_CHECK(CXVDataBaseUtil::Existe(this, sDiretorio, &bHaDiretorio));
    if (!bHaDiretorio) return S_OK;
    for (const char* pszPadrao : k_apszGrupos) {
        std::vector<std::pair<XVUInt64, std::string>> listaMembros;
        XV_CHECK(CXVDataBaseUtil::ListaMembros(this, XV_DF, pszPadrao, &listaMembros));
        *pbTem = !listaMembros.empty();
        if (*pbTem) return S_OK;
    }
    return S_OK;
}

// Viewing opens without the control's check: a listed file that is missing must not look like an empty one.
HRESULT CXVConversaoMiddleware::ValidaArquivosUnicos() {
    for (const char* pszNome : k_apszArquivosUnicos) {
        std::string sPath;
        XV_CHECK(MontaPath(pszNome, &sPath));
        std::string sNomeReal;
        bool bExiste = false;
        XV_CHECK(CXVDataBaseUtil::ExistePath(this, sPath, &bExiste, &sNomeReal));
        if (bExiste) continue;
        CXVDataBaseControleCriacaoArquivos controle(XV_DF, pszNome);
        XV_CHECK(controle.Inicializa(this));
        XV_CHECK(controle.ConfereArquivoControlado());
    }
    return S_OK;
}

// A step only sees the members that the directory holds: one that is listed and gone would be missed by
// nobody once the version has moved on.
HRESULT CXVConversaoMiddleware::ConfereArquivosControlados() {
    CXVDataBaseControleCriacaoArquivos controle(
        XV_DF, std::string(XVDATABASE_NOME_ARQUIVO_CONTROLE_CRIACAO_ARQUIVOS));
    XV_CHECK(controle.Inicializa(this));
    CListaNomes listaNomes;
    XV_CHECK(controle.LeNomesControlados(&listaNomes));
    for (const std::string& sNome : listaNomes) {
        if (!EhArquivoDoEsquema(sNome)) continue;
        std::string sPath;
        XV_CHECK(MontaPath(sNome, &sPath));
        std::string sNomeReal;
        bool bExiste = false;
        XV_CHECK(CXVDataBaseUtil::ExistePath(this, sPath, &bExiste, &sNomeReal));
        if (!bExiste) return XVConversaoArquivo::Recusa(this, sPath, "Arquivo controlado não encontrado");
    }
    return S_OK;
}

bool CXVConversaoMiddleware::EhArquivoDoEsquema(const std::string& sNome) {
    const auto ehEle = [&sNome](const char* pszNome) { return XVIgualSemCaixa(sNome, pszNome); };
    const auto ehMembro = [&sNome](const char* pszPadrao) {
        return XVNomeArquivo::NomeParaChave(sNome, pszPadrao).has_value();
    };
    return std::any_of(std::begin(k_apszArquivosUnicos), std::end(k_apszArquivosUnicos), ehEle) ||
           std::any_of(std::begin(k_apszGrupos), std::end(k_apszGrupos), ehMembro);
}
