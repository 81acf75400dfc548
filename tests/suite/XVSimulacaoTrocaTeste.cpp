// The simulated system without rules: it keeps what it is sent under keys of its own and answers by it.
#include <array>
#include <atomic>

#include "suite/XVMiddlewareFacade.h"
#include "support/trace/XVCapturaTrace.h"
#include "tests/harness/XVEmThreads.h"
#include "tests/suite/XVCenarioSuite.h"

namespace {

using CXVTroca = CXVMiddlewareIntegracaoSistemas;

REG_XVDMC Origem(XVUInt ulPonteiro) {
    return REG_XVDMC::Cria(2, ulPonteiro, REG_XVDMA::Cria(2024, 3, 15));
}

// Every field has a value of its own.
CXVDadosCR_IntegracaoMiddleware Dados(XVUInt ulOrigem) {
    CXVDadosCR_IntegracaoMiddleware dados;
    dados.sRegistroJSON = "{\"a\":\"ção\r\n\"}\n";
    dados.sMensagemIntegracao = "mensagem velha";
    dados.sJSONRetornoIntegracao = "retorno velho";
    dados.regDmc = Origem(1001);
    dados.regDmcIntegracaoOrigem = Origem(1002);
    dados.regDmcMovimentoOrigem = Origem(ulOrigem);
    dados.regDataHoraInclusao.uiValor = 21;
    dados.regDataHoraAlteracaoStatus.uiValor = 22;
    dados.uiChaveRegistroSistemaTerceiro = 55;
    dados.uiBaseDadosTerceiro = 31;
    dados.eSistemaIntegracao = SimulacaoSistemaTerceiro;
    dados.eTipoIntegracao = eXVSMiddleware_BuscaPedidos;
    dados.eTipoTransacao = eXVSMiddleware_Alteracao;
    dados.ulPonteiroFilial = 32;
    dados.ulPonteiroUsuarioInclusao = 33;
    dados.ulPonteiroUsuarioCancelamento = 34;
    dados.ulPonteiroAuxiliar = 35;
    dados.cReconsultarIdTerceiros = 1;
    dados.ucTipoPonteiroAuxiliar = 36;
    return dados;
}

// What the simulated system keeps of Dados(1) and answers.
std::string Documento(XVUInt eStatus, const char* pszMensagem, const char* pszEspera,
                      const char* pszSituacao) {
    return "Status: " + std::to_string(eStatus) + "\nMensagem: " + pszMensagem +
           "\nOrigem: 20240315-1-2\nTipo: " + std::to_string(eXVSMiddleware_BuscaPedidos) +
           "\nTransacao: 2\nFilial: 32\nBaseDados: 31\nChaveRegistro: 55\n" + pszEspera +
           "Enviado: 16\n\n{\"a\":\"ção\r\n\"}\n{\"chave\":\"1\",\"situacao\":\"" + pszSituacao + "\"}";
}

using SimulacaoTrocaTeste = CXVCenarioSuite;

TEST_F(SimulacaoTrocaTeste, DocumentoEnviadoLidoCanceladoELidoDeNovoGuardaTudo) {
    auto dados = Dados(1);
    auto esperado = dados;
    const auto responde = [&](XVUInt eStatus, const char* pszMensagem, const char* pszSituacao) {
        esperado.eStatusIntegracao = eStatus;
        esperado.sMensagemIntegracao = pszMensagem;
        esperado.sJSONRetornoIntegracao =
            std::string("{\"chave\":\"1\",\"situacao\":\"") + pszSituacao + "\"}";
    };
    ASSERT_EQ(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(dados, &m_Dono), S_OK);
    esperado.uiChaveIntegracaoSistemaTerceiro = 1;
    responde(eXVSMiddleware_Sucesso, "Documento aceito pelo sistema simulado.", "aceito");
    EXPECT_TRUE(dados == esperado);
    EXPECT_EQ(LeSimulacao("1.doc"),
              Documento(eXVSMiddleware_Sucesso, "Documento aceito pelo sistema simulado.", "", "aceito"));

    // A person changes it; what it says is answered, and what it orders is kept when it is cancelled.
    CriaSimulacao("1.doc", Documento(eXVSMiddleware_Enviado, "em análise", "Espera: 5\n", "analise"));
    CXVDadosCR_ParametrosIntegracao parametros;
    ASSERT_EQ(CXVTroca::BuscaDadosIntegracaoSistemasTerceiros(dados, &parametros, &m_Dono), S_OK);
    responde(eXVSMiddleware_Enviado, "em análise", "analise");
    EXPECT_TRUE(dados == esperado);
    EXPECT_TRUE(parametros == (CXVDadosCR_ParametrosIntegracao{
                                  Origem(1), Origem(1001), 55, 31, eXVSMiddleware_BuscaPedidos,
                                  SimulacaoSistemaTerceiro, eXVSMiddleware_Alteracao, 32, 35, 36}));
    ASSERT_EQ(CXVTroca::ExcluiDadosIntegracaoSistemasTerceiros(dados, &m_Dono), S_OK);
    responde(eXVSMiddleware_Cancelado, "Documento cancelado no sistema simulado.", "cancelado");
    EXPECT_TRUE(dados == esperado);
    EXPECT_EQ(LeSimulacao("1.doc"),
              Documento(eXVSMiddleware_Cancelado, "Documento cancelado no sistema simulado.", "Espera: 5\n",
                        "cancelado"));
    auto lido = Dados(1);
    lido.uiChaveIntegracaoSistemaTerceiro = 1;
    lido.uiChaveRegistroSistemaTerceiro = 0;  // the document knows it
    ASSERT_EQ(CXVTroca::BuscaDadosIntegracaoSistemasTerceiros(lido, nullptr, &m_Dono), S_OK);
    EXPECT_TRUE(lido == esperado);
    EXPECT_EQ(m_Relogio.GetMilissegundosDormidos(), 15U);
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
}

TEST_F(SimulacaoTrocaTeste, SemJSONNadaEEnviadoESemPastaNadaEEncontrado) {
    auto vazio = Dados(3);
    vazio.sRegistroJSON.clear();
    EXPECT_EQ(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(vazio, &m_Dono), E_INVALIDARG);
    EXPECT_EQ(LeSimulacao("1.doc"), "<ausente>");
    for (const XVUInt64 uiChave : {0U, 77U}) {
        auto dados = Dados(9);
        dados.uiChaveIntegracaoSistemaTerceiro = uiChave;
        ASSERT_EQ(CXVTroca::ExcluiDadosIntegracaoSistemasTerceiros(dados, &m_Dono), S_OK);
        EXPECT_EQ(dados.eStatusIntegracao, eXVSMiddleware_Erro);
        EXPECT_EQ(dados.sMensagemIntegracao, "Documento não encontrado no sistema simulado.");
        EXPECT_EQ(dados.uiChaveIntegracaoSistemaTerceiro, uiChave);
    }
}

TEST_F(SimulacaoTrocaTeste, ChaveNuncaSobrepoeDocumentoMesmoSemContador) {
    CriaSimulacao("1.doc", "Status: Sucesso\n");
    CriaSimulacao("3.doc", "Status: Sucesso\n");
    for (const XVUInt64 uiEsperada : {2U, 4U}) {
        auto dados = Dados(1);
        ASSERT_EQ(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(dados, &m_Dono), S_OK);
        EXPECT_EQ(dados.uiChaveIntegracaoSistemaTerceiro, uiEsperada);
    }
    EXPECT_EQ(LeSimulacao("1.doc"), "Status: Sucesso\n");
    ASSERT_TRUE(m_Arquivos.Apaga(m_Arquivos.Junta(PastaDados("simulacao"), "4.doc")).Ok());
    auto seguinte = Dados(1);
    ASSERT_EQ(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(seguinte, &m_Dono), S_OK);
    EXPECT_EQ(seguinte.uiChaveIntegracaoSistemaTerceiro, 5U) << "a key is issued once";
    CriaSimulacao("contador.doc", "Ultima: 18446744073709551615\n");
    auto dados = Dados(1);
    const CXVCapturaTrace captura;
    EXPECT_TRUE(FAILED(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(dados, &m_Dono)));
    EXPECT_EQ(dados.uiChaveIntegracaoSistemaTerceiro, 0U);
}

TEST_F(SimulacaoTrocaTeste, SemChaveEODocumentoMaisNovoDaOrigemEDoTipo) {
    for (int i = 0; i < 2; ++i) {
        auto dados = Dados(1);
        ASSERT_EQ(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(dados, &m_Dono), S_OK);
    }
    CriaSimulacao("3.doc", "Origem: 20240315-1-2\n");  // of no type
    auto outroTipo = Dados(1);
    outroTipo.eTipoIntegracao = 1;
    ASSERT_EQ(CXVTroca::BuscaDadosIntegracaoSistemasTerceiros(outroTipo, nullptr, &m_Dono), S_OK);
    EXPECT_EQ(outroTipo.uiChaveIntegracaoSistemaTerceiro, 0U);
    for (const XVUInt64 uiEsperada : {2U, 1U, 0U}) {
        auto semChave = Dados(1);
        ASSERT_EQ(CXVTroca::ExcluiDadosIntegracaoSistemasTerceiros(semChave, &m_Dono), S_OK);
        EXPECT_EQ(semChave.uiChaveIntegracaoSistemaTerceiro, uiEsperada) << "cancelled ones are passed over";
    }
}

TEST_F(SimulacaoTrocaTeste, ListaEConsultadaEmOrdemAteAPrimeiraFalha) {
    CriaSimulacao("1.doc", "Status: Sucesso\n");
    CriaSimulacao("2.doc", "Resultado: 0x800706BA\n");
    CriaSimulacao("3.doc", "Status: Sucesso\n");
    std::vector<CXVDadosCR_IntegracaoMiddleware> lista;
    for (const XVUInt64 uiChave : {1U, 2U, 3U}) {
        lista.push_back(Dados(1));
        lista.back().uiChaveIntegracaoSistemaTerceiro = uiChave;
    }
    const CXVCapturaTrace captura;
    EXPECT_EQ(CXVTroca::BuscaDadosIntegracaoSistemasTerceiros(lista, &m_Dono), XVHResult(0x800706BAU));
    EXPECT_EQ(lista[0].eStatusIntegracao, eXVSMiddleware_Sucesso);
    EXPECT_EQ(lista[2].eStatusIntegracao, 0U);
}

// One folder for all threads, as for several processes.
TEST_F(SimulacaoTrocaTeste, ChavesDeMuitasThreadsNaoSeRepetemNemFaltam) {
    const CXVGuardaRelogio guarda(XVPlataforma::RelogioNativo());  // who waits for the counter really waits
    std::array<std::atomic<int>, 41> aVezes{};
    XVEmThreads(4, [&](unsigned) {
        for (int j = 0; j < 10; ++j) {
            auto dados = Dados(1);
            EXPECT_EQ(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(dados, &m_Dono), S_OK);
            ++aVezes.at(dados.uiChaveIntegracaoSistemaTerceiro);
        }
    });
    for (std::size_t i = 1; i < aVezes.size(); ++i) {
        EXPECT_EQ(aVezes[i], 1) << i;
        EXPECT_NE(LeSimulacao(std::to_string(i) + ".doc"), "<ausente>");
    }
}

}  // namespace
