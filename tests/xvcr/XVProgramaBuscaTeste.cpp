#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "tests/xvcr/XVPrograma.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

class ProgramaBusca : public XVPrograma {
  protected:
    std::vector<std::string> Dmcs(std::vector<std::string> listaFiltro) const {
        listaFiltro.insert(listaFiltro.begin(), "busca");
        std::vector<std::string> listaDmcs;
        for (const nlohmann::json& rLinha : Json(std::move(listaFiltro)))
            listaDmcs.push_back(rLinha.value("sDmc", ""));
        return listaDmcs;
    }
    void GravaDataHora(const std::string& sTipoData) const {
        EXPECT_EQ(Xvcr({"datahora", "grava", "--data-hora", "2026-11-21T13:05:09Z", "--tipo", "BuscaPedidos",
                        "--sistema", "Mercos", "--tipo-data", sTipoData})
                      .iSaida,
                  0);
    }
};

TEST_F(ProgramaBusca, CadaCampoDoFiltroRestringe) {
    const std::string sUm = Grava({"--tipo", "BuscaPedidos", "--sistema", "Mercos", "--status", "Pendente",
                                   "--transacao", "Inclusao", "--inclusao", "2026-11-01T10:00:00Z"});
    const std::string sDois = Grava({"--tipo", "CadastroProduto", "--sistema", "OfficialBank", "--status",
                                     "Sucesso", "--transacao", "Alteracao", "--chave", "500", "--inclusao",
                                     "2026-11-02T09:00:00Z", "--alteracao-status", "2026-11-05T08:00:00Z"});
    EXPECT_THAT(Dmcs({}), ElementsAre(sUm, sDois));
    EXPECT_THAT(Dmcs({"--tipo", "BuscaPedidos"}), ElementsAre(sUm));
    EXPECT_THAT(Dmcs({"--status", "3"}), ElementsAre(sDois));
    EXPECT_THAT(Dmcs({"--status", "Pendente,Sucesso"}), UnorderedElementsAre(sUm, sDois));
    EXPECT_THAT(Dmcs({"--status", "Pendente", "--status", "Erro"}), ElementsAre(sUm));
    EXPECT_THAT(Dmcs({"--sistema", "OfficialBank"}), ElementsAre(sDois));
    EXPECT_THAT(Dmcs({"--transacao", "eXVSMiddleware_Inclusao"}), ElementsAre(sUm));
    EXPECT_THAT(Dmcs({"--chave-inicial", "500", "--sistema", "OfficialBank"}), ElementsAre(sDois));
    EXPECT_THAT(Dmcs({"--chave-inicial", "1", "--chave-final", "499"}), ElementsAre());
    EXPECT_THAT(Dmcs({"--inclusao-de", "2026-11-02"}), ElementsAre(sDois));
    EXPECT_THAT(Dmcs({"--inclusao-ate", "2026-11-01"}), ElementsAre(sUm));
    EXPECT_THAT(Dmcs({"--inclusao-de", "2026-11-01T10:00"}), ElementsAre(sUm))
        << "the time of day counts by itself";
    EXPECT_THAT(Dmcs({"--alteracao-de", "2026-11-05", "--alteracao-ate", "2026-11-05"}), ElementsAre(sDois));
}

TEST_F(ProgramaBusca, FormasDoResultado) {
    const std::string sUm =
        Grava({"--tipo", "BuscaPedidos", "--sistema", "Mercos", "--json-enviado", "{\"p\":1}"});
    const std::string sDois =
        Grava({"--tipo", "BuscaPedidos", "--sistema", "Mercos", "--json-enviado", "{\"p\":2}"});
    const SExecucao tabela = Xvcr({"busca"});
    EXPECT_THAT(tabela.sSaida, HasSubstr("Inclusão"));
    EXPECT_THAT(tabela.sSaida, HasSubstr("2 integrações\n"));
    EXPECT_EQ(Xvcr({"busca", "--dmcs"}).sSaida, sUm + "\n" + sDois + "\n");
    EXPECT_EQ(Xvcr({"busca", "--conta"}).sSaida, "2\n");
    EXPECT_EQ(Json({"busca", "--conta"}).at(0)["ulQuantidade"], 2);
    const std::vector<nlohmann::json> lidas = Json({"busca", "--le", "--json-enviado"});
    ASSERT_EQ(lidas.size(), 2U);
    EXPECT_EQ(lidas[1]["sDmc"], sDois);
    EXPECT_EQ(lidas[1]["regRegistroJSON"], "{\"p\":2}");
    EXPECT_FALSE(lidas[1].contains("regMensagemIntegracao"));
    EXPECT_EQ(Json({"le", "-"}, sDois + "\n" + sUm + "\r\n").at(0)["sDmc"], sDois);
    EXPECT_THAT(Dmcs({"--status", "Erro"}), ElementsAre());
}

TEST_F(ProgramaBusca, MapaDeChaves) {
    const std::vector<std::string> listaNome{"--registro",      "20261121-7-2", "--tipo",
                                             "CadastroProduto", "--sistema",    "Mercos"};
    const auto mapa = [&](const char* pszComando, std::vector<std::string> listaMais) {
        std::vector<std::string> lista{"mapa", pszComando};
        lista.insert(lista.end(), listaNome.begin(), listaNome.end());
        lista.insert(lista.end(), listaMais.begin(), listaMais.end());
        return Json(lista);
    };
    GravaDataHora("DataProximaRequisicao");  // makes the store
    EXPECT_TRUE(mapa("busca", {}).empty());
    EXPECT_EQ(mapa("pendente", {}).at(0)["uiChaveRegistroSistemaTerceiro"], "0");
    mapa("grava", {"--chave-registro", "5501", "--origem", "20261121-1-1"});
    EXPECT_EQ(mapa("pendente", {}).at(0)["uiChaveRegistroSistemaTerceiro"], "5501") << "left as it is";
    const nlohmann::json json =
        Json({"mapa", "busca", "--chave-registro", "5501", "--tipo", "6", "--sistema", "16"}).at(0);
    EXPECT_EQ(json["eTipoIntegracao"], "eXVSMiddleware_CadastroProduto");
    EXPECT_NE(json["regDmcOrigemIntegracao"], "0");
    EXPECT_EQ(Xvcr({"mapa", "busca", "--tipo", "6", "--sistema", "16"}).iSaida, 2);
    const SExecucao nulo = Xvcr({"mapa", "grava", "--tipo", "6", "--sistema", "16"});
    EXPECT_EQ(nulo.iSaida, 1);
    EXPECT_THAT(nulo.sErro, HasSubstr("0x81080CEB E_XVCR_CHAVE_REGISTRO_TELVO_ZERADA"));
}

TEST_F(ProgramaBusca, DatasHorasPorSistemaTipoEData) {
    const std::vector<std::string> listaNome{"--tipo", "BuscaPedidos", "--sistema",
                                             "Mercos", "--tipo-data",  "DataUltimaBusca"};
    std::vector<std::string> listaBusca{"datahora", "busca"};
    listaBusca.insert(listaBusca.end(), listaNome.begin(), listaNome.end());
    GravaDataHora("DataProximaRequisicao");
    EXPECT_TRUE(Json(listaBusca).empty()) << "another kind";
    EXPECT_EQ(Xvcr(listaBusca).sSaida, "nenhuma data-hora encontrada\n");
    GravaDataHora("DataUltimaBusca");
    EXPECT_EQ(Json(listaBusca).at(0)["regDataHora"], "2026-11-21T13:05:09Z");
}

// Names, bytes and times of everything below a directory.
std::map<std::string, std::string> Retrata(const std::filesystem::path& rDiretorio) {
    std::map<std::string, std::string> retrato;
    for (const auto& it : std::filesystem::recursive_directory_iterator(rDiretorio)) {
        std::string& rs = retrato[it.path().string()];
        if (!it.is_directory()) {
            std::ifstream entrada(it.path(), std::ios::binary);
            rs.assign(std::istreambuf_iterator<char>(entrada), std::istreambuf_iterator<char>());
        }
        rs += '@' + std::to_string(it.last_write_time().time_since_epoch().count());
    }
    return retrato;
}

TEST_F(ProgramaBusca, QuemSoLeDeixaCadaByteDoDiretorioDaEmpresaComoEstava) {
    const std::string sDmc = Grava({"--tipo", "BuscaPedidos", "--sistema", "Mercos", "--json-enviado", "{}"});
    std::filesystem::path diretorio;
    for (const auto& it : std::filesystem::directory_iterator(m_Diretorio.GetCaminho()))
        if (it.is_directory()) diretorio = it.path();
    ASSERT_FALSE(diretorio.empty());
    const auto antes = Retrata(diretorio);
    ASSERT_GT(antes.size(), 5U);
    const std::vector<std::vector<std::string>> listaComandos{
        {"busca"},
        {"busca", "--le"},
        {"busca", "--inclusao-de", "2020-01-01"},
        {"le", sDmc},
        {"le", "20200101-1-1"},  // is not there: an error, which goes to another log
        {"mapa", "busca", "--tipo", "CadastroProduto", "--sistema", "Mercos", "--id", "7"},
        {"versao"},
        {"registro"}};
    for (const auto& rComando : listaComandos) {
        Xvcr(rComando);
        EXPECT_EQ(Retrata(diretorio), antes) << testing::PrintToString(rComando);
    }
    EXPECT_NE(Xvcr({"le", "20200101-1-1"}).iSaida, 0);
    EXPECT_EQ(Xvcr({"busca", "--conta"}).sSaida, "1\n");
}

}  // namespace
