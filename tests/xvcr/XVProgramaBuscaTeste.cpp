#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <utility>

#include "tests/xvcr/XVPrograma.h"

namespace {

using testing::HasSubstr;

class ProgramaBusca : public XVPrograma {
  protected:
    std::vector<std::string> Dmcs(const std::string& sFiltro) const {
        std::vector<std::string> listaDmcs;
        for (const nlohmann::json& rLinha : Json("busca " + sFiltro))
            listaDmcs.push_back(rLinha.value("sDmc", ""));
        return listaDmcs;
    }
};

TEST_F(ProgramaBusca, CadaCampoDoFiltroRestringe) {
    const std::string sUm = Grava(
        "--tipo BuscaPedidos --sistema Mercos --status Pendente --transacao Inclusao --chave 100 --inclusao "
        "2026-11-01T10:00:00Z --alteracao-status 2026-11-11T10:00:00Z");
    const std::string sDois = Grava(
        "--tipo CadastroProduto --sistema OfficialBank --status Sucesso --transacao Alteracao --chave 500 "
        "--inclusao 2026-11-02T09:00:00Z --alteracao-status 2026-11-12T09:00:00Z");
    const std::string sTres = Grava(
        "--tipo BuscaUsuarios --sistema SimulacaoSistemaTerceiro --status Erro --transacao Exclusao --chave "
        "900 --inclusao 2026-11-03T11:00:00Z --alteracao-status 2026-11-13T11:00:00Z");
    const struct {
        std::string sFiltro;
        std::vector<std::string> listaAchadas;
    } aCasos[] = {
        {"", {sUm, sDois, sTres}},
        {"--tipo BuscaPedidos", {sUm}},
        {"--tipo 6,BuscaUsuarios", {sDois, sTres}},
        {"--status 3", {sDois}},
        {"--status Pendente --status Erro", {sUm, sTres}},
        {"--status Enviado", {}},
        {"--sistema OfficialBank", {sDois}},
        {"--transacao eXVSMiddleware_Inclusao", {sUm}},
        {"--chave-inicial 500", {sDois, sTres}},
        {"--chave-final 500", {sUm, sDois}},
        {"--chave-inicial 101 --chave-final 499", {}},
        {"--chave-inicial 500 --sistema OfficialBank", {sDois}},
        {"--chave-inicial 100 --sistema OfficialBank", {}},
        {"--inclusao-de 2026-11-02", {sDois, sTres}},
        {"--inclusao-ate 2026-11-02", {sUm, sDois}},
        {"--inclusao-de 2026-11-01T10:00", {sUm, sTres}},  // the time of day counts by itself
        {"--alteracao-de 2026-11-12", {sDois, sTres}},
        {"--alteracao-ate 2026-11-12", {sUm, sDois}},
        {"--alteracao-de 2026-11-12 --alteracao-ate 2026-11-12", {sDois}},
    };
    for (const auto& rCaso : aCasos) EXPECT_EQ(Dmcs(rCaso.sFiltro), rCaso.listaAchadas) << rCaso.sFiltro;
}

TEST_F(ProgramaBusca, FormasDoResultado) {
    const std::string sUm = Grava(
        "--tipo BuscaPedidos --sistema Mercos --status Erro --transacao Alteracao --chave 4108 "
        "--movimento-origem 20261103-217-2 --inclusao 2026-11-03T15:49:31");
    EXPECT_EQ(Xvcr("busca").sSaida,
              "DMC           Inclusão              Tipo          Transação  Sistema  Status  Chave externa  "
              "Movimento de origem\n"
              "------------  --------------------  ------------  ---------  -------  ------  -------------  "
              "-------------------\n" +
                  sUm +
                  "  2026-11-03T15:49:31Z  BuscaPedidos  Alteracao  Mercos   Erro             4108  "
                  "20261103-217-2\n"
                  "1 integração\n");
    const std::string sDois = Grava({"--sistema", "Mercos", "--json-enviado", "{\"p\":2}"});
    EXPECT_EQ(Xvcr("busca --dmcs").sSaida, sUm + "\n" + sDois + "\n");
    EXPECT_EQ(Xvcr("busca --conta").sSaida, "2\n");
    EXPECT_EQ(Json("busca --conta"), (std::vector<nlohmann::json>{{{"ulQuantidade", 2}}}));
    EXPECT_THAT(Xvcr("busca").sSaida, testing::EndsWith("\n2 integrações\n"));
    const SExecucao lidas = Xvcr("busca --le --json-enviado");
    EXPECT_THAT(lidas.sSaida, testing::EndsWith("regRegistroJSON:                   {\"p\":2}\n"));
    EXPECT_THAT(lidas.sSaida, HasSubstr("\n\nregDmc:"));
    EXPECT_EQ(lidas.sSaida.find("regMensagemIntegracao"), std::string::npos);
    EXPECT_EQ(Xvcr({"le", sUm, sDois, "--json-enviado"}).sSaida, lidas.sSaida);
    EXPECT_EQ(Xvcr("busca --json-enviado").sSaida, lidas.sSaida);
}

// More than are read at a time, in whatever order they are asked for.
TEST_F(ProgramaBusca, MuitasIntegracoesVoltamTodasNaOrdem) {
    constexpr std::size_t k_uiQuantidade = 130;
    std::string sLinhas;
    for (std::size_t i = 0; i < k_uiQuantidade; ++i)
        sLinhas += R"({"eSistemaIntegracao":2,"eStatusIntegracao":1,"uiChaveIntegracaoSistemaTerceiro":)" +
                   std::to_string(1000 + i) + R"(,"regRegistroJSON":{"n":)" + std::to_string(i) + "}}\n";
    ASSERT_EQ(Xvcr({"carrega", "-"}, sLinhas).iSaida, 0);
    std::vector<std::string> listaDmcs = Dmcs("");
    ASSERT_EQ(listaDmcs.size(), k_uiQuantidade);

    using TLidas = std::vector<std::pair<std::string, std::string>>;
    const auto le = [&](const std::vector<std::string>& rArgumentos, const std::string& sEntrada) {
        TLidas lidas;
        for (const nlohmann::json& r : Json(rArgumentos, sEntrada))
            lidas.emplace_back(r.value("sDmc", ""), r.value("regRegistroJSON", ""));
        return lidas;
    };
    TLidas esperadas;
    for (std::size_t i = 0; i < k_uiQuantidade; ++i)
        esperadas.emplace_back(listaDmcs[i], "{\"n\":" + std::to_string(i) + "}");
    EXPECT_EQ(le({"busca", "--le", "--json-enviado"}, ""), esperadas);
    std::reverse(esperadas.begin(), esperadas.end());
    std::reverse(listaDmcs.begin(), listaDmcs.end());
    const auto entrada = [&] {
        std::string sEntrada;
        for (const std::string& rDmc : listaDmcs) sEntrada += rDmc + "\r\n";
        return sEntrada;
    };
    EXPECT_EQ(le({"le", "-", "--json-enviado"}, entrada()), esperadas);

    // The external system is asked once for all, so one that fails fails all; one that is not in the store
    // leaves those of the parts before it.
    const std::filesystem::path pasta = m_Diretorio.Junta("001/DF/simulacao/regras");
    std::filesystem::create_directories(pasta);
    m_Diretorio.CriaArquivo("001/DF/simulacao/regras/1.regra",
                            "Operacao: BuscaDados\nChave: 1010\nResultado: 0x800706BA\n");
    const SExecucao consultada = Xvcr({"--json", "le", "-", "--consulta-terceiro"}, entrada());
    EXPECT_EQ(consultada.iSaida, 1);
    EXPECT_THAT(consultada.sErro, HasSubstr("xvcr: 0x800706BA"));
    EXPECT_EQ(consultada.sSaida, "");
    listaDmcs[100] = "20200101-1-1";
    const SExecucao lidas = Xvcr({"--json", "le", "-"}, entrada());
    EXPECT_EQ(lidas.iSaida, 1);
    EXPECT_EQ(XVLinhasJson(lidas.sSaida).size(), 64U);
}

TEST_F(ProgramaBusca, ConsultaAoSistemaExternoEOperacaoQueAEncerra) {
    const std::string sDmc =
        Grava("--sistema SimulacaoSistemaTerceiro --chave 41 --status Enviado --tipo BuscaPedidos");
    std::filesystem::create_directories(m_Diretorio.Junta("001/DF/simulacao/regras"));
    m_Diretorio.CriaArquivo("001/DF/simulacao/41.doc", "Status: Erro\nMensagem: Recusado\n\n{\"etapa\":2}");
    m_Diretorio.CriaArquivo("001/DF/simulacao/regras/1.regra",
                            "Operacao: RealizaOperacaoPosterior\nResultado: 0x800706BA\n");
    nlohmann::json esperada = Json({"le", sDmc, "--todos"}).at(0);
    nlohmann::json lida = Json({"le", sDmc, "--todos", "--consulta-terceiro"}).at(0);
    esperada["eStatusIntegracao"] = "eXVSMiddleware_Erro";
    esperada["regMensagemIntegracao"] = "Recusado";
    esperada["regJSONRetornoIntegracao"] = "{\"etapa\":2}";
    esperada["regDataHoraAlteracaoStatus"] = lida["regDataHoraAlteracaoStatus"];
    EXPECT_EQ(lida, esperada);
    const SExecucao encerrada = Xvcr({"le", sDmc, "--consulta-terceiro", "--operacao-posterior"});
    EXPECT_EQ(encerrada.iSaida, 1);
    EXPECT_THAT(encerrada.sErro, HasSubstr("xvcr: 0x800706BA"));
    EXPECT_EQ(Json("le " + sDmc).at(0)["eStatusIntegracao"], "eXVSMiddleware_Enviado")
        << "nothing is recorded";
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
    const std::string sDmc = Grava("--tipo BuscaPedidos --sistema Mercos --json-enviado {}");
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
    EXPECT_NE(Xvcr("le 20200101-1-1").iSaida, 0);
    EXPECT_EQ(Xvcr("busca --conta").sSaida, "1\n");
}

}  // namespace
