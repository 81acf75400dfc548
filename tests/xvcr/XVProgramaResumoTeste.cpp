// resumo, as a person and a program read it.
#include <gmock/gmock.h>

#include <sstream>

#include "tests/xvcr/XVPrograma.h"
#include "tools/xvcr/text/XVTextoTela.h"

namespace {

using testing::HasSubstr;

class ProgramaResumo : public XVPrograma {
  protected:
    void SetUp() override {
        m_sVelha =
            Grava("grava --status Pendente --sistema Mercos --tipo BuscaPedidos --inclusao 2020-01-01");
        Grava("grava --status Pendente --sistema OfficialBank --tipo BuscaPedidos --chave 1");
        GravaErro(m_sLonga);
        GravaErro("Produto P1004 não encontrado (pedido 12/2026, às 10:05)");
        m_sUltima = GravaErro("Produto 77-B não encontrado (pedido 9, às 11:00)");
    }
    std::string GravaErro(const std::string& sMensagem) {
        const std::string sDmc = Grava("grava --status Pendente --sistema Mercos --tipo CadastroProduto");
        EXPECT_EQ(Xvcr("status --status Erro --dmc " + sDmc + " --mensagem", {sMensagem}).iSaida, 0);
        return sDmc;
    }
    const std::string m_sLonga = "Falha de rede" + std::string(4082, ' ') + "çx";
    std::string m_sVelha, m_sUltima;
};

TEST_F(ProgramaResumo, OQueEsperaPorAlguemVemPrimeiroEContado) {
    const auto json = XVLinhasJson(Xvcr("resumo --json").sSaida).at(0);
    EXPECT_EQ(json["pendentes"]["maisAntiga"]["sDmc"], m_sVelha);
    EXPECT_GT(json["pendentes"]["maisAntiga"]["segundos"], 5 * 365 * 86400);
    const auto& rGrupos = json["erros"]["grupos"];
    EXPECT_EQ(json["erros"]["quantidade"], 3);
    ASSERT_EQ(rGrupos.size(), 2U);
    EXPECT_EQ(rGrupos[0]["quantidade"], 2);
    EXPECT_EQ(rGrupos[0]["mensagem"], "Produto # não encontrado (pedido #, às #)");
    EXPECT_EQ(rGrupos[0]["sDmc"], m_sUltima);
    EXPECT_EQ(rGrupos[0]["exemplo"], "Produto 77-B não encontrado (pedido 9, às 11:00)");
    // What is too long is cut between two characters.
    EXPECT_EQ(rGrupos[1]["exemplo"], m_sLonga.substr(0, 4095));
    EXPECT_EQ(json["textosMortos"], 3) << "the empty messages of before";
    EXPECT_EQ(json["bytesMortos"], 12);
    const std::string sTexto = Xvcr("resumo").sSaida;
    EXPECT_LT(sTexto.find("Pendentes: 2; a mais antiga, " + m_sVelha), sTexto.find("Com erro: 3"));
    EXPECT_LT(sTexto.find("2  Produto # não encontrado"), sTexto.find("1  Falha de rede"));
    std::istringstream linhas(sTexto);
    for (std::string sLinha; std::getline(linhas, sLinha);)
        EXPECT_LE(XVTextoTela::GetLargura(sLinha), 80U) << sLinha;
}

TEST_F(ProgramaResumo, SemOIndiceInteiroNadaEContado) {
    const std::string sIndice = "001/DF/CRINDEXINTEG.dat";
    std::string sBytes = m_Diretorio.LeConteudo(sIndice).value_or("");
    ASSERT_GT(sBytes.size(), 240U);
    for (const std::string& rResto :
         {std::string(), sBytes.substr(0, sBytes.size() - 1), std::string(240, '#') + sBytes.substr(240)}) {
        m_Diretorio.CriaArquivo(sIndice, rResto);
        const SExecucao execucao = Xvcr("resumo");
        EXPECT_EQ(execucao.iSaida, 1) << rResto.size();
        EXPECT_THAT(execucao.sErro, HasSubstr("CRINDEXINTEG.dat"));
        EXPECT_EQ(execucao.sSaida, "");
    }
    const std::size_t uiRegistro = (sBytes.size() - 240) / 5;
    sBytes.replace(sBytes.size() - uiRegistro, uiRegistro, uiRegistro, '\0');
    m_Diretorio.CriaArquivo(sIndice, sBytes);
    const auto json = XVLinhasJson(Xvcr("resumo --json").sSaida).at(0);
    EXPECT_EQ(json["integracoes"], 5);
    EXPECT_EQ(json["ilegiveis"], 1) << "its place in the index names none";
}

}  // namespace
