// CXVConversaoMiddleware: what each step does to the records.
#include <array>
#include <cstring>

#include "core/xvdatabase/XVImagemArquivo.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "middleware/ConversaoMiddleware.h"
#include "middleware/XVDataBase_CR_Middleware.h"

namespace {

// New number of an integration type of versions up to 3. Old 5 and old 2 both become 2, and old 6 stays
// beside the new 6: stored data was renumbered so from the first day.
XVUInt RenumeraTipoIntegracao(XVUInt eTipoAntigo) {
    constexpr XVUInt k_ePrimeiro = 7;
    constexpr XVUInt k_eUltimo = 19;
    if (eTipoAntigo == 5) return 2;
    return eTipoAntigo >= k_ePrimeiro && eTipoAntigo <= k_eUltimo ? eTipoAntigo - 4 : eTipoAntigo;
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
    explicit TXVDataBaseConversao(const std::string& sNomeArquivo) : CXVDataBase(XV_DF), m_xvFile(sNomeArquivo, this) {
        HabilitaAcessoDireto();
        DesabilitaCabecalho();
    }
    ~TXVDataBaseConversao() override { XVIgnora(Finaliza()); }
    CXVFile<T>& GetArquivo() { return m_xvFile; }

  private:
    CXVFile<T> m_xvFile;
};

}  // namespace

// One file: the old one loaded, the converted records written as a complete image of the new one.
template <class TAntigo, class TNovo, class TConverte>
HRESULT CXVConversaoMiddleware::ConverteArquivo(const std::string& sNomeArquivo, XVUShort usPasso, TConverte converte) {
    TXVDataBaseConversao<TAntigo> xvDB(sNomeArquivo);
    XV_CHECK(xvDB.Inicializa(this));
    CXVFile<TAntigo>& fileDAT = xvDB.GetArquivo();
    XV_CHECK(fileDAT.ConfereCabecalho());
    const TXVArrayRegistros<TAntigo>& aRegistros = *fileDAT.GetPtrRegistros();
    if (aRegistros.empty()) return S_FALSE;

    CXVImagemArquivo fileTRA(XV_DF, XVNomeArquivo::TrocaExtensao(sNomeArquivo, "tra"));
    XV_CHECK(fileTRA.Inicializa(this));
    XV_CHECK(fileTRA.AbreArquivo());
    CXVDataBase xvDBNovo(XV_DF);
    if (CXVFileBase(sNomeArquivo, &xvDBNovo).GerenciarCabecalho()) {
        REG_XVCABECALHO regCabecalho;
        XVCabecalho::Gera(regCabecalho, sNomeArquivo, *this, usPasso, aRegistros.size() * sizeof(TNovo));
        XV_CHECK(fileTRA.Grava(&regCabecalho, sizeof(regCabecalho)));
    }
    for (std::size_t i = 0; i < aRegistros.size(); ++i) {
        const TNovo regNovo = converte(aRegistros[i]);
        XV_CHECK(fileTRA.Grava(&regNovo, sizeof(regNovo)));
    }
    XV_CHECK(fileTRA.Conclui());
    fileTRA.Libera();
    if (m_pObservador != nullptr) m_pObservador->OnArquivoConvertido(usPasso, sNomeArquivo, aRegistros.size());
    return S_OK;
}

// The frame of every step. converteArquivo answers S_FALSE for a file with nothing to convert.
template <class TConverteArquivo>
HRESULT CXVConversaoMiddleware::ConverteArquivos(XVUShort usPasso, TConverteArquivo converteArquivo) {
    CListaNomes listaConvertidos;
    bool bDiarioValido = false;
    XV_CHECK(LeDiario(usPasso, &listaConvertidos, &bDiarioValido));
    if (!bDiarioValido) {
        XV_CHECK(RemoveDiario());
        listaConvertidos.clear();
        CListaNomes listaNomes;
        XV_CHECK(ListaArquivosDoPasso(usPasso, &listaNomes));
        XV_CHECK(RemoveCopias(listaNomes));
        if (m_pObservador != nullptr) m_pObservador->OnInicioPasso(usPasso, listaNomes.size());
        for (const std::string& sNome : listaNomes) {
            const HRESULT hr = converteArquivo(sNome);
            XV_CHECK_TEXTO(hr, "ConverteArquivo(sNomeArquivo, usPasso)");
            if (hr == S_OK) listaConvertidos.push_back(sNome);
        }
        if (!listaConvertidos.empty()) XV_CHECK(GravaDiario(usPasso, listaConvertidos));
    }
    XV_CHECK(ConcluiTroca(usPasso, listaConvertidos));
    return S_OK;
}

// The records as they stand: the rewrite gives every file a header of the current form.
HRESULT CXVConversaoMiddleware::ConverteBaseV01() {
    XV_ESCOPO();
    using TReg = REG_CR_INTEGRACAO_MIDDLEWARE_V1;
    XV_CHECK_TEXTO(ConverteArquivos(1,
                                    [this](const std::string& sNome) {
                                        return ConverteArquivo<TReg, TReg>(sNome, 1, [](const TReg& reg) { return reg; });
                                    }),
                   "ConverteArquivos(1)");
    return S_OK;
}

HRESULT CXVConversaoMiddleware::ConverteBaseV02() {
    XV_ESCOPO();
    using TAntigo = REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V1;
    using TNovo = REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2;
    const auto converte = [](const TAntigo& reg) -> TNovo {
        return {reg.uiChaveRegistroSistemaTerceiro, reg.regDmcRegistroTelvo, 0, reg.eTipoIntegracao,
                reg.eSistemaIntegracao, {}};
    };
    XV_CHECK_TEXTO(ConverteArquivos(2,
                                    [&](const std::string& sNome) {
                                        return ConverteArquivo<TAntigo, TNovo>(sNome, 2, converte);
                                    }),
                   "ConverteArquivos(2)");
    return S_OK;
}

HRESULT CXVConversaoMiddleware::ConverteBaseV03() {
    XV_ESCOPO();
    using TAntigo = REG_CR_INTEGRACAO_MIDDLEWARE_V1;
    using TNovo = REG_CR_INTEGRACAO_MIDDLEWARE_V2;
    const bool bFilialComoBase = UsaFilialComoBaseDadosTerceiro();
    const auto converte = [bFilialComoBase](const TAntigo& reg) { return ParaV2(reg, bFilialComoBase); };
    XV_CHECK_TEXTO(ConverteArquivos(3,
                                    [&](const std::string& sNome) {
                                        return ConverteArquivo<TAntigo, TNovo>(sNome, 3, converte);
                                    }),
                   "ConverteArquivos(3)");
    return S_OK;
}

HRESULT CXVConversaoMiddleware::ConverteBaseV04() {
    XV_ESCOPO();
    using TReg = REG_CR_INTEGRACAO_MIDDLEWARE_V2;
    const auto renumera = [](TReg reg) {
        reg.eTipoIntegracao = RenumeraTipoIntegracao(reg.eTipoIntegracao);
        return reg;
    };
    XV_CHECK_TEXTO(
        ConverteArquivos(4, [&](const std::string& sNome) { return ConverteArquivo<TReg, TReg>(sNome, 4, renumera); }),
        "ConverteArquivos(4)");
    return S_OK;
}

HRESULT CXVConversaoMiddleware::ConverteBaseV05() {
    XV_ESCOPO();
    const auto renumera = [](auto reg) {
        reg.eTipoIntegracao = RenumeraTipoIntegracao(reg.eTipoIntegracao);
        return reg;
    };
    const auto converteArquivo = [&](const std::string& sNome) {
        using TDataHora = REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1;
        using TChave = REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2;
        return sNome == k_pszArquivoDataHoraIntegracao ? ConverteArquivo<TDataHora, TDataHora>(sNome, 5, renumera)
                                                       : ConverteArquivo<TChave, TChave>(sNome, 5, renumera);
    };
    XV_CHECK_TEXTO(ConverteArquivos(5, converteArquivo), "ConverteArquivos(5)");
    return S_OK;
}
