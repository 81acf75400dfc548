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
    EXPECT_THAT(execucao.sSaida, HasSubstr("linha 1: "));
    EXPECT_THAT(execucao.sSaida, HasSubstr("2 lidas, 1 gravadas, 1 com erro\n"));
    EXPECT_THAT(execucao.sErro, HasSubstr("xvcr: linha 3, campo \"eSistemaIntegracao\": valor desconhecido"));
    EXPECT_EQ(Quantidade(), "1\n");
    EXPECT_EQ(Json({"busca", "--le", "--json-enviado"}).at(0)["regRegistroJSON"], "{\"n\":1.50}");
}

TEST_F(ProgramaCarga, ContinuaDepoisDoErro) {
    const SExecucao execucao = Xvcr({"--json", "carrega", "-", "--continua"}, k_szTresLinhas);
    EXPECT_EQ(execucao.iSaida, 1);
    const std::vector<nlohmann::json> lista = XVLinhasJson(execucao.sSaida);
    ASSERT_EQ(lista.size(), 4U);
    EXPECT_EQ(lista[0]["hr"], "0x00000000");
    EXPECT_EQ(lista[1]["linha"], 3);
    EXPECT_EQ(lista[1]["campo"], "eSistemaIntegracao");
    EXPECT_FALSE(lista[1].contains("hr")) << "the line never reached the store";
    EXPECT_NE(lista[2]["sDmc"], "0");
    EXPECT_EQ(lista[3], nlohmann::json::parse("{\"lidas\":3,\"gravadas\":2,\"erros\":1}"));
    EXPECT_EQ(Quantidade(), "2\n");
}

TEST_F(ProgramaCarga, LinhasLongasTortasEDaBase) {
    const std::string sEntrada = "{\"regRegistroJSON\":\"" + std::string(2000, 'x') +
                                 "\"}\n{\"a\":\xff}\n{\"sDmc\":\"" + "20200101-9-1\"}\n{}";
    const SExecucao execucao = Xvcr({"carrega", "-", "--continua", "--linha-maxima", "1000"}, sEntrada);
    EXPECT_EQ(execucao.iSaida, 1);
    EXPECT_THAT(execucao.sErro, HasSubstr("linha 1: mais de 1000 bytes"));
    EXPECT_THAT(execucao.sErro, HasSubstr("linha 2: JSON inválido no byte 6"));
    EXPECT_THAT(execucao.sErro, HasSubstr("linha 3: 0x8"));
    EXPECT_THAT(execucao.sSaida, HasSubstr("4 lidas, 1 gravadas, 3 com erro\n"));
    EXPECT_EQ(Xvcr({"carrega", m_Diretorio.Junta("não há")}).iSaida, 1);
    EXPECT_EQ(Xvcr({"carrega", "-"}, "").iSaida, 0);
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
