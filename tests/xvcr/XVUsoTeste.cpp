// The command line read inside the test's own process.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/XVAmbiente.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/harness/XVSistemaArquivosMemoria.h"
#include "tests/xvcr/XVExecutaAqui.h"

namespace {

using testing::HasSubstr;
using testing::Not;

const struct SErroDeUso {
    std::vector<std::string> listaArgumentos;
    std::string sMensagem;
} k_aErrosDeUso[] = {
    {{}, "falta o comando"},
    {{"mapa"}, "falta o comando"},
    {{"mapa", "apaga"}, "comando desconhecido: apaga"},
    {{"apaga"}, "comando desconhecido: apaga"},
    {{"busca", "--nada"}, "argumento inesperado: --nada"},
    {{"busca", "[x"}, "argumento inesperado: [x"},
    {{"status", "--dmc", "20261121-1-1"}, "falta --status"},
    {{"busca", "--tipo"}, "--tipo: falta o valor"},
    {{"grava", "--filial", "1", "--filial", "2"}, "--filial: dada mais de uma vez ou com valores demais"},
    {{"carrega", "x", "--para", "--continua"}, "--continua não vale junto com --para"},
    {{"le"}, "falta dmc"},
    {{"grava", "--status", "Talvez"},
     "--status: valor desconhecido; os aceitos são: NenhumStatus, Pendente, Enviado, Sucesso, Erro, "
     "Cancelado"},
    {{"busca", "--status", "Erro,Talvez"},
     "--status: \"Talvez\": valor desconhecido; os aceitos são: NenhumStatus, Pendente, Enviado, "
     "Sucesso, Erro, Cancelado"},
    {{"busca", "--inclusao-de", "ontem"},
     "--inclusao-de: esperada uma data-hora ISO 8601 em UTC (2026-11-21T13:05:09Z) ou o valor "
     "empacotado"},
    {{"grava", "--dmc", "1-2-3"},
     "--dmc: esperado um DMC (AAAAMMDD-ponteiro-tipo, ou o valor decimal de 64 bits)"},
    {{"le", "abc"}, "\"abc\": esperado um DMC (AAAAMMDD-ponteiro-tipo, ou o valor decimal de 64 bits)"},
    {{"grava", "--chave", "18446744073709551616"}, "--chave: número acima do limite de 18446744073709551615"},
    {{"grava", "--tipo-auxiliar", "256"}, "--tipo-auxiliar: número acima do limite de 255"},
    {{"grava", "--chave", "[1]"}, "--chave: esperado um número inteiro sem sinal"},
    {{"grava", "--chave="}, "--chave: esperado um número inteiro sem sinal"},
    {{"--usuario", "65535", "busca"}, "--usuario: o usuário vai de 0 a 65534"},
    {{"--usuario", "65536", "busca"}, "--usuario: o usuário vai de 0 a 65534"},
    {{"--usuario", "x", "busca"}, "--usuario: esperado um número inteiro sem sinal"},
    {{"registro", "--mes", "2026"}, "--mes: esperado um mês: AAAAMM"},
    {{"registro", "--mes", "20261x"}, "--mes: esperado um mês: AAAAMM"},
    {{"registro", "--de", "2026-11-21Z"},
     "--de: esperada uma data-hora local, sem Z: 2026-11-21 ou 2026-11-21T13:05:09"},
    {{"registro", "--codigo", "E_X"}, "--codigo: esperado um código (0x81080AAA) ou o nome simbólico de um"},
    {{"registro", "--da-sessao", "x"}, "--da-sessao: esperado um número inteiro sem sinal"},
    {{"--leitura", "--empresa", "001", "grava"}, "--leitura não vale para um comando que grava"},
    {{"--empresa", "..", "busca"},
     "--empresa: \"..\" não é um código de empresa (1 a 47 letras, dígitos, _ ou -, e não um nome de "
     "dispositivo)"},
    {{"--empresa", "COM1", "busca"},
     "--empresa: \"COM1\" não é um código de empresa (1 a 47 letras, dígitos, _ ou -, e não um nome de "
     "dispositivo)"},
    {{"--empresa", "..", "registro"},
     "--empresa: \"..\" não é um código de empresa (1 a 47 letras, dígitos, _ ou -, e não um nome de "
     "dispositivo)"},
    {{"busca", "--empresa="}, "falta a empresa: use --empresa ou a variável de ambiente XVCR_EMPRESA"},
    {{"versao"}, "falta a empresa: use --empresa ou a variável de ambiente XVCR_EMPRESA"},
    {{"converte"}, "falta a empresa: use --empresa ou a variável de ambiente XVCR_EMPRESA"},
    {{"grava", "--substitui"}, "--substitui só vale com --dmc"},
    {{"status", "--status", "Erro", "--chave", "1"},
     "a integração é dada por --dmc, ou por --chave e --sistema"},
    {{"status", "--status", "Erro", "--sistema", "8"},
     "a integração é dada por --dmc, ou por --chave e --sistema"},
    {{"busca", "--conta", "--dmcs"}, "--conta, --dmcs e a leitura das integrações excluem-se"},
    {{"busca", "--conta", "--mensagem"}, "--conta, --dmcs e a leitura das integrações excluem-se"},
    {{"mapa", "busca", "--tipo", "6", "--sistema", "16"}, "a busca pede --registro ou --chave-registro"},
    {{"le", "20261121-1-1", "--operacao-posterior"}, "--operacao-posterior só vale com --consulta-terceiro"},
    {{"le", "20261121-1-1", "--para-pasta", "x"},
     "--para-pasta pede ao menos um texto (--todos, por exemplo)"},
    {{"le", "0"}, "\"0\": o DMC nulo não é de integração alguma"},
    {{"--servidor", "versao"}, "--servidor: a versão é lida na própria base"},
    {{"--servidor", "converte"}, "--servidor: a conversão é feita na própria base"},
};

// The whole line on the error output; nothing is opened.
TEST(Uso, ErrosDaLinhaDeComandoEmPortugues) {
    for (const SErroDeUso& rCaso : k_aErrosDeUso) {
        const SExecucao execucao = XVExecutaAqui(rCaso.listaArgumentos);
        EXPECT_EQ(execucao.iSaida, 2) << rCaso.sMensagem;
        EXPECT_EQ(execucao.sSaida, "");
        EXPECT_EQ(execucao.sErro, "xvcr: " + rCaso.sMensagem + '\n');
    }
}

TEST(Uso, AjudaDeCadaComandoTemExemplos) {
    const SExecucao geral = XVExecutaAqui({"--help"});
    EXPECT_EQ(geral.iSaida, 0);
    EXPECT_THAT(geral.sSaida, HasSubstr("Uso: xvcr"));
    for (const char* pszComando :
         {"grava", "status", "le", "busca", "carrega", "mapa", "datahora", "pendencia", "instantanea",
          "consulta", "converte", "versao", "registro"}) {
        EXPECT_THAT(geral.sSaida, HasSubstr(pszComando));
        const SExecucao ajuda = XVExecutaAqui({pszComando, "--help"});
        EXPECT_EQ(ajuda.iSaida, 0) << pszComando;
        EXPECT_THAT(ajuda.sSaida, HasSubstr(std::string("  xvcr ") + pszComando));
        EXPECT_THAT(ajuda.sSaida, Not(HasSubstr("REQUIRED")));
    }
    EXPECT_THAT(XVExecutaAqui({"mapa", "busca", "--help"}).sSaida, HasSubstr("xvcr mapa busca --registro"));
}

// Names are shown so that they never drive the terminal.
TEST(Uso, FalhasForaDaBaseSaemComUmEMostramONomeEscapado) {
    const CXVDiretorioTeste diretorio;
    const struct {
        std::vector<std::string> listaArgumentos;
        std::string sMensagem;
    } aCasos[] = {{{"grava", "--json-enviado", "@não há\x1b[2J"},
                   "não foi possível abrir o arquivo \"não há\\x1B[2J\""},
                  {{"--diretorio", "não há\x1b[2J", "--empresa", "1", "busca"},
                   "o diretório do módulo \"não há\\x1B[2J\" não existe"},
                  {{"carrega", diretorio.GetCaminho()}, '"' + diretorio.GetCaminho() + "\" é um diretório"},
                  {{"registro", "--arquivo", "não há"}, "não foi possível abrir o arquivo \"não há\""}};
    for (const auto& rCaso : aCasos) {
        const SExecucao execucao = XVExecutaAqui(rCaso.listaArgumentos);
        EXPECT_EQ(execucao.iSaida, 1) << rCaso.sMensagem;
        EXPECT_EQ(execucao.sErro, "xvcr: " + rCaso.sMensagem + '\n');
    }
}

// What is known only when the store closes is a failure of the command too.
TEST(Uso, FalhaAoFecharABaseSaiComUm) {
    CXVSistemaArquivosMemoria arquivos;
    CXVSistemaArquivosFalhas falhas(arquivos);
    CXVRegistryFalso registry;
    registry.SetTexto(CAmbienteXV::GetChaveRegistry(k_eModuloBase), "Path", "/dados");
    const CXVGuardaSistemaArquivos guardaSistema(falhas);
    const CXVGuardaRegistry guardaRegistry(registry);
    const std::vector<std::string> listaGrava{"--empresa", "001", "grava", "--status", "Pendente"};
    // The first makes the files, the second lists them; from then on each writes as often as the one before.
    for (int i = 0; i < 3; ++i) {
        falhas.Limpa();
        ASSERT_EQ(XVExecutaAqui(listaGrava).iSaida, 0);
    }
    const XVUInt64 uiGravacoes = falhas.GetQuantidade(EOperacaoArquivo::eGrava);
    falhas.Programa({.eOperacao = EOperacaoArquivo::eGrava,
                     .uiNumero = uiGravacoes,
                     .bPermanente = true,
                     .eCausa = ECausaArquivo::eDiscoCheio});
    const SExecucao execucao = XVExecutaAqui(listaGrava);
    EXPECT_EQ(execucao.iSaida, 1) << "the last write of all is one of the closing";
    EXPECT_NE(execucao.sSaida, "") << "the integration was recorded";
    EXPECT_THAT(execucao.sErro, HasSubstr("xvcr: 0x"));
    EXPECT_GT(falhas.GetFalhasOcorridas(), 0U);
}

}  // namespace
