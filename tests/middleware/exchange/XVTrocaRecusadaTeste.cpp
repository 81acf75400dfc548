// Exchanges that are refused before anything is sent, libraries that cannot be used, and whose pending items
// are asked for.
#include "tests/middleware/exchange/XVCenarioTroca.h"

#include "suite/providers/XVProvedorAdaptador.h"

namespace {

// Libraries are looked for once a process: what is told of them is caught before the first test.
class CXVAmbienteBibliotecas : public testing::Environment {
  public:
    void SetUp() override {
        const CXVCapturaTrace captura;
        XVIgnora(XVProvedores::Lista().empty() ? E_NOTIMPL : S_OK);
        for (const SFalhaCapturada& rFalha : captura.GetFalhas()) GetLinhas().push_back(rFalha.sMensagem);
    }
    static std::vector<std::string>& GetLinhas() {
        static std::vector<std::string> s_lista;
        return s_lista;
    }
};
const testing::Environment* const k_pAmbiente = testing::AddGlobalTestEnvironment(new CXVAmbienteBibliotecas);

TEST(CXVBibliotecasTeste, BibliotecaQueEstaLaENaoServeEDitaComOMotivo) {
    ASSERT_NE(k_pAmbiente, nullptr);
    const std::vector<std::string>& rLinhas = CXVAmbienteBibliotecas::GetLinhas();
    ASSERT_EQ(rLinhas.size(), 5U) << "absent ones and those in use are not told";
    const std::string sIlegivel = "Biblioteca XVProvedor32 não utilizada: ";
    EXPECT_EQ(rLinhas[0].substr(0, sIlegivel.size()), sIlegivel);
    EXPECT_GT(rLinhas[0].size(), sIlegivel.size()) << "the system's reason";
    EXPECT_EQ(rLinhas[1], "Biblioteca XVProvedor64 não utilizada: serve o sistema 65");
    EXPECT_EQ(rLinhas[2], "Biblioteca XVProvedor128 não utilizada: XVProvedorObtem respondeu 0x80070005");
    EXPECT_EQ(rLinhas[3], "Biblioteca XVProvedor256 não utilizada: não exporta XVProvedorObtem");
    EXPECT_TRUE(rLinhas[4].starts_with("Biblioteca XVProvedor2147483648 não utilizada: ")) << rLinhas[4];
    const std::vector<SSituacaoProvedor>& aSituacao = XVProvedores::Situacao();
    const SSituacaoProvedor& rPenultimo = aSituacao[aSituacao.size() - 2];
    EXPECT_EQ(rPenultimo.sBiblioteca + ": " + rPenultimo.sMotivo,
              "XVProvedor256.dll: não exporta XVProvedorObtem");
    EXPECT_EQ(aSituacao.size(), XVProvedores::Lista().size() + rLinhas.size());
}

class CXVTrocaRecusadaTeste : public CXVCenarioTroca {
  protected:
    // Nothing was handed to the library but the question for pending items, and nothing was stored.
    void EsperaRecusa(HRESULT hrEsperado, tagREG_CR_INTEGRACAO_MIDDLEWAREPS pedido, REG_XVDMC regDmc,
                      unsigned uiPerguntas = 1) {
        m_rGravador.listaChamadas.clear();
        const auto retrato = Retrato();
        const REG_XVDMC regAntes = regDmc;
        const HRESULT hr = m_pLoja->GravaIntegracaoInstantanea(&regDmc, pedido);
        if (hrEsperado == S_OK)
            EXPECT_TRUE(FAILED(hr));
        else
            EXPECT_EQ(hr, hrEsperado);
        EXPECT_EQ(regDmc, regAntes);
        EXPECT_EQ(m_rGravador.listaChamadas.size(), uiPerguntas);
        EXPECT_EQ(Chamadas("BuscaIntegracoes"), uiPerguntas);
        EXPECT_EQ(m_Arquivos.Diferenca(retrato, Retrato()), "");
        EXPECT_TRUE(LinhasPerdidas().empty());
    }
    // The list of names is put in order, through the journal, by whoever opens a file that was laid there by
    // hand.
    CXVSistemaArquivosMemoria::TRetrato Retrato() const {
        auto retrato = RetratoSemLogs();
        retrato.erase(PastaDados("XVDATABASE_FILE_CTRL.dat"));
        retrato.erase(PastaDados("XVDATABASE_ABERTA.srk"));
        return retrato;
    }
    void EsperaRecusa(HRESULT hrEsperado, XVUInt eTransacao = eXVSMiddleware_Inclusao,
                      REG_XVDMC regDmc = {}) {
        EsperaRecusa(hrEsperado, Pedido(eTransacao), regDmc);
    }
    // The store closed, one byte of a file changed, and the store opened again.
    void Estraga(const std::string& sNome, std::size_t uiPosicao) {
        m_pLoja.reset();
        std::string sBytes = Conteudo(sNome);
        ASSERT_GT(sBytes.size(), uiPosicao) << sNome;
        sBytes[uiPosicao] = static_cast<char>(sBytes[uiPosicao] ^ 0x55);
        m_Arquivos.CriaArquivo(PastaDados(sNome), sBytes);
        m_pLoja = Abre();
    }
};

TEST_F(CXVTrocaRecusadaTeste, ItemQueNaoPoderiaSerGravadoImpedeTambemOsAnteriores) {
    m_rGravador.listaItens = {Item(), Item()};
    m_rGravador.listaItens[1].reg.eSistemaIntegracao = OfficialBank;
    EsperaRecusa(E_NOTIMPL);
    m_rGravador.listaItens[1].reg.eSistemaIntegracao = 4;  // has a provider, but no place in the store
    EsperaRecusa(E_INVALIDARG);
    m_rGravador.listaItens = {Item(), Item()};
    m_rGravador.listaItens[0].reg.uiDmcOrigem = 1U << 14 | 4;  // a bit that no key has
    EsperaRecusa(CXVProvedorAdaptador::k_hrRespostaInvalida);
    m_rGravador.listaItens = {Item(), Item()};
    m_Relogio.SetUTC({2400, 1, 1, 0, 0, 0});
    EsperaRecusa(E_INVALIDARG);
}

TEST_F(CXVTrocaRecusadaTeste, SistemaDoChamadorDecideQuemEPerguntado) {
    m_rGravador.listaItens = {Item()};
    CriaSimulacao("pendentes/1.pend", "Origem: 20240301-15-2\n\n{\"s\":1}");
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS pedido = Pedido(eXVSMiddleware_Inclusao);
    pedido.eSistemaIntegracao = OfficialBank;
    EsperaRecusa(E_NOTIMPL, pedido, {}, 0);
    pedido.eSistemaIntegracao = 4;
    EsperaRecusa(E_INVALIDARG, pedido, {}, 0);
    const struct {
        XVUInt eSistema;
        std::vector<XVUInt> listaEsperada;
    } aCasos[] = {{Mercos, {Mercos}},
                  {SimulacaoSistemaTerceiro, {SimulacaoSistemaTerceiro}},
                  {Tipo_Nenhum, {SimulacaoSistemaTerceiro, Mercos}}};
    for (const auto& rCaso : aCasos) {
        const TListaDmc listaAntes = XVBusca(*m_pLoja);
        pedido.eSistemaIntegracao = rCaso.eSistema;
        REG_XVDMC regDmc;
        ASSERT_EQ(m_pLoja->GravaIntegracaoInstantanea(&regDmc, pedido), S_OK);
        const TListaDmc listaDepois = XVBusca(*m_pLoja);
        std::vector<XVUInt> listaSistemas;
        for (std::size_t i = listaAntes.size(); i < listaDepois.size(); ++i)
            listaSistemas.push_back(XVLe(*m_pLoja, {listaDepois[i]}).reg.eSistemaIntegracao);
        EXPECT_EQ(listaSistemas, rCaso.listaEsperada);
    }
    m_rGravador.iResultadoLista = static_cast<std::int32_t>(0x800705B4U);
    EsperaRecusa(XVHResult(0x800705B4U), pedido, {});  // all are asked, and one cannot tell
}

// The named integration of a change, and the day's files of an inclusion.
TEST_F(CXVTrocaRecusadaTeste, IntegracaoOuDiaQueNaoSeLeNaoETrocado) {
    m_rGravador.listaItens = {Item()};
    for (const XVUInt eTransacao : {XVUInt{eXVSMiddleware_Alteracao}, XVUInt{eXVSMiddleware_Exclusao}})
        EsperaRecusa(E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA, eTransacao, {XVChaveDmc(k_uiHoje, 9)});
    REG_XVDMC regAnterior = GravaAnterior(71, eXVSMiddleware_Sucesso);
    Grava(*m_pLoja, CXVIntegracaoTeste(71).Textos("a", "b", "c"));
    for (const bool bInclusao : {false, true})
        for (const char* pszGrupo : {"CRINTEGMID", "CRINTEGMIDJSON", "CRINTEGMIDMENS", "CRINTEGMIDJSONRET"}) {
            const std::string sArquivo =
                std::string(pszGrupo) + (bInclusao ? "20240315.dat" : "20240313.dat");
            SCOPED_TRACE(sArquivo);
            Estraga(sArquivo, 100);
            if (bInclusao) EsperaRecusa(S_OK);
            EsperaRecusa(S_OK, bInclusao ? eXVSMiddleware_Inclusao : eXVSMiddleware_Alteracao, regAnterior);
            Estraga(sArquivo, 100);  // whole again
        }
    REG_XVDMC regNova;
    EXPECT_EQ(Troca(eXVSMiddleware_Alteracao, &regAnterior), S_OK);
    EXPECT_EQ(Troca(eXVSMiddleware_Inclusao, &regNova), S_OK);
}

TEST_F(CXVTrocaRecusadaTeste, OperacaoAnteriorQueFalhaOuRespondeOImpossivelImpedeATroca) {
    m_rGravador.listaItens = {Item()};
    for (const HRESULT hrEsperado : {CXVProvedorAdaptador::k_hrRespostaInvalida, XVHResult(0x800705B4U)}) {
        const bool bFalha = hrEsperado == XVHResult(0x800705B4U);
        m_rGravador.listaChamadas.clear();
        m_rGravador.mapDados["Anterior"] = Resposta(200, bFalha ? 1 : 6);
        m_rGravador.mapDados["Anterior"].iResultado = static_cast<std::int32_t>(bFalha ? hrEsperado : S_OK);
        REG_XVDMC regDmc;
        EXPECT_EQ(Troca(eXVSMiddleware_Inclusao, &regDmc), hrEsperado);
        EXPECT_EQ(m_rGravador.listaChamadas.size(), 2U);
        EXPECT_TRUE(XVBusca(*m_pLoja).empty());
        EXPECT_TRUE(LinhasPerdidas().empty());
    }
}

}  // namespace
