// Outputs that take nothing, and the progress that only a terminal sees.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <stdlib.h>

#include <filesystem>

#include "platform/posix/XVDescritorPosix.h"
#include "tests/harness/XVProcessoFilho.h"
#include "tests/xvcr/XVPrograma.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class ProgramaSaida : public XVPrograma {
  protected:
    // Runs the shell's sRoteiro with "$@" as the program on the test's store.
    SExecucao Roteiro(const std::string& sRoteiro, const std::vector<std::string>& listaArgumentos) const {
        std::vector<std::string> listaTudo{
            "-c",        sRoteiro, "sh", XVProgramaVizinho("xvcr"), "--diretorio", m_Diretorio.GetCaminho(),
            "--empresa", "001"};
        listaTudo.insert(listaTudo.end(), listaArgumentos.begin(), listaArgumentos.end());
        return XVExecuta("/bin/sh", listaTudo);
    }
};

TEST_F(ProgramaSaida, ResultadoQueNaoSeEscreveEFalha) {
    const std::string sDmc = Grava("grava --sistema Mercos --json-enviado " + std::string(100000, 'x'));
    // A pipe whose only reader is gone before the program starts.
    const std::string sCano =
        "mkfifo \"$XVCANO\" && exec 3<>\"$XVCANO\" 4>\"$XVCANO\" 3<&- && \"$@\" >&4 4>&-; "
        "echo saida=$? >&2";
    const std::string sExporta = "XVCANO='" + m_Diretorio.Junta("cano") + "'; export XVCANO; ";
    m_Diretorio.CriaArquivo("uma.jsonl", "\n \n{}");
    const std::vector<std::vector<std::string>> listaComandos{{"carrega", m_Diretorio.Junta("uma.jsonl")},
                                                              {"busca"},
                                                              {"busca", "--json"},
                                                              {"le", sDmc, "--todos"},
                                                              {"le", sDmc, "--todos", "--json"},
                                                              {"versao"},
                                                              {"acompanha", "--desde-o-inicio", "--uma-vez"},
                                                              {"--help"},
                                                              {"--version"},
                                                              {"grava", "--status", "Pendente"}};
    for (const auto& rComando : listaComandos) {
        const char* pszGravado = rComando[0] == "grava"     ? "; gravada: 2"
                                 : rComando[0] == "carrega" ? "; 1 linhas gravadas, até a linha 3\n"
                                                            : "\n";
        const std::string sErro = "xvcr: não foi possível escrever o resultado na saída padrão";
        for (const char* pszRoteiro : {"exec \"$@\" >/dev/full", "exec \"$@\" >&-"}) {
            const SExecucao execucao = Roteiro(pszRoteiro, rComando);
            EXPECT_EQ(execucao.iSaida, 1) << pszRoteiro << testing::PrintToString(rComando);
            const bool bCheio = std::string_view(pszRoteiro).ends_with("full");
            EXPECT_THAT(execucao.sErro,
                        StartsWith(sErro + (bCheio ? ": o disco está cheio" : "") + pszGravado));
        }
        // What records survives the pipe by itself; what only reads may end as pipelines do.
        const bool bGrava = *pszGravado == ';';
        const SExecucao cano = Roteiro(sExporta + (bGrava ? "" : "trap '' PIPE; ") + sCano, rComando);
        std::filesystem::remove(m_Diretorio.Junta("cano"));
        EXPECT_THAT(cano.sErro, testing::AllOf(StartsWith(sErro + pszGravado), EndsWith("\nsaida=1\n")));
    }
}

// A file that may not grow: what waits in buffers is lost at the end only.
TEST_F(ProgramaSaida, ExportacaoQueNaoCabeNoDiscoEDitaIncompleta) {
    Grava("grava --sistema Mercos --json-enviado x");
    const std::string sArquivo = m_Diretorio.Junta("tudo");
    const auto erro = [&](const char* pszRoteiro, const TArgumentos& rMais) {
        TArgumentos listaTudo{"exporta"};
        listaTudo.insert(listaTudo.end(), rMais.begin(), rMais.end());
        std::filesystem::remove_all(sArquivo);
        const SExecucao execucao = Roteiro(pszRoteiro, listaTudo);
        return execucao.sSaida + execucao.sErro;
    };
    const char* pszPequeno = "(trap '' XFSZ; ulimit -f 0; \"$@\" 2>&1; echo saida=$?) | cat";
    const char* pszCheio = "\"$@\" >/dev/full; echo saida=$? >&2";
    const std::string sIncompleto = "\", que ficou incompleto\nsaida=1\n";
    const std::string sNaSaida =
        "xvcr: não foi possível escrever o resultado na saída padrão: o disco está cheio\nsaida=1\n";
    const std::string sErro = "xvcr: não foi possível gravar o arquivo \"" + sArquivo;
    for (const char* pszForma : {"--csv", "--sql"})
        EXPECT_EQ(erro(pszPequeno, {pszForma, "--para", sArquivo}), sErro + sIncompleto);
    EXPECT_THAT(erro(pszPequeno, {"--por-dia", "--para", sArquivo}),
                testing::AllOf(StartsWith(sErro + "/2"), EndsWith(".jsonl" + sIncompleto)));
    EXPECT_EQ(erro(pszCheio, {}), sNaSaida);
    for (int i = 0; i < 4; ++i)
        Grava("grava --sistema Mercos --json-enviado " + std::string(100000, static_cast<char>('a' + i)));
    for (const char* pszForma : {"--csv", "--sql"}) {
        EXPECT_EQ(erro(pszPequeno, {pszForma, "--para", sArquivo}), sErro + sIncompleto);
        EXPECT_EQ(erro(pszCheio, {pszForma}), sNaSaida);
    }
}

// As a shell asks for it.
TEST_F(ProgramaSaida, BashCompletaALinha) {
    const auto completa = [&](const std::string& sPalavras, int iQual) {
        const std::string sRoteiro = "PATH=$(dirname \"$1\"):$PATH; . <(xvcr completa bash); COMP_WORDS=(" +
                                     sPalavras + "); COMP_CWORD=" + std::to_string(iQual) +
                                     "; _xvcr; printf '%s,' \"${COMPREPLY[@]}\"; complete -p xvcr";
        return XVExecuta("/bin/bash", {"-c", sRoteiro, "sh", XVProgramaVizinho("xvcr")}).sSaida;
    };
    const std::string sFim = "complete -o default -F _xvcr xvcr\n";
    EXPECT_EQ(completa("xvcr bus", 1), "busca," + sFim);
    EXPECT_EQ(completa("xvcr mapa \"\" outra", 2), "grava,pendente,busca,lista," + sFim);
    EXPECT_EQ(completa("xvcr busca --status Er", 3), "Erro," + sFim);
}

TEST_F(ProgramaSaida, AcompanhaQueAlguemPedeQueTermineAcabaALinha) {
    Grava("grava --chave 1");
    for (const char* pszSinal : {"TERM", "HUP"}) {
        const SExecucao execucao = Roteiro(
            "cd \"$3\" && : >saida && { \"$@\" >saida & p=$!; } && until [ -s saida ]; do "
            "kill -0 $p || exit 9; done; kill -" +
                std::string(pszSinal) + " $p; wait $p; echo $?; cat saida",
            {"acompanha"});
        EXPECT_THAT(execucao.sSaida,
                    testing::MatchesRegex("1(43|29)\n\\{\"evento\":\"inicio\".*\\}\n\\{.*emDia\"\\}\n"))
            << pszSinal;
    }
}

TEST_F(ProgramaSaida, TextoQueNaoSeGravaEFalha) {
    const std::string sDmc = Grava("grava --json-enviado {}");
    std::filesystem::create_directory(m_Diretorio.Junta("textos"));
    const std::string sArquivo = m_Diretorio.Junta("textos/" + sDmc + ".enviado.json");
    std::filesystem::create_symlink("/dev/full", sArquivo);
    const SExecucao execucao =
        Xvcr("le --json-enviado " + sDmc, {"--para-pasta", m_Diretorio.Junta("textos")});
    EXPECT_EQ(execucao.iSaida, 1);
    EXPECT_EQ(execucao.sErro,
              "xvcr: não foi possível gravar o arquivo \"" + sArquivo + "\": o disco está cheio\n");
    EXPECT_THAT(Xvcr("--json le --json-enviado " + sDmc, {"--pasta", m_Diretorio.Junta("\xff")}).sSaida,
                HasSubstr("\"regRegistroJSON_arquivo_base64\":"));
    m_Diretorio.CriaArquivo("arquivo", "");
    EXPECT_EQ(Xvcr("le --todos " + sDmc, {"--para-pasta", m_Diretorio.Junta("arquivo")}).sErro,
              "xvcr: não foi possível criar a pasta \"" + m_Diretorio.Junta("arquivo") + "\"\n");
}

TEST_F(ProgramaSaida, ProgressoSoNoTerminalQueNaoMostraOsResultados) {
    CXVDescritor mestre(::posix_openpt(O_RDWR | O_NOCTTY));
    ASSERT_GE(mestre.Get(), 0);
    ASSERT_EQ(::grantpt(mestre.Get()), 0);
    ASSERT_EQ(::unlockpt(mestre.Get()), 0);
    const std::string sTerminal = ::ptsname(mestre.Get());
    const CXVDescritor escravo(::open(sTerminal.c_str(), O_RDWR | O_NOCTTY));  // keeps what was written
    m_Diretorio.CriaArquivo("duas.jsonl", "{}\n{}    \n");
    const auto mostrado = [&](const std::string& sRoteiro) {
        EXPECT_EQ(Roteiro(sRoteiro, {"carrega", m_Diretorio.Junta("duas.jsonl")}).iSaida, 0);
        std::string sTexto(4096, '\0');
        ::fcntl(mestre.Get(), F_SETFL, O_NONBLOCK);
        const ssize_t iLidos = ::read(mestre.Get(), sTexto.data(), sTexto.size());
        sTexto.resize(iLidos > 0 ? static_cast<std::size_t>(iLidos) : 0);
        return sTexto;
    };
    const std::string sProgresso = mostrado("exec \"$@\" 2>" + sTerminal + " >/dev/null");
    EXPECT_THAT(sProgresso, StartsWith("\r1 linhas (30%)"));
    EXPECT_THAT(sProgresso, EndsWith("\r\x1b[K"));
    EXPECT_EQ(mostrado("exec \"$@\" >/dev/null"), "");
    EXPECT_EQ(mostrado("exec \"$@\" 2>" + sTerminal + " >" + sTerminal).find("%)"), std::string::npos);
}

// An input that fails is not at its end, and blank lines are none.
TEST_F(ProgramaSaida, CargaQueNaoSeLeAteOFimFalha) {
    const SExecucao execucao = Roteiro("exec \"$@\" <" + m_Diretorio.GetCaminho(), {"carrega", "-"});
    EXPECT_EQ(execucao.iSaida, 1);
    EXPECT_EQ(execucao.sSaida, "0 lidas, 0 gravadas, 0 com erro\n");
    EXPECT_EQ(execucao.sErro, "xvcr: não foi possível ler a entrada padrão\n");
    const SExecucao vazia = Xvcr("carrega - --json", {}, "\t\n \t \n\n");
    EXPECT_EQ(vazia.iSaida, 0) << vazia.sErro;
    EXPECT_EQ(vazia.sSaida, "{\"lidas\":0,\"gravadas\":0,\"erros\":0}\n");
}

}  // namespace
