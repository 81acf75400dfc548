// The simulated system without rules: it keeps what it is sent under keys of its own and answers by it.
#include "tests/suite/XVCenarioSimulacao.h"

namespace {

using SimulacaoTrocaTeste = CXVCenarioSimulacao;

constexpr const char* k_pszAceito = "Documento aceito pelo sistema simulado.";
constexpr const char* k_pszCancelado = "Documento cancelado no sistema simulado.";

// What the simulated system keeps of Dados().
std::string Documento(const std::string& sStatus, const std::string& sMensagem, const std::string& sEspera,
                      const std::string& sRetorno) {
    return "Status: " + sStatus + "\nMensagem: " + sMensagem +
           "\nOrigem: 20240315-1-2\nTipo: 9\nTransacao: 2\nFilial: 32\nBaseDados: 31\nChaveRegistro: 55\n" +
           sEspera + "Enviado: 16\n\n{\"a\":\"ção\r\n\"}\n" + sRetorno;
}

TEST_F(SimulacaoTrocaTeste, DocumentoEnviadoLidoCanceladoELidoDeNovoGuardaTudo) {
    TDados dados = Dados();
    TDados esperado = Dados(1);
    const char* const pszAceito = "{\"chave\":\"1\",\"situacao\":\"aceito\"}";
    ASSERT_EQ(Envia(dados), S_OK);
    Responde(esperado, eXVSMiddleware_Sucesso, k_pszAceito, pszAceito);
    EXPECT_TRUE(dados == esperado);
    EXPECT_EQ(LeSimulacao("1.doc"), Documento("3", k_pszAceito, "", pszAceito));

    // A person changes it; what it says is answered, and what it orders is kept when it is cancelled.
    CriaSimulacao("1.doc", Documento("2", "em análise", "Espera: 5\n", "{\"etapa\":2}"));
    TParametros parametros;
    ASSERT_EQ(Busca(dados, &parametros), S_OK);
    Responde(esperado, eXVSMiddleware_Enviado, "em análise", "{\"etapa\":2}");
    EXPECT_TRUE(dados == esperado);
    EXPECT_TRUE(parametros == Parametros());
    ASSERT_EQ(Exclui(dados), S_OK);
    const char* const pszCancelado = "{\"chave\":\"1\",\"situacao\":\"cancelado\"}";
    Responde(esperado, eXVSMiddleware_Cancelado, k_pszCancelado, pszCancelado);
    EXPECT_TRUE(dados == esperado);
    EXPECT_EQ(LeSimulacao("1.doc"), Documento("5", k_pszCancelado, "Espera: 5\n", pszCancelado));
    TDados lido = Dados(1);
    lido.uiChaveRegistroSistemaTerceiro = 0;  // the document knows it
    ASSERT_EQ(Busca(lido), S_OK);
    EXPECT_TRUE(lido == esperado);
    EXPECT_EQ(m_Relogio.GetMilissegundosDormidos(), 15U);
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
}

TEST_F(SimulacaoTrocaTeste, SemJSONNadaEEnviadoESemPastaNadaEEncontrado) {
    TDados vazio = Dados();
    vazio.sRegistroJSON.clear();
    EXPECT_EQ(Envia(vazio), E_INVALIDARG);
    EXPECT_EQ(LeSimulacao("1.doc"), "<ausente>");
    for (const XVUInt64 uiChave : {0U, 77U}) {
        TDados dados = Dados(uiChave);
        TDados esperado = dados;
        Responde(esperado, eXVSMiddleware_Erro, "Documento não encontrado no sistema simulado.", "");
        ASSERT_EQ(Exclui(dados), S_OK);
        EXPECT_TRUE(dados == esperado);
    }
}

TEST_F(SimulacaoTrocaTeste, SemChaveEODocumentoMaisNovoDaOrigemEDoTipo) {
    for (int i = 0; i < 2; ++i) {
        TDados dados = Dados();
        ASSERT_EQ(Envia(dados), S_OK);
    }
    CriaSimulacao("3.doc", "Origem: 20240315-1-2\n");  // of no type
    TDados outroTipo = Dados();
    outroTipo.eTipoIntegracao = 1;
    ASSERT_EQ(Busca(outroTipo), S_OK);
    EXPECT_EQ(outroTipo.uiChaveIntegracaoSistemaTerceiro, 0U);
    for (const XVUInt64 uiEsperada : {2U, 1U, 0U}) {
        TDados semChave = Dados();
        ASSERT_EQ(Exclui(semChave), S_OK);
        EXPECT_EQ(semChave.uiChaveIntegracaoSistemaTerceiro, uiEsperada) << "cancelled ones are passed over";
    }
}

}  // namespace
