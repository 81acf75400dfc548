// The command line read inside the test's own process.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/harness/XVDiretorioTemporario.h"
#include "tools/xvcr/XVAplicacao.h"
#include "tools/xvcr/commands/XVOpcoes.h"

namespace {

using testing::HasSubstr;
using testing::Not;

struct SFim {
    int iSaida;
    std::string sSaida;
    std::string sErro;
};

SFim Executa(const std::vector<std::string>& listaArgumentos) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int iSaida = XVExecutaAplicacao(listaArgumentos);
    return {iSaida, testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
}

void EsperaErroDeUso(const std::vector<std::string>& listaArgumentos, const std::string& sMensagem) {
    const SFim fim = Executa(listaArgumentos);
    EXPECT_EQ(fim.iSaida, 2) << sMensagem;
    EXPECT_EQ(fim.sSaida, "");
    EXPECT_THAT(fim.sErro, HasSubstr(sMensagem));
    EXPECT_EQ(std::count(fim.sErro.begin(), fim.sErro.end(), '\n'), 1) << fim.sErro;
    for (const char* pszIngles : {"required", "expected", "Could not", "excludes", "argument "})
        EXPECT_THAT(fim.sErro, Not(HasSubstr(pszIngles)));
}

TEST(Uso, ErrosDaLinhaDeComandoEmPortugues) {
    EsperaErroDeUso({}, "xvcr: falta o comando");
    EsperaErroDeUso({"mapa"}, "falta o comando");
    EsperaErroDeUso({"mapa", "apaga"}, "comando desconhecido: apaga");
    EsperaErroDeUso({"apaga"}, "comando desconhecido: apaga");
    EsperaErroDeUso({"busca", "--nada"}, "argumento inesperado: --nada");
    EsperaErroDeUso({"status", "--dmc", "20261121-1-1"}, "falta --status");
    EsperaErroDeUso({"busca", "--tipo"}, "--tipo: falta o valor");
    EsperaErroDeUso({"grava", "--filial", "1", "--filial", "2"}, "--filial: dada mais de uma vez");
    EsperaErroDeUso({"carrega", "x", "--para", "--continua"}, "--continua não vale junto com --para");
    EsperaErroDeUso({"le"}, "falta dmc");
}

TEST(Uso, ValoresImpossiveisDizemOQueSeEspera) {
    EsperaErroDeUso({"grava", "--status", "Talvez"},
                    "--status: valor desconhecido; os aceitos são: NenhumStatus, Pendente");
    EsperaErroDeUso({"busca", "--status", "Erro,Talvez"}, "--status: \"Talvez\": valor desconhecido");
    EsperaErroDeUso({"busca", "--inclusao-de", "ontem"}, "--inclusao-de: esperada uma data-hora ISO 8601");
    EsperaErroDeUso({"grava", "--dmc", "1-2-3"}, "--dmc: esperado um DMC");
    EsperaErroDeUso({"grava", "--chave", "18446744073709551616"}, "--chave: número acima do limite");
    EsperaErroDeUso({"--usuario", "65535", "busca"}, "--usuario: o usuário vai de 0 a 65534");
    EsperaErroDeUso({"--usuario", "65536", "busca"}, "--usuario: o usuário vai de 0 a 65534");
    EsperaErroDeUso({"grava", "--chave", "[1]"}, "--chave: esperado um número");
    EsperaErroDeUso({"grava", "--chave="}, "--chave: esperado um número");
}

TEST(Uso, CombinacoesQueNaoValem) {
    EsperaErroDeUso({"--leitura", "--empresa", "001", "grava"},
                    "--leitura não vale para um comando que grava");
    EsperaErroDeUso({"--empresa", "..", "busca"}, "--empresa: \"..\" não é um código de empresa");
    EsperaErroDeUso({"--empresa", "COM1", "busca"}, "não é um código de empresa");
    EsperaErroDeUso({"busca", "--empresa="}, "falta a empresa");
    EsperaErroDeUso({"grava", "--substitui"}, "--substitui só vale com --dmc");
    EsperaErroDeUso({"status", "--status", "Erro"}, "dada por --dmc, ou por --chave e --sistema");
    EsperaErroDeUso({"busca", "--conta", "--dmcs"}, "excluem-se");
    EsperaErroDeUso({"le", "20261121-1-1", "--operacao-posterior"}, "--operacao-posterior só vale com");
    EsperaErroDeUso({"le", "20261121-1-1", "--para-pasta", "x"}, "--para-pasta pede ao menos um texto");
    EsperaErroDeUso({"le", "0"}, "o DMC nulo");
}

TEST(Uso, AjudaDeCadaComandoTemExemplos) {
    const SFim geral = Executa({"--help"});
    EXPECT_EQ(geral.iSaida, 0);
    EXPECT_THAT(geral.sSaida, HasSubstr("Uso: xvcr"));
    for (const char* pszComando :
         {"grava", "status", "le", "busca", "carrega", "mapa", "datahora", "pendencia", "instantanea",
          "consulta", "converte", "versao", "registro"}) {
        EXPECT_THAT(geral.sSaida, HasSubstr(pszComando));
        const SFim ajuda = Executa({pszComando, "--help"});
        EXPECT_EQ(ajuda.iSaida, 0) << pszComando;
        EXPECT_THAT(ajuda.sSaida, HasSubstr(std::string("  xvcr ") + pszComando));
        EXPECT_THAT(ajuda.sSaida, Not(HasSubstr("REQUIRED")));
    }
    EXPECT_THAT(Executa({"mapa", "busca", "--help"}).sSaida, HasSubstr("xvcr mapa busca --registro"));
}

TEST(Uso, FalhasForaDaBaseSaemComUm) {
    const CXVDiretorioTeste diretorio;
    const SFim semArquivo = Executa({"grava", "--json-enviado", "@" + diretorio.Junta("não há")});
    EXPECT_EQ(semArquivo.iSaida, 1);
    EXPECT_THAT(semArquivo.sErro, HasSubstr("não foi possível abrir o arquivo"));
    const SFim semDiretorio = Executa({"--diretorio", diretorio.Junta("errado"), "--empresa", "1", "busca"});
    EXPECT_EQ(semDiretorio.iSaida, 1);
    EXPECT_THAT(semDiretorio.sErro, HasSubstr("não existe"));
}

TEST(Argumentos, ProtecaoSoTocaOQuePrecisa) {
    const std::vector<std::string> listaEntrada{
        "grava", "--mensagem", "", "--json-enviado={}", "[1,2]", "--x=", "-", "--dmc=1", "\x01z", "texto"};
    const std::vector<std::string> listaProtegida = XVProtegeArgumentos(listaEntrada);
    EXPECT_EQ(listaProtegida,
              (std::vector<std::string>{"grava", "--mensagem", "\x01", "--json-enviado=\x01{}", "\x01[1,2]",
                                        "--x=\x01", "-", "--dmc=1", "\x01\x01z", "texto"}));
    EXPECT_EQ(XVDesprotege("\x01[1,2]"), "[1,2]");
    EXPECT_EQ(XVDesprotege("\x01\x01z"), "\x01z");
    EXPECT_EQ(XVDesprotege("texto"), "texto");
}

}  // namespace
