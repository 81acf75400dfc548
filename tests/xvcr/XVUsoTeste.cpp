// The command line read inside the test's own process.
#include <gmock/gmock.h>

#include "support/XVAmbiente.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/harness/XVSistemaArquivosMemoria.h"
#include "tests/xvcr/XVPrograma.h"

namespace {

using testing::HasSubstr;
using testing::Not;

const std::string k_sEmpresaInvalida =
    " não é um código de empresa (1 a 47 letras, dígitos, _ ou -, e não um nome de dispositivo)";

// Wrong use, which opens nothing, and failures before a store is reached. Names are shown so that they never
// drive the terminal.
const struct SErroDeUso {
    const char* pszLinha;
    std::string sMensagem;
    int iSaida = 2;
} k_aErrosDeUso[] = {
    {"", "falta o comando"},
    {"mapa", "falta o comando"},
    {"apaga", "comando desconhecido: apaga"},
    {"busca --nada", "argumento inesperado: --nada"},
    {"busca [x", "argumento inesperado: [x"},
    {"status --dmc 20261121-1-1", "falta --status"},
    {"busca --tipo", "--tipo: falta o valor"},
    {"grava --filial 1 --filial 2", "--filial: dada mais de uma vez ou com valores demais"},
    {"carrega x --para --continua", "--continua não vale junto com --para"},
    {"le", "falta dmc"},
    {"grava --status Talvez",
     "--status: valor desconhecido; os aceitos são: NenhumStatus, Pendente, Enviado, Sucesso, Erro, "
     "Cancelado"},
    {"busca --status Erro,Talvez",
     "--status: \"Talvez\": valor desconhecido; os aceitos são: NenhumStatus, Pendente, Enviado, "
     "Sucesso, Erro, Cancelado"},
    {"busca --inclusao-de ontem",
     "--inclusao-de: esperada uma data-hora ISO 8601 em UTC (2026-11-21T13:05:09Z) ou o valor "
     "empacotado"},
    {"grava --dmc 1-2-3", "--dmc: esperado um DMC (AAAAMMDD-ponteiro-tipo, ou o valor decimal de 64 bits)"},
    {"le abc", "\"abc\": esperado um DMC (AAAAMMDD-ponteiro-tipo, ou o valor decimal de 64 bits)"},
    {"grava --chave 18446744073709551616", "--chave: número acima do limite de 18446744073709551615"},
    {"grava --chave [1]", "--chave: esperado um número inteiro sem sinal"},
    {"--usuario 65535 busca", "--usuario: o usuário vai de 0 a 65534"},
    {"--usuario 65536 busca", "--usuario: o usuário vai de 0 a 65534"},
    {"registro --mes 20261x", "--mes: esperado um mês: AAAAMM"},
    {"registro --de 2026-11-21Z",
     "--de: esperada uma data-hora local, sem Z: 2026-11-21 ou 2026-11-21T13:05:09"},
    {"registro --codigo E_X", "--codigo: esperado um código (0x81080AAA) ou o nome simbólico de um"},
    {"--leitura --empresa 001 grava", "--leitura não vale para um comando que grava"},
    {"--empresa .. busca", "--empresa: \"..\"" + k_sEmpresaInvalida},
    {"--empresa COM1 busca", "--empresa: \"COM1\"" + k_sEmpresaInvalida},
    {"--empresa .. registro", "--empresa: \"..\"" + k_sEmpresaInvalida},
    {"busca --empresa=", "falta a empresa: use --empresa ou a variável de ambiente XVCR_EMPRESA"},
    {"versao", "falta a empresa: use --empresa ou a variável de ambiente XVCR_EMPRESA"},
    {"grava --substitui", "--substitui só vale com --dmc"},
    {"status --status Erro --chave 1", "a integração é dada por --dmc, ou por --chave e --sistema"},
    {"busca --limite 0", "--limite: esperado um número a partir de 1"},
    {"busca --limite 4294967296", "--limite: número acima do limite de 4294967295"},
    {"busca --limite 2 --conta", "--limite não vale junto com --conta"},
    {"busca --conta --mensagem", "--conta, --dmcs e a leitura das integrações excluem-se"},
    {"mapa busca --tipo 6 --sistema 16", "a busca pede --registro ou --chave-registro"},
    {"le 20261121-1-1 --operacao-posterior", "--operacao-posterior só vale com --consulta-terceiro"},
    {"le 20261121-1-1 --para-pasta x", "--para-pasta pede ao menos um texto (--todos, por exemplo)"},
    {"le 0", "\"0\": o DMC nulo não é de integração alguma"},
    {"--servidor versao", "--servidor: a versão é lida na própria base"},
    {"--servidor converte", "--servidor: a conversão é feita na própria base"},
    {"--servidor verifica", "--servidor: a verificação é feita na própria base"},
    {"--leitura verifica --sela", "--leitura não vale com --sela, que grava os selos"},
    {"--servidor recupera", "--servidor: a recuperação é feita na própria base"},
    {"--leitura recupera", "--leitura não vale para um comando que grava"},
    {"grava --json-enviado @não-há\x1b[2J", "não foi possível abrir o arquivo \"não-há\\x1B[2J\"", 1},
    {"--diretorio não-há\x1b[2J --empresa 1 busca", "o diretório do módulo \"não-há\\x1B[2J\" não existe", 1},
    {"carrega .", "\".\" é um diretório", 1},
    {"registro --arquivo não-há", "não foi possível abrir o arquivo \"não-há\"", 1},
};

// The whole line on the error output.
TEST(Uso, ErrosDaLinhaDeComandoEmPortugues) {
    for (const SErroDeUso& rCaso : k_aErrosDeUso) {
        const SExecucao execucao = XVExecutaAqui(XVPalavras(rCaso.pszLinha));
        EXPECT_EQ(execucao.iSaida, rCaso.iSaida) << rCaso.sMensagem;
        EXPECT_EQ(execucao.sSaida, "");
        EXPECT_EQ(execucao.sErro, "xvcr: " + rCaso.sMensagem + '\n');
    }
}

TEST(Uso, AjudaDeCadaComandoTemExemplos) {
    const SExecucao geral = XVExecutaAqui({"--help"});
    EXPECT_EQ(geral.iSaida, 0);
    EXPECT_THAT(geral.sSaida, HasSubstr("Uso: xvcr"));
    for (const std::string& rComando :
         XVPalavras("grava status le busca carrega mapa datahora pendencia instantanea consulta converte "
                    "versao verifica recupera registro")) {
        EXPECT_THAT(geral.sSaida, HasSubstr(rComando));
        const SExecucao ajuda = XVExecutaAqui({rComando, "--help"});
        EXPECT_EQ(ajuda.iSaida, 0) << rComando;
        EXPECT_THAT(ajuda.sSaida, HasSubstr("  xvcr " + rComando));
        EXPECT_THAT(ajuda.sSaida, Not(HasSubstr("REQUIRED")));
    }
    EXPECT_THAT(XVExecutaAqui({"mapa", "busca", "--help"}).sSaida, HasSubstr("xvcr mapa busca --registro"));
}

// The installation's store, on a disk in memory.
class UsoEmMemoria : public testing::Test {
  protected:
    UsoEmMemoria() {
        m_Registry.SetTexto(CAmbienteXV::GetChaveRegistry(k_eModuloBase), "Path", "/dados");
        // The first makes the files, the second lists them; from then on each writes as often as the one
        // before.
        for (int i = 0; i < 3; ++i) {
            m_Falhas.Limpa();
            EXPECT_EQ(Executa("grava").iSaida, 0);
        }
    }
    static SExecucao Executa(const std::string& sLinha) {
        return XVExecutaAqui(XVPalavras("--empresa 001 " + sLinha));
    }
    CXVSistemaArquivosMemoria::TRetrato DaEmpresa() const {
        auto retrato = m_Arquivos.Retrata();
        std::erase_if(retrato, [](const auto& r) { return !r.first.starts_with("/dados/001/"); });
        return retrato;
    }

    CXVSistemaArquivosMemoria m_Arquivos;
    CXVSistemaArquivosFalhas m_Falhas{m_Arquivos};
    CXVRegistryFalso m_Registry;
    const CXVGuardaSistemaArquivos m_GuardaSistema{m_Falhas};
    const CXVGuardaRegistry m_GuardaRegistry{m_Registry};
};

TEST_F(UsoEmMemoria, QuemSoLeDeixaCadaByteDoDiretorioDaEmpresaComoEstava) {
    const auto antes = DaEmpresa();
    ASSERT_GT(antes.size(), 5U);
    const std::string sDmc = Executa("busca --dmcs").sSaida.substr(0, 12);
    const struct {
        std::string sLinha;
        int iSaida = 0;
    } aComandos[] = {{"busca"},
                     {"busca --le"},
                     {"busca --inclusao-de 2020-01-01"},
                     {"le " + sDmc},
                     {"le 20200101-1-1", 1},  // an error, which goes to another log
                     {"mapa busca --tipo 6 --sistema 16 --chave-registro 7"},
                     {"versao"},
                     {"verifica"}};
    for (const auto& rComando : aComandos) {
        EXPECT_EQ(Executa(rComando.sLinha).iSaida, rComando.iSaida) << rComando.sLinha;
        EXPECT_EQ(CXVSistemaArquivosMemoria::Diferenca(antes, DaEmpresa()), "") << rComando.sLinha;
    }
}

// What is known only when the store closes is a failure of the command too.
TEST_F(UsoEmMemoria, FalhaAoFecharABaseSaiComUm) {
    const XVUInt64 uiGravacoes = m_Falhas.GetQuantidade(EOperacaoArquivo::eGrava);
    m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eGrava,
                       .uiNumero = uiGravacoes,
                       .bPermanente = true,
                       .eCausa = ECausaArquivo::eDiscoCheio});
    const SExecucao execucao = Executa("grava");
    EXPECT_EQ(execucao.iSaida, 1) << "the last write of all is one of the closing";
    EXPECT_NE(execucao.sSaida, "") << "the integration was recorded";
    EXPECT_THAT(execucao.sErro, HasSubstr("xvcr: 0x"));
    EXPECT_GT(m_Falhas.GetFalhasOcorridas(), 0U);
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
}

}  // namespace
