// The simulated system without rules: it keeps what it is sent under keys of its own and answers by it.
#include <set>

#include "suite/XVMiddlewareFacade.h"
#include "support/trace/XVCapturaTrace.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVEmThreads.h"
#include "tests/suite/XVCenarioSuite.h"

namespace {

using CXVTroca = CXVMiddlewareIntegracaoSistemas;

REG_XVDMC Origem(XVUInt ulPonteiro) {
    return REG_XVDMC::Cria(2, ulPonteiro, REG_XVDMA::Cria(2024, 3, 15));
}

CXVDadosCR_IntegracaoMiddleware Dados(XVUInt ulOrigem, std::string sJSON = "{\"pedido\":1}") {
    CXVDadosCR_IntegracaoMiddleware dados;
    dados.sRegistroJSON = std::move(sJSON);
    dados.regDmcMovimentoOrigem = Origem(ulOrigem);
    dados.eSistemaIntegracao = SimulacaoSistemaTerceiro;
    dados.eTipoIntegracao = eXVSMiddleware_BuscaPedidos;
    dados.eTipoTransacao = eXVSMiddleware_Inclusao;
    return dados;
}

using SimulacaoTrocaTeste = CXVCenarioSuite;

TEST_F(SimulacaoTrocaTeste, EnviaGuardaODocumentoEDevolveChave) {
    auto um = Dados(1, "{\"a\":\"ção\r\n\"}\n");
    auto dois = Dados(2);
    ASSERT_EQ(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(um, &m_Dono), S_OK);
    ASSERT_EQ(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(dois, &m_Dono), S_OK);
    EXPECT_EQ(um.uiChaveIntegracaoSistemaTerceiro, 1U);
    EXPECT_EQ(dois.uiChaveIntegracaoSistemaTerceiro, 2U);
    EXPECT_EQ(um.eStatusIntegracao, eXVSMiddleware_Sucesso);
    EXPECT_EQ(um.sJSONRetornoIntegracao, "{\"chave\":\"1\",\"situacao\":\"aceito\"}");
    EXPECT_FALSE(um.sMensagemIntegracao.empty());
    EXPECT_NE(LeSimulacao("1.doc").find("\n\n{\"a\":\"ção\r\n\"}\n{\"chave\":\"1\""), std::string::npos)
        << "the bytes that were sent stand as they were";
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
    auto vazio = Dados(3, "");
    EXPECT_EQ(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(vazio, &m_Dono), E_INVALIDARG);
    EXPECT_EQ(LeSimulacao("3.doc"), "<ausente>");
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
    CriaSimulacao("contador.doc", "Ultima: 18446744073709551615\n");
    auto dados = Dados(1);
    const CXVCapturaTrace captura;
    EXPECT_TRUE(FAILED(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(dados, &m_Dono)));
    EXPECT_EQ(dados.uiChaveIntegracaoSistemaTerceiro, 0U);
}

TEST_F(SimulacaoTrocaTeste, BuscaDadosReleODocumentoPorChaveEPorOrigem) {
    auto dados = Dados(1);
    ASSERT_EQ(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(dados, &m_Dono), S_OK);
    CriaSimulacao("1.doc", "Status: Enviado\nMensagem: em análise\nOrigem: " + Origem(1).ToString() +
                               "\nTipo: BuscaPedidos\nChaveRegistro: 55\n\n{\"etapa\":2}\n");
    CXVDadosCR_ParametrosIntegracao parametros;
    ASSERT_EQ(CXVTroca::BuscaDadosIntegracaoSistemasTerceiros(dados, &parametros, &m_Dono), S_OK);
    EXPECT_EQ(dados.eStatusIntegracao, eXVSMiddleware_Enviado);
    EXPECT_EQ(dados.sMensagemIntegracao, "em análise");
    EXPECT_EQ(dados.sJSONRetornoIntegracao, "{\"etapa\":2}");
    EXPECT_EQ(dados.sRegistroJSON, "{\"pedido\":1}");
    EXPECT_EQ(parametros.uiChaveRegistroSistemaTerceiro, 55U);

    auto semChave = Dados(1);
    ASSERT_EQ(CXVTroca::BuscaDadosIntegracaoSistemasTerceiros(semChave, nullptr, &m_Dono), S_OK);
    EXPECT_EQ(semChave.uiChaveIntegracaoSistemaTerceiro, 1U);
    auto outroTipo = Dados(1);
    outroTipo.eTipoIntegracao = eXVSMiddleware_CadastroProduto;
    ASSERT_EQ(CXVTroca::BuscaDadosIntegracaoSistemasTerceiros(outroTipo, nullptr, &m_Dono), S_OK);
    EXPECT_EQ(outroTipo.eStatusIntegracao, eXVSMiddleware_Erro);
    EXPECT_EQ(outroTipo.uiChaveIntegracaoSistemaTerceiro, 0U);
}

TEST_F(SimulacaoTrocaTeste, ExcluiMarcaODocumentoEODesconhecidoEErroDoSistema) {
    auto primeiro = Dados(1);
    auto segundo = Dados(1);
    ASSERT_EQ(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(primeiro, &m_Dono), S_OK);
    ASSERT_EQ(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(segundo, &m_Dono), S_OK);
    auto semChave = Dados(1);
    ASSERT_EQ(CXVTroca::ExcluiDadosIntegracaoSistemasTerceiros(semChave, &m_Dono), S_OK);
    EXPECT_EQ(semChave.uiChaveIntegracaoSistemaTerceiro, 2U) << "the newest of the origin";
    EXPECT_EQ(semChave.eStatusIntegracao, eXVSMiddleware_Cancelado);
    ASSERT_EQ(CXVTroca::BuscaDadosIntegracaoSistemasTerceiros(segundo, nullptr, &m_Dono), S_OK);
    EXPECT_EQ(segundo.eStatusIntegracao, eXVSMiddleware_Cancelado);
    auto seguinte = Dados(1);
    ASSERT_EQ(CXVTroca::ExcluiDadosIntegracaoSistemasTerceiros(seguinte, &m_Dono), S_OK);
    EXPECT_EQ(seguinte.uiChaveIntegracaoSistemaTerceiro, 1U) << "cancelled ones are passed over";
    auto desconhecido = Dados(9);
    desconhecido.uiChaveIntegracaoSistemaTerceiro = 77;
    ASSERT_EQ(CXVTroca::ExcluiDadosIntegracaoSistemasTerceiros(desconhecido, &m_Dono), S_OK);
    EXPECT_EQ(desconhecido.eStatusIntegracao, eXVSMiddleware_Erro);
    EXPECT_FALSE(desconhecido.sMensagemIntegracao.empty());
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

TEST(SimulacaoDiscoTeste, ChavesDeMuitasThreadsNaoSeRepetemNemFaltam) {
    const CXVDiretorioTeste diretorio;
    CXVRegistryFalso registry;
    registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", diretorio.GetCaminho());
    const CXVGuardaRegistry guarda(registry);
    const CXVDonoFixo dono("MATRIZ");
    constexpr int k_iThreads = 4;
    constexpr int k_iEnvios = 10;
    std::vector<XVUInt64> aChaves(k_iThreads * k_iEnvios);
    XVEmThreads(k_iThreads, [&](std::size_t i) {
        for (std::size_t j = 0; j < k_iEnvios; ++j) {
            auto dados = Dados(1);
            EXPECT_EQ(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(dados, &dono), S_OK);
            aChaves[i * k_iEnvios + j] = dados.uiChaveIntegracaoSistemaTerceiro;
        }
    });
    const std::set<XVUInt64> conjunto(aChaves.begin(), aChaves.end());
    EXPECT_EQ(conjunto.size(), aChaves.size());
    EXPECT_EQ(*conjunto.rbegin(), aChaves.size());
    for (const XVUInt64 uiChave : conjunto)
        EXPECT_TRUE(
            diretorio.LeConteudo("MATRIZ/DF/simulacao/" + std::to_string(uiChave) + ".doc").has_value());
}

}  // namespace
