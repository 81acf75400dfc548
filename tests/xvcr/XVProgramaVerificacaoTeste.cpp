// verifica and recupera as a person or a program uses them.
#include <gmock/gmock.h>

#include <filesystem>

#include "tests/harness/XVProcessoFilho.h"
#include "tests/xvcr/XVPrograma.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class ProgramaVerificacao : public XVPrograma {};

TEST_F(ProgramaVerificacao, DanoDitoRecuperadoEASalvo) {
    const std::string sPrimeira = Grava("grava --status Pendente --json-enviado {\"n\":1} --mensagem ida");
    const std::string sSegunda = Grava("grava --status Pendente --json-enviado {\"n\":2} --mensagem volta");
    EXPECT_THAT(
        Xvcr("verifica --sela").sSaida,
        StartsWith(
            "Empresa 001: todas as 2 integrações, de 1 dia, estão inteiras, e a base está íntegra.\n"));
    const std::string sArquivo = "001/DF/CRINTEGMIDJSON" + sPrimeira.substr(0, 8) + ".dat";
    std::string sBytes = m_Diretorio.LeConteudo(sArquivo).value_or("");
    ASSERT_EQ(sBytes.size(), 240U + 2 * 11);
    sBytes[240 + 4] = '[';
    m_Diretorio.CriaArquivo(sArquivo, sBytes);
    EXPECT_THAT(Xvcr("verifica").sSaida, HasSubstr("não são mais os selados"));
    sBytes[240 + 11 + 3] = '\x7f';
    m_Diretorio.CriaArquivo(sArquivo, sBytes);
    const SExecucao verifica = Xvcr("verifica");
    EXPECT_EQ(verifica.iSaida, 1);
    EXPECT_THAT(verifica.sSaida,
                StartsWith("Empresa 001: de 2 integrações, 0 estão inteiras e 2 não.\n\nDanos:\n"));
    EXPECT_THAT(verifica.sSaida, HasSubstr("- falta o JSON enviado (1 integração)\n"));
    EXPECT_THAT(verifica.sSaida, HasSubstr("  " + sSegunda + "\n"));
    const auto linhas = XVLinhasJson(Xvcr("verifica --json").sSaida);
    EXPECT_EQ(linhas.back()["inteiras"], 0);
    EXPECT_EQ(linhas.back()["integra"], false);

    const std::string sNova = m_Diretorio.Junta("nova");
    const SExecucao recupera = Xvcr("recupera --json --para", {sNova});
    EXPECT_EQ(recupera.iSaida, 1) << "something is missing";
    const auto recuperadas = XVLinhasJson(recupera.sSaida);
    EXPECT_EQ(recuperadas.at(0)["sDmc"], sSegunda);
    EXPECT_EQ(recuperadas.at(0)["motivos"].at(0), "semJSON");
    EXPECT_EQ(recuperadas.back()["inteiras"], 1);
    EXPECT_EQ(recuperadas.back()["comFaltas"], 1);
    EXPECT_EQ(recuperadas.back()["integra"], true);
    EXPECT_EQ(Xvcr("recupera --para", {sNova}).iSaida, 1) << "a directory that holds a store is left alone";
    for (const char* pszComando : {"recupera --para", "copia"})
        EXPECT_THAT(Xvcr(pszComando, {sNova + "/001/DF/CRINDEXINTEG.dat/x"}).sErro,
                    HasSubstr("não foi possível criar a pasta \"" + sNova))
            << pszComando;
    const auto naNova = [&](const std::string& sPalavras) {
        TArgumentos lista = XVPalavras("--empresa 001 --json " + sPalavras);
        lista.insert(lista.begin(), {"--diretorio", sNova});
        return XVLinhasJson(XVExecuta(XVProgramaVizinho("xvcr"), lista).sSaida);
    };
    EXPECT_EQ(naNova("verifica").back()["inteiras"], 2);
    EXPECT_THAT(naNova("le --todos " + sSegunda).at(0).value("regMensagemIntegracao", ""),
                AllOf(HasSubstr("O JSON enviado se perdeu."), testing::EndsWith("anterior: volta")));
}

TEST_F(ProgramaVerificacao, NomeDanificadoNaListaEBaseDeOutraVersao) {
    Grava("grava --status Pendente");
    const std::string sControle = "001/DF/XVDATABASE_FILE_CTRL.dat";
    std::string sNomes = m_Diretorio.LeConteudo(sControle).value_or("");
    sNomes.replace(4, 1, "\xfd");  // of the first name
    m_Diretorio.CriaArquivo(sControle, sNomes);
    EXPECT_THAT(Xvcr("recupera").sSaida,
                AllOf(HasSubstr("A base nova está em "), HasSubstr("diz: \\xFDRMID")));
    EXPECT_THAT(Xvcr("recupera --json --para", {m_Diretorio.Junta("outra")}).sSaida,
                AllOf(HasSubstr("\"incompleto_base64\":"), HasSubstr("\"lancamentos\":")));
    std::string sVersao = m_Diretorio.LeConteudo("001/DF/CRMIDDLEWAREVS.dat").value_or("");
    m_Diretorio.CriaArquivo("001/DF/CRMIDDLEWAREVS.dat", sVersao.replace(240, 1, "\6"));
    EXPECT_THAT(Xvcr("verifica").sSaida, StartsWith("Empresa 001: a base é de outra versão, e as "));
}

TEST_F(ProgramaVerificacao, VinteLugaresAparecemEOsOutrosSeContam) {
    Grava("grava --status Pendente");
    for (int i = 101; i <= 121; ++i) m_Diretorio.CriaArquivo("001/DF/estranho" + std::to_string(i), "");
    const SExecucao verifica = Xvcr("verifica");
    EXPECT_EQ(verifica.iSaida, 0) << verifica.sErro;
    EXPECT_THAT(verifica.sSaida, HasSubstr("\n  estranho120\n  e mais 1 (todos com --json)\n"));
}

}  // namespace
