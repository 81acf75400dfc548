// Providers in libraries: found beside the program, believed in nothing, and no buffer of theirs lost.
#include "platform/XVBibliotecaDinamica.h"
#include "suite/XVMiddlewareFacade.h"
#include "suite/providers/XVProvedorAdaptador.h"
#include "support/trace/XVCapturaTrace.h"
#include "tests/suite/XVCenarioSuite.h"

namespace {

class ProvedorPluginTeste : public CXVCenarioSuite {
  protected:
    void SetUp() override {
        ASSERT_EQ(m_Facade.Inicializa(&m_Dono), S_OK);
        ASSERT_TRUE(m_Biblioteca.EstaCarregada());
        m_pfnBuffersVivos = m_Biblioteca.GetFuncao<long (*)()>("XVProvedorExemploBuffersVivos");
        ASSERT_NE(m_pfnBuffersVivos, nullptr);
    }
    void TearDown() override { EXPECT_EQ(m_pfnBuffersVivos(), 0) << "every buffer went back to the library"; }

    HRESULT Envia(const char* pszJSON, CXVDadosCR_IntegracaoMiddleware* pDados) {
        pDados->sRegistroJSON = pszJSON;
        pDados->sMensagemIntegracao = "antes";
        pDados->eSistemaIntegracao = Mercos;
        return CXVMiddlewareIntegracaoSistemas::EnviaJsonIntegracaoSistemasTerceiros(*pDados, &m_Dono);
    }

    CXVBibliotecaDinamica m_Biblioteca{"XVProvedor16.dll"};
    long (*m_pfnBuffersVivos)() = nullptr;
    CXVMiddlewareFacade m_Facade;
    CXVCapturaTrace m_Captura;
};

TEST_F(ProvedorPluginTeste, BibliotecaAoLadoDoProgramaEUsada) {
    EXPECT_NE(XVProvedores::Busca(Mercos), nullptr);
    EXPECT_EQ(XVProvedores::Busca(OfficialBank), nullptr);
    CXVDadosCR_IntegracaoMiddleware dados;
    ASSERT_EQ(Envia("ok", &dados), S_OK);
    EXPECT_EQ(dados.uiChaveIntegracaoSistemaTerceiro, 1007U);
    EXPECT_EQ(dados.eStatusIntegracao, eXVSMiddleware_Sucesso);
    EXPECT_EQ(dados.sMensagemIntegracao, "MATRIZ");
    EXPECT_EQ(dados.sJSONRetornoIntegracao, "{\"ok\":1}");
    EXPECT_EQ(dados.sRegistroJSON, "ok");
}

TEST_F(ProvedorPluginTeste, RespostaDesonestaOuFalhaNaoMudaNada) {
    for (const char* pszPedido : {"falha", "status", "nul", "ponteiro", "tamanho", "marca"}) {
        CXVDadosCR_IntegracaoMiddleware dados;
        const HRESULT hrEsperado = std::string(pszPedido) == "falha"
                                       ? XVHResult(0x800705B4U)
                                       : CXVProvedorAdaptador::k_hrRespostaInvalida;
        EXPECT_EQ(Envia(pszPedido, &dados), hrEsperado) << pszPedido;
        EXPECT_EQ(dados.uiChaveIntegracaoSistemaTerceiro, 0U) << pszPedido;
        EXPECT_EQ(dados.sMensagemIntegracao, "antes") << pszPedido;
        EXPECT_EQ(dados.eStatusIntegracao, 0U) << pszPedido;
    }
}

TEST_F(ProvedorPluginTeste, ListaDePendenciasEConferidaItemAItem) {
    CXVDadosCR_ParametrosIntegracao parametros;
    parametros.eSistemaIntegracao = Mercos;
    parametros.regDmcOrigem = REG_XVDMC::Cria(0, 5, REG_XVDMA::Cria(2024, 3, 15));
    std::vector<CXVDadosCR_PendenciaIntegracaoSistema> lista(3);
    EXPECT_EQ(m_Facade.BuscaIntegracoes(parametros, lista), S_OK);
    EXPECT_TRUE(lista.empty());
    parametros.ulPonteiroAuxiliar = 1;
    ASSERT_EQ(m_Facade.BuscaIntegracoes(parametros, lista), S_OK);
    ASSERT_EQ(lista.size(), 2U);
    EXPECT_EQ(lista[1].sJSON, "{\"item\":1}");
    EXPECT_EQ(lista[1].regDmcOrigem, parametros.regDmcOrigem);
    for (const XVUInt ulDesonesta : {2U, 3U}) {
        parametros.ulPonteiroAuxiliar = ulDesonesta;
        EXPECT_EQ(m_Facade.BuscaIntegracoes(parametros, lista), CXVProvedorAdaptador::k_hrRespostaInvalida);
        EXPECT_TRUE(lista.empty());
    }
}

TEST_F(ProvedorPluginTeste, OperacaoOpcionalAusenteESucessoESistemaSemProvedorEENotimpl) {
    CXVDadosCR_IntegracaoMiddleware dados;
    dados.eSistemaIntegracao = Mercos;
    CXVDadosCR_ParametrosIntegracao parametros;
    parametros.eSistemaIntegracao = Mercos;
    EXPECT_EQ(m_Facade.RealizaOperacaoAnterior(dados), S_OK);
    EXPECT_EQ(m_Facade.RealizaOperacaoPosterior(parametros), S_OK);
    using CXVTroca = CXVMiddlewareIntegracaoSistemas;
    EXPECT_EQ(CXVTroca::ExcluiDadosIntegracaoSistemasTerceiros(dados, &m_Dono), E_NOTIMPL)
        << "the exchange itself is not optional";
    dados.eSistemaIntegracao = parametros.eSistemaIntegracao = OfficialBank;
    EXPECT_EQ(m_Facade.RealizaOperacaoAnterior(dados), E_NOTIMPL);
    EXPECT_EQ(m_Facade.RealizaOperacaoPosterior(parametros), E_NOTIMPL);
    EXPECT_EQ(m_Facade.AtualizaParametrosIntegracao(parametros), E_NOTIMPL);
    EXPECT_EQ(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(dados, &m_Dono), E_NOTIMPL);
    EXPECT_EQ(CXVTroca::BuscaDadosIntegracaoSistemasTerceiros(dados, nullptr, &m_Dono), E_NOTIMPL);
    EXPECT_EQ(CXVTroca::ExcluiDadosIntegracaoSistemasTerceiros(dados, &m_Dono), E_NOTIMPL);
    dados.eSistemaIntegracao = Tipo_Nenhum;
    EXPECT_EQ(m_Facade.RealizaOperacaoAnterior(dados), E_INVALIDARG);
    EXPECT_EQ(CXVTroca::ExcluiDadosIntegracaoSistemasTerceiros(dados, &m_Dono), E_INVALIDARG);
}

TEST_F(ProvedorPluginTeste, TabelaQueNaoCabeNaInterfaceERecusadaComOMotivo) {
    std::string sMotivo;
    const auto pfnObtem = m_Biblioteca.GetFuncao<PFXVProvedorObtem>(XVPROVEDOR_FUNCAO);
    EXPECT_NE(CXVProvedorAdaptador::Cria(pfnObtem, 16, &sMotivo), nullptr);
    EXPECT_EQ(sMotivo, "");
    const PFXVProvedorObtem pfnSemLibera = [](uint32_t, XVProvedorTabela* p) -> int32_t {
        p->eSistema = 16;
        return 1;
    };
    const PFXVProvedorObtem pfnOutroTamanho = [](uint32_t, XVProvedorTabela* p) -> int32_t {
        p->eSistema = 16;
        p->ulTamanho = 8;
        p->pfnLibera = [](void*, void*) {};
        return 0;
    };
    const PFXVProvedorObtem pfnOutraVersao = [](uint32_t, XVProvedorTabela* p) -> int32_t {
        p->eSistema = 16;
        p->ulVersao = 2;
        p->pfnLibera = [](void*, void*) {};
        return 0;
    };
    const PFXVProvedorObtem pfnFalha = [](uint32_t, XVProvedorTabela*) {
        return static_cast<int32_t>(0x80070005U);
    };
    const struct {
        PFXVProvedorObtem pfnObtem;
        XVUInt eSistema;
        std::string sMotivo;
    } aCasos[] = {
        {nullptr, 16, "não exporta XVProvedorObtem"},
        {pfnObtem, 8, "serve o sistema 16"},
        {pfnSemLibera, 16, "tabela sem pfnLibera"},
        {pfnOutroTamanho, 16, "tabela de 8 bytes em vez de " + std::to_string(sizeof(XVProvedorTabela))},
        {pfnOutraVersao, 16, "tabela da versão 2 em vez de 1"},
        {pfnFalha, 16, "XVProvedorObtem respondeu 0x80070005"}};
    for (const auto& rCaso : aCasos) {
        EXPECT_EQ(CXVProvedorAdaptador::Cria(rCaso.pfnObtem, rCaso.eSistema, &sMotivo), nullptr);
        EXPECT_EQ(sMotivo, rCaso.sMotivo);
    }
}

}  // namespace
