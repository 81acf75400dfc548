#include <gmock/gmock.h>

#include "client/XVCliente.h"
#include "tests/xvcr/XVPrograma.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class ProgramaBase : public XVPrograma {};

TEST_F(ProgramaBase, LeituraEnquantoOutroProcessoGrava) {
    XVCliente::CXVCliente cliente;
    ASSERT_EQ(cliente.ConectaLocal({.sEmpresa = "001"}, {.sDiretorio = m_Diretorio.GetCaminho()}), S_OK);
    CXVDadosCR_IntegracaoMiddleware dados;
    dados.sRegistroJSON = "{\"primeira\":1}";
    REG_XVDMC regPrimeira;
    ASSERT_EQ(cliente.GravaIntegracao(&regPrimeira, dados), S_OK);

    const nlohmann::json json = Json({"--leitura", "le", regPrimeira.ToString(), "--todos"}).at(0);
    EXPECT_EQ(json["regRegistroJSON"], dados.sRegistroJSON);
    EXPECT_EQ(Xvcr({"--leitura", "busca", "--conta"}).sSaida, "1\n");

    REG_XVDMC regSegunda;
    EXPECT_EQ(cliente.GravaIntegracao(&regSegunda, dados), S_OK) << "the viewer must not be in the way";
    EXPECT_EQ(Xvcr({"--leitura", "busca", "--conta"}).sSaida, "2\n");
    EXPECT_EQ(cliente.Desconecta(), S_OK);
}

TEST_F(ProgramaBase, BaseQueNaoHaNaoECriadaPorQuemSoOlha) {
    for (const std::vector<std::string>& rComando :
         {std::vector<std::string>{"--leitura", "busca"}, {"busca"}, {"converte", "--simula"}}) {
        const SExecucao execucao = Xvcr(rComando);
        EXPECT_EQ(execucao.iSaida, 1);
        EXPECT_THAT(execucao.sErro, HasSubstr("0x80043EBF eBadPath"));
    }
    EXPECT_EQ(Json({"versao"}).at(0)["versao"], 0);
    EXPECT_FALSE(std::filesystem::exists(m_Diretorio.Junta("001")));
}

TEST_F(ProgramaBase, VersaoEConversao) {
    std::filesystem::create_directories(m_Diretorio.Junta("001/DF"));
    EXPECT_EQ(Json({"versao"}).at(0)["versao"], 0);
    const nlohmann::json simulada = Json({"converte", "--simula"}).back();
    EXPECT_EQ(simulada["versao"], 0);
    EXPECT_FALSE(m_Diretorio.LeConteudo("001/DF/CRMIDDLEWAREVS.dat").has_value()) << "asking changes nothing";
    Grava({"--status", "Pendente"});
    const nlohmann::json atual = Json({"versao"}).at(0);
    EXPECT_EQ(atual["versao"], 5);
    EXPECT_EQ(atual["situacao"], "atual");
    EXPECT_EQ(Json({"converte"}).back()["passos"], 0);
    EXPECT_EQ(Xvcr({"converte"}).sSaida, "a base já está na versão 5\n");
    EXPECT_EQ(Xvcr({"--leitura", "converte"}).iSaida, 2);
}

TEST_F(ProgramaBase, ArquivoDanificadoERecusadoEFicaComoEsta) {
    Grava({"--status", "Pendente"});
    const std::string sIndice = "001/DF/CRINDEXINTEG.dat";
    std::string sBytes = m_Diretorio.LeConteudo(sIndice).value_or("");
    ASSERT_GT(sBytes.size(), 240U);
    sBytes[10] = static_cast<char>(sBytes[10] ^ 1);
    m_Diretorio.CriaArquivo(sIndice, sBytes);
    const SExecucao execucao = Xvcr({"busca"});
    EXPECT_EQ(execucao.iSaida, 1);
    EXPECT_THAT(execucao.sErro, HasSubstr("xvcr: 0x8108"));
    EXPECT_EQ(m_Diretorio.LeConteudo(sIndice), sBytes);
}

TEST_F(ProgramaBase, ArquivoDeUmDiaDanificadoEDitoComSuaData) {
    const std::string sDmc = Grava({"--status", "Pendente", "--tipo", "BuscaPedidos"});
    const std::string sDia = sDmc.substr(0, 8);
    const std::string sArquivo = "001/DF/CRINTEGMID" + sDia + ".dat";
    std::string sBytes = m_Diretorio.LeConteudo(sArquivo).value_or("");
    ASSERT_GT(sBytes.size(), 240U);
    sBytes[130] = static_cast<char>(sBytes[130] ^ 1);
    m_Diretorio.CriaArquivo(sArquivo, sBytes);
    const std::string sPath = std::filesystem::path(m_Diretorio.Junta(sArquivo)).make_preferred().string();
    const std::string sFim = " Arquivo: " + sPath + " (dia " + sDia.substr(6) + "/" + sDia.substr(4, 2) +
                             "/" + sDia.substr(0, 4) + ")\n";
    for (const std::vector<std::string>& rComando :
         {std::vector<std::string>{"le", sDmc}, {"busca", "--tipo", "BuscaPedidos"}, {"busca", "--le"}}) {
        const SExecucao execucao = Xvcr(rComando);
        EXPECT_EQ(execucao.iSaida, 1) << rComando[0];
        EXPECT_THAT(execucao.sErro, StartsWith("xvcr: 0x81080A3F"));
        EXPECT_THAT(execucao.sErro, EndsWith(sFim));
    }
    EXPECT_EQ(m_Diretorio.LeConteudo(sArquivo), sBytes);
    // Of a load the line that met the file names it, the one that did not names none.
    const SExecucao carga =
        Xvcr({"--json", "carrega", "-", "--continua"},
             R"({"operacao":"status","sDmc":")" + sDmc +
                 R"(","eStatusIntegracao":"Erro"})"
                 "\n"
                 R"({"operacao":"status","sDmc":"20200101-1-1","eStatusIntegracao":"Erro"})"
                 "\n");
    const std::vector<nlohmann::json> listaLinhas = XVLinhasJson(carga.sSaida);
    ASSERT_EQ(listaLinhas.size(), 3U) << carga.sSaida << carga.sErro;
    EXPECT_THAT(listaLinhas[0].value("erro", ""), HasSubstr(sFim.substr(0, sFim.size() - 1)));
    EXPECT_EQ(listaLinhas[1].value("erro", "").find("Arquivo:"), std::string::npos);
    EXPECT_NE(listaLinhas[1].value("erro", ""), "");
}

TEST_F(ProgramaBase, ArquivoListadoQueSumiuEDitoPeloNome) {
    for (const char* pszNome : {"CRINDEXINTEG.dat", "CRMIDDLEWAREVS.dat"}) {
        Grava({"--status", "Pendente"});
        Grava({"--status", "Pendente"});  // a file is listed when it is next opened
        const std::string sArquivo = std::string("001/DF/") + pszNome;
        const std::string sBytes = m_Diretorio.LeConteudo(sArquivo).value_or("");
        std::filesystem::remove(m_Diretorio.Junta(sArquivo));
        const SExecucao execucao = Xvcr({"busca"});
        EXPECT_EQ(execucao.iSaida, 1);
        EXPECT_THAT(execucao.sErro, HasSubstr("0x81080A50"));
        EXPECT_THAT(execucao.sErro, HasSubstr(pszNome));
        EXPECT_EQ(Xvcr({"--leitura", "busca"}).iSaida, 1) << "a viewer does not take it for an empty file";
        m_Diretorio.CriaArquivo(sArquivo, sBytes);
    }
}

TEST_F(ProgramaBase, RegistroSegueOQueChega) {
    EXPECT_EQ(Xvcr({"status", "--dmc", "20200101-1-1", "--status", "Erro"}).iSaida, 1);
    const SExecucao execucao = Xvcr({"registro", "--ultimos", "1", "--segue", "--por", "1"});
    EXPECT_EQ(execucao.iSaida, 0) << execucao.sErro;
    EXPECT_EQ(std::count(execucao.sSaida.begin(), execucao.sSaida.end(), '\n'), 1);
    EXPECT_THAT(execucao.sSaida, HasSubstr("ERRO"));
    EXPECT_THAT(execucao.sSaida, HasSubstr("u7/s0"));
    EXPECT_TRUE(Json({"registro", "--do-usuario", "8"}).empty());
}

TEST_F(ProgramaBase, SistemaSemProvedorNaoGravaNada) {
    const SExecucao execucao =
        Xvcr({"consulta", "--tipo-consulta", "ConsultaPagamentoExtrato", "--chave-consulta", "[]"});
    EXPECT_NE(execucao.iSaida, 2) << execucao.sErro;
    const std::vector<std::vector<std::string>> listaComandos{{"pendencia", "--origem"},
                                                              {"instantanea", "--integracao-origem"}};
    for (std::vector<std::string> listaArgumentos : listaComandos) {
        listaArgumentos.insert(listaArgumentos.end(), {"20261121-7-2", "--sistema", "Mercos", "--tipo",
                                                       "CadastroProduto", "--transacao", "Inclusao"});
        const SExecucao semProvedor = Xvcr(listaArgumentos);
        EXPECT_EQ(semProvedor.iSaida, 1);
        EXPECT_THAT(semProvedor.sErro, HasSubstr("0x80004001 E_NOTIMPL"));
    }
    EXPECT_EQ(Xvcr({"busca", "--conta"}).sSaida, "0\n");
}

}  // namespace
