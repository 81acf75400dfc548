// The command line read inside the test's own process.
#include <gmock/gmock.h>

#include "support/XVAmbiente.h"
#include "support/codes/XVCodigos.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/harness/XVSistemaArquivosMemoria.h"
#include "tests/xvcr/XVPrograma.h"
#include "tools/xvcr/commands/XVGravadasNaTroca.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

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
    {"busca --nada", "opção desconhecida: --nada"},
    {"instantanea --status Erro", "opção desconhecida: --status"},
    {"instantanea --usuario-inclusao 3", "opção desconhecida: --usuario-inclusao"},
    {"pendencia --integracao-origem 20261121-1-1", "opção desconhecida: --integracao-origem"},
    {"busca --limit 3", "opção desconhecida: --limit (quis dizer --limite?)"},
    {"mapa bsuca", "comando desconhecido: bsuca (quis dizer busca?)"},
    {"mapa buca", "comando desconhecido: buca (quis dizer busca?)"},
    {"status --dmc 20261121-1-1 --stauts Erro", "opção desconhecida: --stauts (quis dizer --status?)"},
    {"busca a b", "argumento inesperado: a"},
    {"busca --csv=x", "--csv: não leva valor"},
    {"grava", "nada a gravar: dê ao menos um campo"},
    {"grava --dmc 0 --filial 1", "--dmc: este DMC não é de integração alguma"},
    {"busca --ordem incluso", "--ordem: esperado dmc, inclusao, alteracao ou chave (quis dizer inclusao?)"},
    {"busca [x", "argumento inesperado: [x"},
    {"status --dmc 20261121-1-1", "falta --status"},
    {"busca --tipo", "--tipo: falta o valor"},
    {"grava --filial 1 --filial 2", "--filial: dada mais de uma vez"},
    {"carrega x --para --continua", "--para-no-erro não vale junto com --continua"},
    {"le", "falta dmc"},
    {"grava --status pendnete",
     "--status: valor desconhecido (quis dizer Pendente?); os aceitos são: 0=NenhumStatus, 1=Pendente, "
     "2=Enviado, 3=Sucesso, "
     "4=Erro, 5=Cancelado"},
    {"busca --status Erro,Talvez",
     "--status: \"Talvez\": valor desconhecido; os aceitos são: 0=NenhumStatus, 1=Pendente, "
     "2=Enviado, 3=Sucesso, 4=Erro, 5=Cancelado"},
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
    {"registro --mes 202613", "--mes: esperado um mês: AAAAMM"},
    {"registro --ultimos 0", "--ultimos: esperado um número a partir de 1"},
    {"registro --de 2026-11-21Z",
     "--de: esperada uma data-hora local, sem Z: 2026-11-21 ou 2026-11-21T13:05:09"},
    {"registro --codigo E_X", "--codigo: esperado um código (0x81080AAA) ou o nome simbólico de um"},
    {"--leitura --empresa 001 grava --filial 1", "--leitura não vale para um comando que grava"},
    {"--empresa .. busca", "--empresa: \"..\"" + k_sEmpresaInvalida},
    {"--empresa COM1 busca", "--empresa: \"COM1\"" + k_sEmpresaInvalida},
    {"--empresa .. registro", "--empresa: \"..\"" + k_sEmpresaInvalida},
    {"busca --empresa=", "falta a empresa: use --empresa ou a variável de ambiente XVCR_EMPRESA"},
    {"--usuario 65534 versao", "falta a empresa: use --empresa ou a variável de ambiente XVCR_EMPRESA"},
    {"grava --substitui", "--substitui só vale com --dmc"},
    {"status --status Erro --chave 1", "a integração é dada por --dmc, ou por --chave e --sistema"},
    {"status --status Erro --dmc 20261121-1-1 --chave 1", "--chave não vale junto com --dmc"},
    {"status --status Erro --dmc 20261121-1-1 --sistema Mercos", "--sistema não vale junto com --dmc"},
    {"mapa grava --registro 20261121-7-2 --tipo 6 --sistema Mercos", "falta --chave-registro"},
    {"busca --chave-inicial 1 --chave-final 2 --sistema Mercos",
     "com --sistema, --chave-inicial é a chave exata; --chave-final não vale junto"},
    {"pendencia --origem 0", "--origem: o DMC nulo não é de registro algum"},
    {"registro --por 3", "--por só vale com --segue"},
    {"registro --perfil --mes 202611", "--perfil não vale junto com --mes"},
    {"registro --mes 202611 --arquivo x", "--arquivo não vale junto com --mes"},
    {"--leitura=false busca", "--leitura: não leva valor"},
    {"busca --json=2", "--json: não leva valor"},
    {"busca --csv=true", "--csv: não leva valor"},
    {"grava --mensagem --json=true -h=true", "--help: não leva valor"},
    {"carrega x --linha-maxima 0", "--linha-maxima: esperado um número a partir de 1"},
    {"busca --limite 0", "--limite: esperado um número a partir de 1"},
    {"busca --limite 4294967296", "--limite: número acima do limite de 4294967295"},
    {"busca --limite 2 --conta", "--limite não vale junto com --conta"},
    {"busca --conta --mensagem", "--conta, --dmcs, --csv e a leitura das integrações excluem-se"},
    {"mapa busca --tipo 6 --sistema 16", "a busca pede --registro ou --chave-registro"},
    {"le 20261121-1-1 --operacao-posterior", "--operacao-posterior só vale com --consulta-terceiro"},
    {"le 20261121-1-1 --para-pasta x", "--pasta pede ao menos um texto (--todos, por exemplo)"},
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
        const bool bUso = rCaso.iSaida == 2;
        EXPECT_THAT(execucao.sErro, StartsWith("xvcr: " + rCaso.sMensagem + (bUso ? " (veja \"xvcr" : "\n")));
        EXPECT_EQ(execucao.sErro.ends_with(" --help\")\n"), bUso) << execucao.sErro;
    }
}

TEST(Uso, AjudaDeCadaComandoTemExemplos) {
    const SExecucao geral = XVExecutaAqui({"--help"});
    EXPECT_EQ(geral.iSaida, 0);
    EXPECT_THAT(geral.sSaida, HasSubstr("Uso: xvcr"));
    for (const std::string& rComando :
         XVPalavras("grava status le busca carrega mapa datahora pendencia instantanea consulta converte "
                    "versao verifica recupera registro empresas provedores explica completa manual")) {
        EXPECT_THAT(geral.sSaida, HasSubstr(rComando));
        const SExecucao ajuda = XVExecutaAqui({rComando, "--help"});
        EXPECT_EQ(ajuda.iSaida, 0) << rComando;
        EXPECT_THAT(ajuda.sSaida, HasSubstr("  xvcr " + rComando));
        EXPECT_THAT(ajuda.sSaida, Not(HasSubstr("REQUIRED")));
    }
    EXPECT_THAT(XVExecutaAqui({"mapa", "busca", "--help"}).sSaida, HasSubstr("xvcr mapa busca --registro"));
    const std::string sBusca = XVExecutaAqui({"busca", "-h"}).sSaida;
    for (const char* pszValor :
         {"0=Nenhum,", "16=Mercos\n", "17=MovimentoContasPagarRemessaOnline\n", "5=Cancelado"})
        EXPECT_THAT(sBusca, HasSubstr(pszValor));
    EXPECT_EQ(XVExecutaAqui({"-V"}).sSaida, XVExecutaAqui({"--version"}).sSaida);
}

// Help, completion and manual page are of the same declarations.
TEST(Uso, CompletaOQueALinhaPodeTer) {
    const auto completa = [](const TArgumentos& rPalavras) {
        TArgumentos listaTudo{"completa", "palavras"};
        listaTudo.insert(listaTudo.end(), rPalavras.begin(), rPalavras.end());
        return XVExecutaAqui(listaTudo).sSaida;
    };
    EXPECT_EQ(completa({"--empresa", "busca", "ma"}), "mapa\nmanual\n");
    EXPECT_EQ(completa({"mapa", ""}), "grava\npendente\nbusca\nlista\n");
    EXPECT_EQ(completa({"busca", "--alteracao-"}), "--alteracao-de\n--alteracao-ate\n");
    EXPECT_EQ(completa({"busca", "--emp"}), "--empresa\n") << "general options too";
    EXPECT_EQ(completa({"busca", "--status", "Pendente,er"}), "Pendente,Erro\n");
    EXPECT_EQ(completa({"grava", "--mensagem", ""}), "");
    EXPECT_THAT(XVExecutaAqui({"completa", "bash"}).sSaida, HasSubstr("complete -o default -F _xvcr xvcr\n"));
    EXPECT_THAT(XVExecutaAqui({"completa", "powershell"}).sSaida, StartsWith("Register-ArgumentCompleter "));
    const std::string sManual = XVExecutaAqui({"manual"}).sSaida;
    for (const char* pszTexto : {".SH \"xvcr mapa lista\"", "\\fB\\-\\-alteracao\\-status\\fR", "16=Mercos",
                                 "\\-\\-json\\-enviado @pedido.json"})
        EXPECT_THAT(sManual, HasSubstr(pszTexto));
}

TEST(Uso, PrimeiraExecucaoDizOQueConfigurar) {
    CXVRegistryFalso vazio;
    const CXVGuardaRegistry guarda(vazio);
    for (const char* pszLinha :
         {"--empresa 001 busca", "--empresa 001 grava --filial 1", "empresas", "registro"}) {
        const SExecucao execucao = XVExecutaAqui(XVPalavras(pszLinha));
        EXPECT_EQ(execucao.iSaida, 1);
        EXPECT_THAT(execucao.sErro, HasSubstr("eBadPath: nenhum diretório do módulo está configurado; use "
                                              "--diretorio PASTA, a variável de ambiente XVCR_DIRETORIO"));
    }
    vazio.SetTexto(CAmbienteXV::GetChaveRegistry(k_eModuloBase), "Path", "/não-há");
    for (const char* pszLinha : {"empresas", "registro"})
        EXPECT_THAT(XVExecutaAqui({pszLinha}).sErro,
                    StartsWith("xvcr: 0x80043EBF eBadPath: o diretório do módulo configurado, "));
}

TEST(Explica, TodaFormaDeUmCodigoLevaAoSeuConselho) {
    const std::string sFatal = "0x8004EAD0", sPosicao = "E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA";
    for (const std::string rForma : {"0x81080AAA", "0X81080aaa", "81080AAA", "2164787882", "-2130179414",
                                     "e_xvcr_posicao_de_indexacao_invalida"}) {
        const SExecucao execucao = XVExecutaAqui({"explica", "--", rForma});
        EXPECT_THAT(execucao.sSaida, StartsWith("Código:       0x81080AAA " + sPosicao +
                                                "\nO que houve:  Nenhum registro tem a chave procurada;"))
            << rForma << execucao.sErro;
    }
    const auto linhas = XVLinhasJson(
        XVExecutaAqui({"--json", "explica", sFatal, "RPC_S_UNKNOWN_IF", "ERROR_DISK_FULL"}).sSaida);
    ASSERT_EQ(linhas.size(), 3U);
    EXPECT_EQ(linhas[0]["codigo"], sFatal);
    EXPECT_EQ(linhas[0]["ate"], "0x8004EADB");
    EXPECT_EQ(linhas[1]["codigo"], "0x800706B5");
    EXPECT_EQ(linhas[1]["assunto"], "processo");
    EXPECT_EQ(linhas[2], (nlohmann::json{{"codigo", "0x80070070"}, {"nome", "ERROR_DISK_FULL"}}));
    EXPECT_EQ(XVExecutaAqui({"explica", "0x81089999"}).iSaida, 1);
    EXPECT_EQ(XVExecutaAqui({"explica", "0x"}).iSaida, 2);
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
            EXPECT_EQ(Executa("grava --filial 1").iSaida, 0);
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
                     {"mapa lista"},
                     {"datahora lista"},
                     {"versao"},
                     {"verifica"}};
    for (const auto& rComando : aComandos) {
        EXPECT_EQ(Executa(rComando.sLinha).iSaida, rComando.iSaida) << rComando.sLinha;
        EXPECT_EQ(CXVSistemaArquivosMemoria::Diferenca(antes, DaEmpresa()), "") << rComando.sLinha;
    }
}

// What is missing because a file cannot be read is no reason to restore anything.
TEST_F(UsoEmMemoria, ArquivoIlegivelVemAntesDoQueDependeDele) {
    m_Falhas.SetFiltro([](const std::string& s) { return s.ends_with("CRINDEXINTEG.dat"); });
    m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eLe, .bPermanente = true});
    const std::string sTexto = Executa("verifica").sSaida;
    EXPECT_THAT(sTexto, HasSubstr("Danos:\n- o arquivo não pôde ser lido até o fim\n"));
    EXPECT_THAT(sTexto, HasSubstr("O que fazer: Primeiro torne legível o arquivo acima"));
    EXPECT_THAT(sTexto, Not(HasSubstr("estaure")));
    const auto linhas = XVLinhasJson(Executa("verifica --json").sSaida);
    EXPECT_EQ(linhas.at(0)["achado"], "arquivoIlegivel");
    EXPECT_THAT(linhas.at(1).value("fazer", ""), StartsWith("Primeiro torne legível"));
    EXPECT_THAT(Executa("recupera --para /nova").sSaida,
                HasSubstr("O sistema não deixou ler até o fim: CRINDEXINTEG.dat\n"));
    m_Falhas.Programa(
        {.eOperacao = EOperacaoArquivo::eAbre, .bPermanente = true, .eCausa = ECausaArquivo::eAcessoNegado});
    EXPECT_THAT(Executa("recupera --para /outra").sErro,
                HasSubstr(" Arquivo: /dados/001/DF/CRINDEXINTEG.dat"))
        << "who may not read the index is to be let, before every status is given up";
}

TEST_F(UsoEmMemoria, DiretorioQueNaoSePodeOlharNaoEDitoAusente) {
    m_Falhas.SetFiltro([](const std::string& s) { return s == "/dados"; });
    m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eConsulta, .bPermanente = true});
    const SExecucao execucao = Executa("--diretorio /dados busca");
    EXPECT_EQ(execucao.iSaida, 1);
    EXPECT_EQ(execucao.sErro,
              "xvcr: " + XVCliente::DescreveCodigo(eAccessDenied) + " Diretório do módulo: /dados\n");
}

// What is known only when the store closes is a failure of the command too.
TEST_F(UsoEmMemoria, FalhaAoFecharABaseSaiComUm) {
    const XVUInt64 uiGravacoes = m_Falhas.GetQuantidade(EOperacaoArquivo::eGrava);
    m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eGrava,
                       .uiNumero = uiGravacoes,
                       .bPermanente = true,
                       .eCausa = ECausaArquivo::eDiscoCheio});
    const SExecucao execucao = Executa("grava --filial 1");
    EXPECT_EQ(execucao.iSaida, 1) << "the last write of all is one of the closing";
    EXPECT_NE(execucao.sSaida, "") << "the integration was recorded";
    EXPECT_THAT(execucao.sErro, HasSubstr("xvcr: 0x"));
    EXPECT_GT(m_Falhas.GetFalhasOcorridas(), 0U);
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
}

// The server died in an exchange, or right after one: what is in the store is not said to be nothing.
TEST(GravadasNaTroca, DeUmServidorQueMorreuNaoSeSabemAsGravadas) {
    for (const HRESULT hr : {S_OK, XVHResult(0x800706BEU)}) {
        CXVContexto contexto;
        XVCliente::CXVCliente cliente;
        try {
            XVMostraGravadas(contexto, cliente, hr, "nada gravado", "confira antes");
            FAIL() << "a failure is thrown";
        } catch (const CXVErro& rErro) {
            EXPECT_THAT(rErro.what(),
                        HasSubstr("quais integrações ficaram gravadas não se sabe: procure-as"));
            EXPECT_THAT(rErro.what(), testing::EndsWith(FAILED(hr) ? "; confira antes" : "\"xvcr busca\""));
        }
    }
}

}  // namespace
