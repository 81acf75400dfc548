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
        EXPECT_EQ(documento.Busca("Origem")->sValor + documento.Busca("tipo")->sValor, "a:b6");
        EXPECT_EQ(documento.GetCorpoEscrito(), "{\"x\":\n1}");
    }
    EXPECT_EQ(Recusa("Operacao: EnviaJson") + Recusa(""), "") << "no body, no last line end";
}

TEST(DocumentoSimulacaoTeste, RecusaDizALinha) {
    const char* const pszCampo = "esperado \"Campo: valor\"";
    EXPECT_EQ(Recusa("Tipo: 1\nsem separador\n"), std::string("linha 2: ") + pszCampo);
    EXPECT_EQ(Recusa("Tipo: 1\n: 2\n"), std::string("linha 2: ") + pszCampo);
    EXPECT_EQ(Recusa(std::string(33, 'a') + ": 1"), std::string("linha 1: ") + pszCampo);
    EXPECT_EQ(Recusa("{\"json\": 1}\n"), std::string("linha 1: ") + pszCampo);
    EXPECT_EQ(Recusa("Tipo: 1\ntipo: 2\n"), "linha 2: campo repetido");
    EXPECT_EQ(Recusa(std::string_view("Tipo: \0\n", 8)), "linha 1: caractere de controle no cabeçalho");
    EXPECT_NE(Recusa("X: " + std::string(70000, 'a')).find("65536"), std::string::npos);
    std::string sMuitos;
    for (char a = 'a'; a <= 'e'; ++a)
        for (char b = 'a'; b <= 'm'; ++b) sMuitos += std::string{a, b} + ": 1\n";
    EXPECT_EQ(Recusa(sMuitos), "linha 65: mais de 64 campos");
}

TEST(DocumentoSimulacaoTeste, RegraSoAceitaOQueAOperacaoConhece) {
    EXPECT_EQ(RecusaRegra("Operacao: EnviaJson\nTransacao: Inclusao\nTipo: 9\nStatus: Erro\nMensagem: não"),
              "");
    EXPECT_EQ(RecusaRegra("Operacao: BuscaDadosSistemaTerceiro\nConsulta: Cnpj\nDocumento: a-1_b.pdf\n"), "");
    EXPECT_EQ(RecusaRegra("Operacao: EnviaJson\nTipo: 18\nStatus: 6\n"),
              "campo \"Tipo\": valor desconhecido");
    EXPECT_EQ(RecusaRegra("Tipo: 1\n"), "campo \"Operacao\": falta");
    for (const char* pszResto :
         {"Consulta: 1", "Tipo: 18", "Transacao: 0", "Status: 6", "Origem: 4", "Origem: 0", "Origem: 16388",
          "NovaChave: 0", "Chave: 18446744073709551616", "Chave: -1", "Chave:", "Chave: 1 2",
          "Resultado: 0x0", "Resultado: 0x180004005", "Resultado: 2147500037", "Resultado: 0x00000001",
          "Espera: 60001", "Espera: 1\nTempoEsgotado: 1", "Resultado: 0x80004005\nTempoEsgotado: 1"})
        EXPECT_NE(RecusaRegra(std::string("Operacao: EnviaJson\n") + pszResto), "") << pszResto;
    for (const char* pszDocumento : {"../x", "a\\b", "x/../../y", ".", ".a"})
        EXPECT_NE(RecusaRegra(std::string("Operacao: BuscaDadosSistemaTerceiro\nDocumento: ") + pszDocumento),
                  "")
            << pszDocumento;
    for (const char* pszResto :
         {"Envia\n", "RealizaOperacaoPosterior\nStatus: 3\n", "RealizaOperacaoPosterior\n\ncorpo"})
        EXPECT_NE(RecusaRegra(std::string("Operacao: ") + pszResto), "") << pszResto;
}

TEST(DocumentoSimulacaoTeste, DocumentoExternoVoltaByteAByte) {
    const std::string sBytes =
        "Status: 3\nMensagem: linha uma só\nOrigem: 20240229-4294967295-2\nTipo: 4\nTransacao: 2\n"
        "Filial: 12\nBaseDados: 11\nChaveRegistro: 18446744073709551615\nEspera: 5\n"
        "Resultado: 0x80004006\nEnviado: 15\n\nCampo: 1\r\n\r\n{}\n\n\n[]\r\n";
    CXVDocumentoSimulacao lido;
    SDocumentoExterno externo;
    std::string sErro;
    ASSERT_TRUE(lido.Interpreta(sBytes, &sErro)) << sErro;
    ASSERT_TRUE(externo.Interpreta(lido, true, &sErro)) << sErro;
    EXPECT_EQ(externo.sEnviado, "Campo: 1\r\n\r\n{}\n");
    EXPECT_EQ(externo.sRetorno, "\n\n[]\r\n");
    EXPECT_EQ(externo.ComoDocumento().Monta(), sBytes);
    externo.sMensagem = "linha\numa só";
    EXPECT_EQ(externo.ComoDocumento().Monta(), sBytes);
    ASSERT_TRUE(lido.Interpreta(sBytes.substr(0, sBytes.size() - externo.sRetorno.size() - 1), &sErro));
    EXPECT_FALSE(externo.Interpreta(lido, true, &sErro)) << "cut inside the JSON that was sent";
    ASSERT_TRUE(lido.Interpreta(std::string_view("Status: 3\n\n\0", 12), &sErro));
    EXPECT_FALSE(externo.Interpreta(lido, true, &sErro)) << "a zero byte in the answer";
}

}  // namespace
