#include <gmock/gmock.h>

#include <map>

#include "tests/xvcr/XVPrograma.h"

namespace {

using testing::HasSubstr;

class ProgramaCarga : public XVPrograma {
  protected:
    std::string Quantidade() const { return Xvcr({"busca", "--conta"}).sSaida; }
};

constexpr const char* k_szTresLinhas =
    "{\"eSistemaIntegracao\":\"Mercos\",\"regRegistroJSON\":{\"n\" : 1.50}}\n"
    "\n"
    "{\"eSistemaIntegracao\":\"Merc\"}\n"
    "{\"eSistemaIntegracao\":16}\n";

TEST_F(ProgramaCarga, ParaNoPrimeiroErroESoOAnteriorFica) {
    const SExecucao execucao = Xvcr({"carrega", "-"}, k_szTresLinhas);
    EXPECT_EQ(execucao.iSaida, 1);
    const nlohmann::json lida = Json({"busca", "--le", "--json-enviado"}).at(0);
    EXPECT_EQ(lida["regRegistroJSON"], "{\"n\":1.50}");
    EXPECT_EQ(execucao.sSaida, "linha 1: " + lida.value("sDmc", "") +
                                   " gravada\nlinha 3: erro\n2 lidas, 1 gravadas, 1 com erro\n");
    EXPECT_EQ(execucao.sErro,
              "xvcr: linha 3, campo \"eSistemaIntegracao\": valor desconhecido; os aceitos são: Nenhum, "
              "SimulacaoSistemaTerceiro, OfficialBank, Mercos\n");
    EXPECT_EQ(Xvcr({"carrega", "-", "--para"}, k_szTresLinhas).iSaida, 1);
    EXPECT_EQ(Quantidade(), "2\n");
}

// What each line did, whole: recorded, refused before the store, refused by it, too long.
TEST_F(ProgramaCarga, ContinuaDepoisDoErroEDizOQueHouveComCadaLinha) {
    const std::string sLonga = "{\"regRegistroJSON\":\"" + std::string(100000, 'x') + "\"}\n";
    const std::string sEntrada =
        k_szTresLinhas + sLonga +
        "{\"a\":\xff}\n"
        "{\"operacao\":\"status\",\"sDmc\":\"20200101-9-1\",\"eStatusIntegracao\":4}\n"
        "{\"operacao\":\"apaga\"}\n" +
        sLonga.substr(0, 999);
    const SExecucao execucao = Xvcr({"--json", "carrega", "-", "--continua"}, sEntrada);
    EXPECT_EQ(execucao.iSaida, 1);
    const std::vector<nlohmann::json> lidas = Json({"busca", "--le", "--json-enviado"});
    ASSERT_EQ(lidas.size(), 3U);
    EXPECT_EQ(lidas[2]["regRegistroJSON"], std::string(100000, 'x'));
    const auto gravada = [&](std::size_t i, int iLinha) {
        return nlohmann::json{{"linha", iLinha},
                              {"operacao", "integracao"},
                              {"hr", "0x00000000"},
                              {"regDmc", lidas[i]["regDmc"]},
                              {"sDmc", lidas[i]["sDmc"]}};
    };
    const auto recusada = [](int iLinha, const char* pszErro) {
        return nlohmann::json{
            {"linha", iLinha}, {"operacao", "integracao"}, {"regDmc", "0"}, {"sDmc", "0"}, {"erro", pszErro}};
    };
    nlohmann::json sistema = recusada(3,
                                      "valor desconhecido; os aceitos são: Nenhum, SimulacaoSistemaTerceiro, "
                                      "OfficialBank, Mercos");
    sistema["campo"] = "eSistemaIntegracao";
    nlohmann::json operacao = recusada(8, "esperado \"integracao\" ou \"status\"");
    operacao["campo"] = "operacao";
    std::vector<nlohmann::json> listaLinhas = XVLinhasJson(execucao.sSaida);
    ASSERT_EQ(listaLinhas.size(), 9U);
    EXPECT_THAT(listaLinhas[5].value("erro", ""), testing::StartsWith("0x810809D9 E_XVCR_TENTATIVA_LER_POSICAO_ZERO: "));
    listaLinhas[5].erase("erro");
    EXPECT_EQ(listaLinhas, (std::vector<nlohmann::json>{gravada(0, 1),
                                                        sistema,
                                                        gravada(1, 4),
                                                        gravada(2, 5),
                                                        recusada(6, "JSON inválido no byte 6"),
                                                        {{"linha", 7},
                                                         {"operacao", "status"},
                                                         {"hr", "0x810809D9"},
                                                         {"regDmc", "6199275255819812865"},
                                                         {"sDmc", "20200101-9-1"}},
                                                        operacao,
                                                        recusada(9, "JSON inválido no byte 1000"),
                                                        {{"lidas", 8}, {"gravadas", 3}, {"erros", 5}}}));
}

TEST_F(ProgramaCarga, LimiteDaLinhaEEntradasVazias) {
    const std::string sLinha = R"({"regRegistroJSON":"12345678"})";
    const std::string sLimite = std::to_string(sLinha.size());
    const SExecucao execucao =
        Xvcr({"carrega", "-", "--continua", "--linha-maxima", sLimite}, sLinha + "\n" + sLinha + " \n \n");
    EXPECT_EQ(execucao.iSaida, 1);
    EXPECT_EQ(execucao.sErro, "xvcr: linha 2: mais de " + sLimite + " bytes\n");
    EXPECT_THAT(execucao.sSaida, HasSubstr("2 lidas, 1 gravadas, 1 com erro\n"));
    const SExecucao vazia = Xvcr({"carrega", "-"}, "");
    EXPECT_EQ(vazia.iSaida, 0);
    EXPECT_EQ(vazia.sSaida, "0 lidas, 0 gravadas, 0 com erro\n");
    EXPECT_EQ(Xvcr({"carrega", m_Diretorio.Junta("não há")}).iSaida, 1);
    const std::string sStatus = R"({"operacao":"status","sDmc":")" + Json({"busca"}).at(0).value("sDmc", "") +
                                R"(","eStatusIntegracao":1})";
    EXPECT_THAT(Xvcr({"carrega", "-"}, sStatus).sSaida, HasSubstr(" status gravado\n1 lidas, 1 gravadas"));
}

TEST_F(ProgramaCarga, OQueSeLeSeCarregaDeNovo) {
    const std::string sDmc = Grava({"--tipo", "BuscaPedidos", "--sistema", "Mercos", "--status", "Pendente",
                                    "--json-enviado", "{\"ç\":1}", "--mensagem", "é", "--filial", "2"});
    const SExecucao lida = Xvcr({"--json", "le", sDmc, "--todos"});
    const std::vector<nlohmann::json> gravadas = Json({"carrega", "-"}, lida.sSaida);
    EXPECT_EQ(gravadas.at(0)["sDmc"], sDmc) << "a line with a DMC updates";
    EXPECT_EQ(Xvcr({"--json", "le", sDmc, "--todos"}).sSaida, lida.sSaida);
    EXPECT_EQ(Quantidade(), "1\n");
}

TEST_F(ProgramaCarga, ExemplosCarregamInteiros) {
    const std::vector<nlohmann::json> linhas =
        Json({"carrega", std::string(XV_EXEMPLOS) + "/integracoes.jsonl"});
    ASSERT_FALSE(linhas.empty());
    EXPECT_EQ(linhas.back()["erros"], 0);
    std::map<std::string, int> mapStatus;
    std::map<std::string, int> mapSistemas;
    std::map<std::string, int> mapDias;
    const std::vector<nlohmann::json> lidas = Json({"busca", "--le"});
    EXPECT_GE(lidas.size(), 60U);
    for (const nlohmann::json& rLida : lidas) {
        ++mapStatus[rLida["eStatusIntegracao"]];
        ++mapSistemas[rLida["eSistemaIntegracao"]];
        ++mapDias[rLida["regDataHoraInclusao"].get<std::string>().substr(0, 10)];
    }
    EXPECT_EQ(mapStatus.size(), 5U);
    EXPECT_EQ(mapSistemas.size(), 3U);
    EXPECT_GE(mapDias.size(), 4U);
}

}  // namespace
