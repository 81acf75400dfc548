#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

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
        "grava --tipo BuscaPedidos --sistema Mercos --status Pendente --transacao Inclusao --chave 100 "
        "--inclusao "
        "2026-11-01T10:00:00Z --alteracao-status 2026-11-11T10:00:00Z");
    const std::string sDois = Grava(
        "grava --tipo CadastroProduto --sistema OfficialBank --status Sucesso --transacao Alteracao --chave "
        "500 "
        "--inclusao 2026-11-02T09:00:00Z --alteracao-status 2026-11-12T09:00:00Z");
    const std::string sTres = Grava(
        "grava --tipo BuscaUsuarios --sistema SimulacaoSistemaTerceiro --status Erro --transacao Exclusao "
        "--chave "
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
        "grava --tipo BuscaPedidos --sistema Mercos --status Erro --transacao Alteracao --chave 4108 "
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
    const std::string sDois = Grava("grava --sistema Mercos --json-enviado {\"p\":2}");
    EXPECT_EQ(Xvcr("busca --dmcs").sSaida, sUm + "\n" + sDois + "\n");
    EXPECT_EQ(Xvcr("busca --conta").sSaida, "2\n");
    EXPECT_EQ(Json("busca --conta"), (std::vector<nlohmann::json>{{{"ulQuantidade", 2}}}));
    EXPECT_THAT(Xvcr("busca --limite 2").sSaida, testing::EndsWith("\n2 integrações\n"));
    EXPECT_THAT(Xvcr("busca --limite 1").sSaida, testing::EndsWith("20261103-217-2\n1 de 2 integrações\n"));
    EXPECT_EQ(Xvcr("busca --limite 1 --dmcs").sSaida, sUm + "\n");
    EXPECT_EQ(Xvcr("busca --limite 3 --dmcs").sSaida, sUm + "\n" + sDois + "\n");
    EXPECT_THAT(Xvcr("busca --status Enviado --limite 1").sSaida,
                testing::AllOf(testing::StartsWith("DMC  "), testing::EndsWith("---\n0 integrações\n")));
    EXPECT_EQ(Json("busca --limite 1 --le").at(0)["sDmc"], sUm);
    EXPECT_EQ(Json("busca --limite 1").size(), 1U);
    const SExecucao lidas = Xvcr("busca --le --json-enviado");
    EXPECT_THAT(lidas.sSaida, testing::EndsWith("\nJSON enviado:            {\"p\":2}\n"));
    EXPECT_THAT(lidas.sSaida, HasSubstr("\n\nDMC:"));
    EXPECT_EQ(lidas.sSaida.find("Mensagem:"), std::string::npos);
    EXPECT_EQ(Xvcr("le --json-enviado " + sUm + ' ' + sDois).sSaida, lidas.sSaida);
    EXPECT_EQ(Xvcr("busca --json-enviado").sSaida, lidas.sSaida);
}

TEST_F(ProgramaBusca, OrdemECsv) {
    const auto grava = [&](const char* pszChave, const char* pszInclusao, const char* pszAlteracao) {
        return Grava(std::string("grava --sistema Mercos --status Erro --chave ") + pszChave +
                     " --inclusao " + pszInclusao + " --alteracao-status " + pszAlteracao);
    };
    const std::string sA = grava("30", "2026-11-02T10:00", "2026-11-13T08:00");
    const std::string sB = grava("10", "2026-11-02T11:00", "2026-11-11T09:00");
    const std::string sC = grava("20", "2026-11-01T12:00", "2026-11-12T07:00");
    using TDmcs = std::vector<std::string>;
    EXPECT_EQ(Dmcs("--ordem chave"), (TDmcs{sB, sC, sA}));
    EXPECT_EQ(Dmcs("--ordem inclusao"), (TDmcs{sC, sA, sB}));
    EXPECT_EQ(Dmcs("--ordem alteracao --decrescente --limite 2"), (TDmcs{sA, sC}));
    EXPECT_EQ(Dmcs("--ordem dmc --decrescente"), (TDmcs{sC, sB, sA}));
    EXPECT_EQ(
        Xvcr("busca --csv --ordem chave --limite 1").sSaida,
        "DMC;Integração de origem;Movimento de origem;Inclusão;Mudança de status;Chave externa;"
        "Id externo do registro;Base de dados externa;Tipo;Status;Sistema;Transação;Filial;"
        "Usuário que incluiu;Usuário que cancelou;Ponteiro auxiliar;Reconsultar ids;Tipo do auxiliar\r\n" +
            sB +
            ";;;2026-11-02T11:00:00Z;2026-11-11T09:00:00Z;10;0;0;NenhumaIntegracao;Erro;Mercos;"
            "TipoTransacaoNenhum;0;0;0;0;0;0\r\n");
}

// More than are read at a time, in whatever order they are asked for.
TEST_F(ProgramaBusca, MuitasIntegracoesVoltamTodasNaOrdem) {
    constexpr std::size_t k_uiQuantidade = 300;
    std::string sLinhas;
    for (std::size_t i = 0; i < k_uiQuantidade; ++i)
        sLinhas += R"({"eSistemaIntegracao":2,"eStatusIntegracao":1,"uiChaveIntegracaoSistemaTerceiro":)" +
                   std::to_string(1000 + i) + R"(,"regRegistroJSON":{"n":)" + std::to_string(i) + "}}\n";
    ASSERT_EQ(Xvcr("carrega -", {}, sLinhas).iSaida, 0);
    std::vector<std::string> listaDmcs = Dmcs("");
    const std::vector<nlohmann::json> lidas = Json("busca --le --json-enviado");
    ASSERT_EQ(lidas.size(), k_uiQuantidade);
    ASSERT_EQ(listaDmcs.size(), k_uiQuantidade);
    for (std::size_t i = 0; i < k_uiQuantidade; ++i) {
        EXPECT_EQ(lidas[i]["sDmc"], listaDmcs[i]);
        EXPECT_EQ(lidas[i]["regRegistroJSON"], "{\"n\":" + std::to_string(i) + "}");
    }
    const std::string sTabela = Xvcr("busca").sSaida;  // title, rule, rows, their number
    EXPECT_EQ(std::count(sTabela.begin(), sTabela.end(), '\n'), 303);
    for (const std::string& rDmc : listaDmcs) EXPECT_THAT(sTabela, HasSubstr('\n' + rDmc + ' '));
    EXPECT_THAT(sTabela, testing::EndsWith("\n300 integrações\n"));
    std::reverse(listaDmcs.begin(), listaDmcs.end());
    const auto entrada = [&] {
        std::string sEntrada;
        for (const std::string& rDmc : listaDmcs) sEntrada += rDmc + "\r\n";
        return sEntrada;
    };
    EXPECT_EQ(Json("le - --json-enviado", {}, entrada()),
              std::vector<nlohmann::json>(lidas.rbegin(), lidas.rend()));

    // The external system is asked once for all, so one that fails fails all; one that is not in the store
    // is named, and the others are there.
    std::filesystem::create_directories(m_Diretorio.Junta("001/DF/simulacao/regras"));
    m_Diretorio.CriaArquivo("001/DF/simulacao/regras/1.regra",
                            "Operacao: BuscaDados\nChave: 1010\nResultado: 0x800706BA\n");
    const SExecucao consultada = Xvcr("--json le - --consulta-terceiro", {}, entrada());
    EXPECT_EQ(consultada.iSaida, 1);
    EXPECT_THAT(consultada.sErro, HasSubstr("xvcr: 0x800706BA"));
    EXPECT_EQ(consultada.sSaida, "");
    listaDmcs[100] = "20200101-1-1";
    std::vector<nlohmann::json> outras(lidas.rbegin(), lidas.rend());
    outras.erase(outras.begin() + 100);
    const SExecucao semUma = Xvcr("--json le - --json-enviado", {}, entrada());
    EXPECT_EQ(semUma.iSaida, 1);
    EXPECT_THAT(semUma.sErro, testing::StartsWith("xvcr: 20200101-1-1: 0x81080AAA "));
    EXPECT_EQ(std::count(semUma.sErro.begin(), semUma.sErro.end(), '\n'), 1);
    EXPECT_EQ(XVLinhasJson(semUma.sSaida), outras) << "all others, in the order asked for";
}

}  // namespace
