// CXVConversaoMiddleware: what each step does to the records.
#include <array>
#include <cstring>

#include "core/xvdatabase/XVImagemArquivo.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "middleware/ConversaoMiddleware.h"
#include "middleware/XVDataBase_CR_Middleware.h"
#include "support/trace/XVArquivoRecusado.h"

namespace {

// New number of an integration type of versions up to 3. Old 5 and old 2 both become 2, and old 6 stays
// beside the new 6: stored data was renumbered so from the first day.
XVUInt RenumeraTipoIntegracao(XVUInt eTipoAntigo) {
    constexpr XVUInt k_ePrimeiro = 7;
    constexpr XVUInt k_eUltimo = 19;
    if (eTipoAntigo == 5) return 2;
    return eTipoAntigo >= k_ePrimeiro && eTipoAntigo <= k_eUltimo ? eTipoAntigo - 4 : eTipoAntigo;
}

template <class TReg>
TReg RenumeraRegistro(TReg reg) {
    reg.eTipoIntegracao = RenumeraTipoIntegracao(reg.eTipoIntegracao);
    return reg;
}

REG_CR_INTEGRACAO_MIDDLEWARE_V2 ParaV2(const REG_CR_INTEGRACAO_MIDDLEWARE_V1& reg, bool bFilialComoBase) {
    REG_CR_INTEGRACAO_MIDDLEWARE_V2 regNovo{};
    regNovo.regDmcIntegracaoOrigem = reg.regDmcIntegracaoOrigem;
    regNovo.regDmcMovimentoOrigem = reg.regDmcMovimentoOrigem;
    regNovo.regDataHoraInclusao = reg.regDataHoraInclusao;
    regNovo.regDataHoraAlteracaoStatus = reg.regDataHoraAlteracaoStatus;
    regNovo.uiBaseDadosTerceiro = bFilialComoBase ? reg.ulPonteiroFilial : 0;
    regNovo.eTipoIntegracao = reg.eTipoIntegracao;
    regNovo.eTipoTransacao = reg.eTipoTransacao;
    regNovo.ulPonteiroJSONRegistro = reg.ulPonteiroJSONRegistro;
    regNovo.ulPonteiroMensagemRetorno = reg.ulPonteiroMensagemRetorno;
    regNovo.ulPonteiroJSONRetornoIntegracao = reg.ulPonteiroJSONRetornoIntegracao;
    regNovo.ulPonteiroFilial = reg.ulPonteiroFilial;
    regNovo.ulPonteiroUsuarioInclusao = reg.ulPonteiroUsuarioInclusao;
    regNovo.ulPonteiroUsuarioCancelamento = reg.ulPonteiroUsuarioCancelamento;
    regNovo.cReconsultarIdTerceiros = reg.cReconsultarIdTerceiros;
    return regNovo;
}

// The old file in a private database: opened denying writers, its header neither made nor rewritten.
template <class T>
class TXVDataBaseConversao : public CXVDataBase {
  public:
    explicit TXVDataBaseConversao(const std::string& sNomeArquivo)
        : CXVDataBase(XV_DF), m_xvFile(sNomeArquivo, this) {
        HabilitaAcessoDireto();
        DesabilitaCabecalho();
    }
    ~TXVDataBaseConversao() override { XVIgnora(Finaliza()); }
    CXVFile<T>& GetArquivo() { return m_xvFile; }

  private:
    CXVFile<T> m_xvFile;
};

template <class T>
bool SaoPlausiveis(const TXVArrayRegistros<T>& rRegistros) {
    for (std::size_t i = 0; i < rRegistros.size(); ++i)
        if (!TXVPlausibilidade<T>::EhPlausivel(rRegistros[i])) return false;
    return true;
}

}  // namespace

HRESULT CXVConversaoMiddleware::Registra(HRESULT hr, const char* pszExpressao, const STextosPasso& rTextos) {
    if (SUCCEEDED(hr)) return hr;
    const SPontoFalha ponto{pszExpressao, XVNomeClasse(), rTextos.pszFuncao, XVNomeFonte(), __LINE__};
    return XVRegistraFalha(hr, ponto, this);
}

template <class TNovo>
HRESULT CXVConversaoMiddleware::GravaCabecalhoDaCopia(CXVImagemArquivo& rCopia,
                                                      const std::string& sNomeArquivo, XVUShort usPasso,
                                                      std::size_t uiQtdRegistros) {
    CXVDataBase xvDB(XV_DF);
    if (!CXVFileBase(sNomeArquivo, &xvDB).GerenciarCabecalho()) return S_OK;
    REG_XVCABECALHO regCabecalho;
    XVCabecalho::Gera(regCabecalho, sNomeArquivo, *this, usPasso, uiQtdRegistros * sizeof(TNovo));
    return rCopia.Grava(&regCabecalho, sizeof(regCabecalho));
}

template <class TAntigo, class TNovo, class TConverte>
HRESULT CXVConversaoMiddleware::GravaCopia(const std::string& sNomeArquivo, XVUShort usPasso,
                                           const TXVArrayRegistros<TAntigo>& rRegistros, TConverte converte) {
    CXVImagemArquivo fileTRA(XV_DF, XVNomeArquivo::TrocaExtensao(sNomeArquivo, "tra"));
    HRESULT hr = fileTRA.Inicializa(this);
    if (SUCCEEDED(hr)) hr = fileTRA.AbreArquivo();
    if (SUCCEEDED(hr)) hr = GravaCabecalhoDaCopia<TNovo>(fileTRA, sNomeArquivo, usPasso, rRegistros.size());
    for (std::size_t i = 0; i < rRegistros.size() && SUCCEEDED(hr); ++i) {
        const TNovo regNovo = converte(rRegistros[i]);
        hr = fileTRA.Grava(&regNovo, sizeof(regNovo));
    }
    if (SUCCEEDED(hr)) hr = fileTRA.Conclui();
    if (SUCCEEDED(hr)) fileTRA.Libera();
    return hr;
}

// One file: the old one loaded, the converted records written as a complete image of the new one. S_FALSE
// for a file with nothing to convert. The sums are taken while writers are still denied.
template <class TAntigo, class TNovo, class TConverte>
HRESULT CXVConversaoMiddleware::ConverteArquivo(const std::string& sNomeArquivo, const STextosPasso& rTextos,
                                                SEntradaDiario* pEntrada, TConverte converte) {
    std::string sPath;
    XV_CHECK(MontaPath(sNomeArquivo, &sPath));
    SArquivoConversao arquivo;
    HRESULT hr =
        Registra(XVConversaoArquivo::Descreve(this, sPath, sNomeArquivo, &arquivo), rTextos.pszLe, rTextos);
    if (FAILED(hr)) return hr;
    if (arquivo.uiTamanhoDados != 0 && !arquivo.PrecisaDoPasso(rTextos.usPasso)) return S_FALSE;

    TXVDataBaseConversao<TAntigo> xvDB(sNomeArquivo);
    hr = Registra(xvDB.Inicializa(this), "xvDB.Inicializa(this)", rTextos);
    if (FAILED(hr)) return hr;
    CXVFile<TAntigo>& fileDAT = xvDB.GetArquivo();
    const TXVArrayRegistros<TAntigo>& aRegistros = *fileDAT.GetPtrRegistros();
    hr = fileDAT.ConfereCabecalho();
    // The copy gets a header that vouches for it, so a file without one must first prove to be sound.
    if (SUCCEEDED(hr) && !fileDAT.PossuiCabecalho() && !SaoPlausiveis(aRegistros))
        hr = XVArquivoRecusado::Anota(E_XVCR_CRC_CABECALHO_NAO_CONFERE, sPath, this);
    if (FAILED(hr)) return Registra(hr, rTextos.pszLe, rTextos);
    if (aRegistros.empty()) return S_FALSE;

    hr = GravaCopia<TAntigo, TNovo>(sNomeArquivo, rTextos.usPasso, aRegistros, converte);
    if (SUCCEEDED(hr)) hr = SomaEntrada(sNomeArquivo, pEntrada);
    if (FAILED(hr)) return Registra(hr, rTextos.pszGrava, rTextos);
    if (m_pObservador != nullptr)
        m_pObservador->OnArquivoConvertido(rTextos.usPasso, sNomeArquivo, aRegistros.size());
    return S_OK;
}

HRESULT CXVConversaoMiddleware::SomaEntrada(const std::string& sNomeArquivo, SEntradaDiario* pEntrada) {
    pEntrada->sNome = sNomeArquivo;
    std::string sPath;
    std::string sPathCopia;
    XV_CHECK(MontaPaths(sNomeArquivo, &sPath, &sPathCopia));
    XV_CHECK(XVConversaoArquivo::Soma(this, sPath, &pEntrada->antigo));
    XV_CHECK(XVConversaoArquivo::Soma(this, sPathCopia, &pEntrada->novo));
    return S_OK;
}

template <class TConverteArquivo>
HRESULT CXVConversaoMiddleware::ConverteTodos(XVUShort usPasso, CXVDiarioConversao& rDiario,
                                              TConverteArquivo converteArquivo) {
    CListaNomes listaNomes;
    XV_CHECK(ListaArquivosDoPasso(usPasso, &listaNomes));
    XV_CHECK(RemoveCopias(listaNomes));
    if (m_pObservador != nullptr) m_pObservador->OnInicioPasso(usPasso, listaNomes.size());
    for (const std::string& sNome : listaNomes) {
        SEntradaDiario entrada;
        const HRESULT hr = converteArquivo(sNome, &entrada);
        if (FAILED(hr)) {
            XVIgnora(RemoveCopias(listaNomes));
            return hr;
        }
        if (hr == S_OK) rDiario.Inclui(std::move(entrada));
    }
    if (!rDiario.GetEntradas().empty()) XV_CHECK(rDiario.Grava(usPasso));
    return S_OK;
}

// The frame of every step. converteArquivo answers S_FALSE for a file with nothing to convert.
template <class TConverteArquivo>
HRESULT CXVConversaoMiddleware::ConverteArquivos(const STextosPasso& rTextos,
                                                 TConverteArquivo converteArquivo) {
    const XVUShort usPasso = rTextos.usPasso;
    CXVDiarioConversao diario;
    XV_CHECK(diario.Inicializa(this));
    XV_CHECK(diario.Le(usPasso));
    if (!diario.EstaEmCurso()) {
        XV_CHECK(diario.Remove());
        const HRESULT hr = ConverteTodos(usPasso, diario, converteArquivo);
        if (FAILED(hr)) return hr;
    } else {
        XV_CHECK(ConfereTroca(usPasso, diario));
        if (m_pObservador != nullptr) m_pObservador->OnInicioPasso(usPasso, diario.GetEntradas().size());
    }
    return Registra(ConcluiTroca(usPasso, diario), rTextos.pszRenomeia, rTextos);
}

namespace {
constexpr const char* k_pszRenomeiaGrupo =
    "CXVDataBaseUtil::RenomeiaArquivoTRAGroupFile(this, XV_DF, \"CRINTEGMID????????.dat\")";
constexpr const char* k_pszRenomeiaChave =
    "CXVDataBaseUtil::RenomeiaArquivoTRA(this, XV_DF, \"CRCHAVEREGTER.dat\")";
constexpr const char* k_pszLeGrupo =
    "fileIntegracaoDAT.LeColecao(uiChave, uiPosicaoInicial, fileIntegracaoDAT.GetQtdRegistros(uiChave), "
    "listaIntegracao)";
constexpr const char* k_pszGravaGrupo = "fileIntegracaoTRA.GravaColecao(uiChave, uiPosicao, listaIntegracao)";
}  // namespace

// The records as they stand: the rewrite gives every file a header of the current form.
HRESULT CXVConversaoMiddleware::ConverteBaseV01() {
    XV_ESCOPO();
    using TReg = REG_CR_INTEGRACAO_MIDDLEWARE_V1;
    constexpr STextosPasso textos{1, "ConverteBaseV01", k_pszLeGrupo, k_pszGravaGrupo, k_pszRenomeiaGrupo};
    return ConverteArquivos(textos, [&](const std::string& sNome, SEntradaDiario* pEntrada) {
        return ConverteArquivo<TReg, TReg>(sNome, textos, pEntrada, [](const TReg& reg) { return reg; });
    });
}

HRESULT CXVConversaoMiddleware::ConverteBaseV02() {
    XV_ESCOPO();
    using TAntigo = REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V1;
    using TNovo = REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2;
    constexpr STextosPasso textos{
        2, "ConverteBaseV02",
        "fileChaveTerceiroDAT.LeColecao(uiPosicaoInicial, iQtdRegistros, listaChaveTerceiroOld)",
        "fileChaveTerceiroTRA.GravaColecao(uiPosicao, listaChaveTerceiro)", k_pszRenomeiaChave};
    const auto converte = [](const TAntigo& reg) -> TNovo {
        return {reg.uiChaveRegistroSistemaTerceiro,
                reg.regDmcRegistroTelvo,
                0,
                reg.eTipoIntegracao,
                reg.eSistemaIntegracao,
                {}};
    };
    return ConverteArquivos(textos, [&](const std::string& sNome, SEntradaDiario* pEntrada) {
        return ConverteArquivo<TAntigo, TNovo>(sNome, textos, pEntrada, converte);
    });
}

HRESULT CXVConversaoMiddleware::ConverteBaseV03() {
    XV_ESCOPO();
    using TAntigo = REG_CR_INTEGRACAO_MIDDLEWARE_V1;
    using TNovo = REG_CR_INTEGRACAO_MIDDLEWARE_V2;
    constexpr STextosPasso textos{3, "ConverteBaseV03", k_pszLeGrupo, k_pszGravaGrupo, k_pszRenomeiaGrupo};
    const bool bFilialComoBase = UsaFilialComoBaseDadosTerceiro();
    const auto converte = [bFilialComoBase](const TAntigo& reg) { return ParaV2(reg, bFilialComoBase); };
    return ConverteArquivos(textos, [&](const std::string& sNome, SEntradaDiario* pEntrada) {
        return ConverteArquivo<TAntigo, TNovo>(sNome, textos, pEntrada, converte);
    });
}

HRESULT CXVConversaoMiddleware::ConverteBaseV04() {
    XV_ESCOPO();
    using TReg = REG_CR_INTEGRACAO_MIDDLEWARE_V2;
    constexpr STextosPasso textos{
        4, "ConverteBaseV04",
        "fileIntegracaoDAT.LeColecao(uiChave, uiPosicaoInicial, iQtdRegistros, listaIntegracaoOld)",
        k_pszGravaGrupo, k_pszRenomeiaGrupo};
    return ConverteArquivos(textos, [&](const std::string& sNome, SEntradaDiario* pEntrada) {
        return ConverteArquivo<TReg, TReg>(sNome, textos, pEntrada, RenumeraRegistro<TReg>);
    });
}

HRESULT CXVConversaoMiddleware::ConverteBaseV05() {
    XV_ESCOPO();
    using TDataHora = REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1;
    using TChave = REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2;
    constexpr STextosPasso textosDataHora{
        5, "ConverteBaseV05",
        "fileIntegracaoTerceiroDAT.LeColecao(uiPosicaoInicial, iQtdRegistros, listaIntegracaoTerceiroOld)",
        "fileIntegracaoTerceiroTRA.GravaColecao(uiPosicao, listaIntegracaoTerceiro)",
        "CXVDataBaseUtil::RenomeiaArquivoTRA(this, XV_DF, name)"};
    constexpr STextosPasso textosChave{
        5, "ConverteBaseV05",
        "fileChaveTerceiroDAT.LeColecao(uiPosicaoInicial, iQtdRegistros, listaChaveTerceiroOld)",
        "fileChaveTerceiroTRA.GravaColecao(uiPosicao, listaChaveTerceiro)", textosDataHora.pszRenomeia};
    return ConverteArquivos(textosDataHora, [&](const std::string& sNome, SEntradaDiario* pEntrada) {
        return sNome == k_pszArquivoDataHoraIntegracao
                   ? ConverteArquivo<TDataHora, TDataHora>(sNome, textosDataHora, pEntrada,
                                                           RenumeraRegistro<TDataHora>)
                   : ConverteArquivo<TChave, TChave>(sNome, textosChave, pEntrada, RenumeraRegistro<TChave>);
    });
}
