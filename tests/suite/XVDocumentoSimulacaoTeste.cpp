// The text documents of the simulated system: what hands write is read, what cannot be right is refused
// with the place.
#include <gtest/gtest.h>

#include "suite/simulation/XVDocumentoExterno.h"

namespace {

std::string Recusa(std::string_view sBytes) {
    CXVDocumentoSimulacao documento;
    std::string sErro;
    return documento.Interpreta(sBytes, &sErro) ? "" : sErro;
}

std::string RecusaRegra(std::string_view sBytes) {
    CXVDocumentoSimulacao documento;
    std::string sErro;
    EXPECT_TRUE(documento.Interpreta(sBytes, &sErro)) << sErro;
    SRegraSimulacao regra;
    return regra.Interpreta(documento, &sErro) ? "" : sErro;
}

TEST(DocumentoSimulacaoTeste, LeOQueMaosEscrevem) {
    for (const char* pszTexto :
         {"# nota\nOrigem: a:b \nTipo:6\n\n{\"x\":\n1}\n", "Origem:a:b\r\nTipo: 6\r\n\r\n{\"x\":\n1}\r\n",
          "\xEF\xBB\xBForigem: a:b\nTIPO:\t6\n\n{\"x\":\n1}"}) {
        CXVDocumentoSimulacao documento;
        std::string sErro;
        ASSERT_TRUE(documento.Interpreta(pszTexto, &sErro)) << sErro;
        ASSERT_NE(documento.Busca("Origem"), nullptr);
        EXPECT_EQ(documento.Busca("Origem")->sValor, "a:b");
        EXPECT_EQ(documento.Busca("tipo")->sValor, "6");
        EXPECT_EQ(documento.GetCorpoEscrito(), "{\"x\":\n1}");
    }
    EXPECT_EQ(Recusa("Operacao: EnviaJson"), "") << "no body, no last line end";
    EXPECT_EQ(Recusa(""), "");
}

TEST(DocumentoSimulacaoTeste, RecusaDizALinha) {
    EXPECT_EQ(Recusa("Tipo: 1\nsem separador\n"), "linha 2: esperado \"Campo: valor\"");
    EXPECT_EQ(Recusa("Tipo: 1\n: 2\n"), "linha 2: esperado \"Campo: valor\"");
    EXPECT_EQ(Recusa(std::string(33, 'a') + ": 1"), "linha 1: esperado \"Campo: valor\"");
    EXPECT_EQ(Recusa("Tipo: 1\ntipo: 2\n"), "linha 2: campo repetido");
    EXPECT_EQ(Recusa(std::string_view("Tipo: \0\n", 8)), "linha 1: caractere de controle no cabeçalho");
    EXPECT_EQ(Recusa("{\"json\": 1}\n"), "linha 1: esperado \"Campo: valor\"");
    EXPECT_NE(Recusa("X: " + std::string(70000, 'a')).find("65536"), std::string::npos);
    std::string sMuitos;
    for (char a = 'a'; a <= 'e'; ++a)
        for (char b = 'a'; b <= 'm'; ++b) sMuitos += std::string{a, b} + ": 1\n";
    EXPECT_EQ(Recusa(sMuitos), "linha 65: mais de 64 campos");
}

TEST(DocumentoSimulacaoTeste, RegraSoAceitaOQueAOperacaoConhece) {
    EXPECT_EQ(
        RecusaRegra("Operacao: EnviaJson\nTransacao: Inclusao\nTipo: 9\nStatus: Erro\nMensagem: não\n\n{}"),
        "");
    EXPECT_EQ(RecusaRegra("Operacao: BuscaDadosSistemaTerceiro\nConsulta: Cnpj\nDocumento: a-1_b.pdf\n"), "");
    EXPECT_EQ(RecusaRegra("Operacao: EnviaJson\nTipo: 18\nStatus: 6\n"),
              "campo \"Tipo\": valor desconhecido");
    EXPECT_NE(RecusaRegra("Tipo: 1\n").find("\"Operacao\": falta"), std::string::npos);
    for (const char* pszResto : {"Operacao: Envia\n",
                                 "Operacao: RealizaOperacaoPosterior\nStatus: 3\n",
                                 "Operacao: EnviaJson\nConsulta: 1\n",
                                 "Operacao: EnviaJson\nTipo: 18\n",
                                 "Operacao: EnviaJson\nTransacao: 0\n",
                                 "Operacao: EnviaJson\nStatus: 6\n",
                                 "Operacao: EnviaJson\nOrigem: 4\n",
                                 "Operacao: EnviaJson\nOrigem: 0\n",
                                 "Operacao: EnviaJson\nNovaChave: 0\n",
                                 "Operacao: EnviaJson\nChave: 18446744073709551616\n",
                                 "Operacao: EnviaJson\nChave: -1\n",
                                 "Operacao: EnviaJson\nChave:\n",
                                 "Operacao: EnviaJson\nResultado: 0x0\n",
                                 "Operacao: EnviaJson\nResultado: 0x180004005\n",
                                 "Operacao: EnviaJson\nResultado: 2147500037\n",
                                 "Operacao: EnviaJson\nEspera: 60001\n",
                                 "Operacao: EnviaJson\nEspera: 1\nTempoEsgotado: 1\n",
                                 "Operacao: RealizaOperacaoPosterior\n\ncorpo",
                                 "Operacao: BuscaDadosSistemaTerceiro\nDocumento: ../x\n",
                                 "Operacao: BuscaDadosSistemaTerceiro\nDocumento: a\\b\n",
                                 "Operacao: EnviaJson\nChave: 1 2\n",
                                 "Operacao: EnviaJson\nResultado: 0x00000001\n",
                                 "Operacao: EnviaJson\nResultado: 0x80004005\nTempoEsgotado: 1\n",
                                 "Operacao: EnviaJson\nOrigem: 16388\n",
                                 "Operacao: BuscaDadosSistemaTerceiro\nDocumento: x/../../y\n",
                                 "Operacao: BuscaDadosSistemaTerceiro\nDocumento: .\n"})
        EXPECT_NE(RecusaRegra(pszResto), "") << pszResto;
}

TEST(DocumentoSimulacaoTeste, DocumentoExternoVoltaByteAByte) {
    SDocumentoExterno documento;
    documento.regOrigem = REG_XVDMC::Cria(2, 4294967295U, REG_XVDMA::Cria(2024, 2, 29));
    documento.uiChaveRegistro = 18446744073709551615ULL;
    documento.uiBaseDados = 11;
    documento.eStatus = 3;
    documento.eTipo = 4;
    documento.eTransacao = 2;
    documento.ulFilial = 12;
    documento.sMensagem = "linha\numa só";
    documento.sEnviado = "Campo: 1\r\n\r\n{}\n";
    documento.sRetorno = "\n\n[]\r\n";
    documento.desfecho = {5, XVHResult(0x80004006U)};
    CXVDocumentoSimulacao lido;
    SDocumentoExterno volta;
    std::string sErro;
    const std::string sBytes = documento.ComoDocumento().Monta();
    ASSERT_TRUE(lido.Interpreta(sBytes, &sErro)) << sErro;
    ASSERT_TRUE(volta.Interpreta(lido, true, &sErro)) << sErro;
    EXPECT_EQ(volta.ComoDocumento().Monta(), sBytes);
    EXPECT_EQ(volta.sRetorno, documento.sRetorno);
    EXPECT_EQ(sBytes,
              "Status: 3\nMensagem: linha uma só\nOrigem: 20240229-4294967295-2\nTipo: 4\nTransacao: "
              "2\nFilial: 12\n"
              "BaseDados: 11\nChaveRegistro: 18446744073709551615\nEspera: 5\nResultado: 0x80004006\n"
              "Enviado: 15\n\nCampo: 1\r\n\r\n{}\n\n\n[]\r\n");
    ASSERT_TRUE(lido.Interpreta(sBytes.substr(0, sBytes.size() - documento.sRetorno.size() - 1), &sErro));
    EXPECT_FALSE(volta.Interpreta(lido, true, &sErro)) << "cut inside the JSON that was sent";
    ASSERT_TRUE(lido.Interpreta(std::string_view("Status: 3\n\n\0", 12), &sErro));
    EXPECT_FALSE(volta.Interpreta(lido, true, &sErro)) << "a zero byte in the answer";
}

}  // namespace
