// Every option of the commands that record or exchange, each at a value of its own, from the line to the
// files and back: records are compared whole.
#include <gtest/gtest.h>

#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/xvcr/XVExecutaAqui.h"
#include "tools/xvcr/text/XVLeituraValor.h"

namespace {

using TArgumentos = std::vector<std::string>;
using nlohmann::json;

const TArgumentos k_textos{"--json-enviado", "{\"a\":1}", "--mensagem", "feita", "--json-retorno", "[2]"};
const TArgumentos k_campos{"--tipo",
                           "CadastroProduto",
                           "--status",
                           "Erro",
                           "--transacao",
                           "Exclusao",
                           "--chave",
                           "11",
                           "--chave-registro",
                           "12",
                           "--base-dados",
                           "13",
                           "--integracao-origem",
                           "20261121-17-1",
                           "--movimento-origem",
                           "20261121-18-2",
                           "--inclusao",
                           "2026-11-01T01:02:03",
                           "--alteracao-status",
                           "2026-11-02T02:03:04",
                           "--filial",
                           "19",
                           "--usuario-inclusao",
                           "20",
                           "--usuario-cancelamento",
                           "21",
                           "--auxiliar",
                           "22",
                           "--tipo-auxiliar",
                           "23",
                           "--reconsultar",
                           "1"};

constexpr const char* k_szVazia = R"({
    "regDmcIntegracaoOrigem":"0", "regDmcMovimentoOrigem":"0", "regDataHoraInclusao":"",
    "regDataHoraAlteracaoStatus":"", "uiChaveIntegracaoSistemaTerceiro":"0",
    "uiChaveRegistroSistemaTerceiro":"0", "uiBaseDadosTerceiro":"0",
    "eTipoIntegracao":"eXVSMiddleware_NenhumaIntegracao", "eStatusIntegracao":"eXVSMiddleware_NenhumStatus",
    "eSistemaIntegracao":"Tipo_Nenhum", "eTipoTransacao":"XVSMiddleware_TipoTransacaoNenhum",
    "ulPonteiroFilial":0, "ulPonteiroUsuarioInclusao":0, "ulPonteiroUsuarioCancelamento":0,
    "ulPonteiroAuxiliar":0, "cReconsultarIdTerceiros":0, "ucTipoPonteiroAuxiliar":0,
    "regRegistroJSON":"", "regMensagemIntegracao":"", "regJSONRetornoIntegracao":""})";

// What grava makes of k_textos and k_campos. The store keeps no key of the external record.
constexpr const char* k_szTudo = R"({
    "regDmcIntegracaoOrigem":"6439373410954133505", "regDmcMovimentoOrigem":"6439373410954149890",
    "regDataHoraInclusao":"2026-11-01T01:02:03Z", "regDataHoraAlteracaoStatus":"2026-11-02T02:03:04Z",
    "uiChaveIntegracaoSistemaTerceiro":"11", "uiBaseDadosTerceiro":"13",
    "eTipoIntegracao":"eXVSMiddleware_CadastroProduto", "eStatusIntegracao":"eXVSMiddleware_Erro",
    "eSistemaIntegracao":"Mercos", "eTipoTransacao":"eXVSMiddleware_Exclusao",
    "ulPonteiroFilial":19, "ulPonteiroUsuarioInclusao":20, "ulPonteiroUsuarioCancelamento":21,
    "ulPonteiroAuxiliar":22, "cReconsultarIdTerceiros":1, "ucTipoPonteiroAuxiliar":23,
    "regRegistroJSON":"{\"a\":1}", "regMensagemIntegracao":"feita", "regJSONRetornoIntegracao":"[2]"})";

TArgumentos Junta(TArgumentos lista, const TArgumentos& rMais) {
    lista.insert(lista.end(), rMais.begin(), rMais.end());
    return lista;
}

std::string Decimal(const std::string& sDmc) {
    REG_XVDMC regDmc;
    EXPECT_EQ(XVLeituraValor::Le(sDmc, &regDmc), "") << sDmc;
    return std::to_string(regDmc.uiValor);
}

// The integration with these fields; all others are empty.
json Integracao(const std::string& sDmc, const json& rCampos) {
    json integracao = json::parse(k_szVazia);
    integracao.merge_patch(rCampos);
    integracao["sDmc"] = sDmc;
    integracao["regDmc"] = Decimal(sDmc);
    return integracao;
}

class Opcoes : public testing::Test {
  protected:
    SExecucao Executa(const TArgumentos& rArgumentos) const {
        return XVExecutaAqui(Junta(
            {"--diretorio", m_Diretorio.GetCaminho(), "--empresa", "001", "--usuario", "7", "--sessao", "42"},
            rArgumentos));
    }
    // The lines of a run that succeeds.
    std::vector<json> Json(const TArgumentos& rArgumentos) const {
        const SExecucao execucao = Executa(Junta({"--json"}, rArgumentos));
        EXPECT_EQ(execucao.iSaida, 0) << execucao.sErro;
        return XVLinhasJson(execucao.sSaida);
    }
    // The DMC that a recording answers.
    std::string Grava(const TArgumentos& rArgumentos) const {
        const std::string sDmc = Json(rArgumentos).at(0).value("sDmc", "");
        return sDmc;
    }
    json Le(const std::string& sDmc) const { return Json({"le", sDmc, "--todos"}).at(0); }

    CXVDiretorioTeste m_Diretorio;
};

TEST_F(Opcoes, GravaLevaCadaUmaAoSeuCampo) {
    json esperada = json::parse(k_szTudo);
    const std::string sDmc = Grava(Junta(Junta({"grava", "--sistema", "Mercos"}, k_textos), k_campos));
    EXPECT_EQ(Le(sDmc), Integracao(sDmc, esperada));

    EXPECT_EQ(Json({"grava", "--dmc", sDmc, "--filial", "119", "--mensagem", "outra"}),
              (std::vector<json>{{{"regDmc", Decimal(sDmc)}, {"sDmc", sDmc}}}));
    esperada["ulPonteiroFilial"] = 119;
    esperada["regMensagemIntegracao"] = "outra";
    EXPECT_EQ(Le(sDmc), Integracao(sDmc, esperada)) << "what is not given stays";

    Grava({"grava", "--dmc", sDmc, "--substitui", "--status", "Erro", "--inclusao", "2026-10-01"});
    EXPECT_EQ(Le(sDmc), Integracao(sDmc, {{"eStatusIntegracao", "eXVSMiddleware_Erro"},
                                          {"regDataHoraInclusao", "2026-10-01T00:00:00Z"}}))
        << "what is not given is emptied";
}

TEST_F(Opcoes, StatusPorDmcEPorChave) {
    const TArgumentos listaCampos = Junta(k_textos, k_campos);
    const std::string sUm = Grava(Junta({"grava", "--sistema", "Mercos"}, listaCampos));
    const std::string sOutro = Grava(Junta({"grava", "--sistema", "SimulacaoSistemaTerceiro"}, listaCampos));
    json outro = json::parse(k_szTudo);
    outro["eSistemaIntegracao"] = "SimulacaoSistemaTerceiro";

    EXPECT_EQ(Json({"status", "--chave", "11", "--sistema", "Mercos", "--status", "Enviado", "--mensagem",
                    "foi", "--json-retorno", "[3]"}),
              (std::vector<json>{{{"regDmc", "0"},
                                  {"sDmc", "0"},
                                  {"uiChaveIntegracaoSistemaTerceiro", "11"},
                                  {"eStatusIntegracao", "eXVSMiddleware_Enviado"},
                                  {"eSistemaIntegracao", "Mercos"}}}));
    json esperada = json::parse(k_szTudo);
    esperada["eStatusIntegracao"] = "eXVSMiddleware_Enviado";
    esperada["regMensagemIntegracao"] = "foi";
    esperada["regJSONRetornoIntegracao"] = "[3]";
    json lida = Le(sUm);
    EXPECT_NE(lida["regDataHoraAlteracaoStatus"], esperada["regDataHoraAlteracaoStatus"]);
    esperada["regDataHoraAlteracaoStatus"] = lida["regDataHoraAlteracaoStatus"];
    EXPECT_EQ(lida, Integracao(sUm, esperada));
    EXPECT_EQ(Le(sOutro), Integracao(sOutro, outro)) << "the same key of another system";

    EXPECT_EQ(Executa({"status", "--dmc", sOutro, "--status", "Cancelado"}).sSaida,
              "status gravado: Cancelado\n");
    outro["eStatusIntegracao"] = "eXVSMiddleware_Cancelado";
    outro["regMensagemIntegracao"] = "";
    outro["ulPonteiroUsuarioCancelamento"] = 7;
    lida = Le(sOutro);
    outro["regDataHoraAlteracaoStatus"] = lida["regDataHoraAlteracaoStatus"];
    EXPECT_EQ(lida, Integracao(sOutro, outro));
}

// Entries that differ in one part of their key do not meet.
TEST_F(Opcoes, MapaTemUmaLigacaoPorRegistroTipoSistemaEBase) {
    struct SLigacao {
        TArgumentos listaNome;
        const char* pszRegistro;
        const char* pszBase;
        const char* pszTipo;
        const char* pszSistema;
    };
    constexpr const char* k_szProduto = "eXVSMiddleware_CadastroProduto";
    const SLigacao aLigacoes[] = {
        {{"--registro", "20261121-7-2", "--tipo", "CadastroProduto", "--sistema", "Mercos"},
         "20261121-7-2",
         "0",
         k_szProduto,
         "Mercos"},
        {{"--registro", "20261121-8-2", "--tipo", "6", "--sistema", "16"},
         "20261121-8-2",
         "0",
         k_szProduto,
         "Mercos"},
        {{"--registro", "20261121-7-2", "--tipo", "6", "--sistema", "OfficialBank"},
         "20261121-7-2",
         "0",
         k_szProduto,
         "OfficialBank"},
        {{"--registro", "20261121-7-2", "--tipo", "BuscaPedidos", "--sistema", "16"},
         "20261121-7-2",
         "0",
         "eXVSMiddleware_BuscaPedidos",
         "Mercos"},
        {{"--registro", "20261121-7-2", "--tipo", "6", "--sistema", "16", "--base-dados", "3"},
         "20261121-7-2",
         "3",
         k_szProduto,
         "Mercos"}};
    const auto ligacao = [&](unsigned i, unsigned uiChave, const char* pszOrigem) {
        return std::vector<json>{{{"uiChaveRegistroSistemaTerceiro", std::to_string(uiChave)},
                                  {"regDmcRegistroTelvo", Decimal(aLigacoes[i].pszRegistro)},
                                  {"uiBaseDadosTerceiro", aLigacoes[i].pszBase},
                                  {"eTipoIntegracao", aLigacoes[i].pszTipo},
                                  {"eSistemaIntegracao", aLigacoes[i].pszSistema},
                                  {"regDmcOrigemIntegracao", Decimal(pszOrigem)}}};
    };
    const auto mapa = [&](const char* pszComando, unsigned i, const TArgumentos& rMais) {
        return Json(Junta(Junta({"mapa", pszComando}, aLigacoes[i].listaNome), rMais));
    };
    for (unsigned i = 0; i < std::size(aLigacoes); ++i) {
        EXPECT_EQ(mapa("pendente", i, {"--origem", "20261121-1-1"}), ligacao(i, 0, "20261121-1-1")) << i;
        const TArgumentos chave{"--chave-registro", std::to_string(5500 + i)};
        EXPECT_EQ(mapa("grava", i, Junta(chave, {"--origem", "20261121-2-1"})),
                  ligacao(i, 5500 + i, "20261121-2-1"))
            << i;
    }
    for (unsigned i = 0; i < std::size(aLigacoes); ++i) {
        const auto esperada = ligacao(i, 5500 + i, "20261121-2-1");
        EXPECT_EQ(mapa("busca", i, {}), esperada) << i;
        EXPECT_EQ(mapa("pendente", i, {"--origem", "20261121-3-1"}), esperada) << "left as it is";
        EXPECT_EQ(Json({"mapa", "busca", "--chave-registro", std::to_string(5500 + i), "--tipo",
                        aLigacoes[i].pszTipo, "--sistema", aLigacoes[i].pszSistema, "--base-dados",
                        aLigacoes[i].pszBase}),
                  esperada)
            << i;
    }
    EXPECT_EQ(
        Executa({"mapa", "busca", "--registro", "20261121-9-2", "--tipo", "6", "--sistema", "16"}).sSaida,
        "nenhuma ligação encontrada\n");
    EXPECT_EQ(mapa("busca", 0, {"--chave-registro", "5501"}), std::vector<json>{}) << "both must hold";
}

TEST_F(Opcoes, DataHoraTemUmaPorTipoSistemaEData) {
    const TArgumentos aNomes[] = {
        {"--tipo", "BuscaPedidos", "--sistema", "Mercos", "--tipo-data", "DataUltimaBusca"},
        {"--tipo", "BuscaUsuarios", "--sistema", "Mercos", "--tipo-data", "DataUltimaBusca"},
        {"--tipo", "BuscaPedidos", "--sistema", "OfficialBank", "--tipo-data", "DataUltimaBusca"},
        {"--tipo", "BuscaPedidos", "--sistema", "Mercos", "--tipo-data", "DataProximaRequisicao"}};
    const auto gravada = [&](unsigned i) {
        return std::vector<json>{{{"regDataHora", "2026-11-2" + std::to_string(i) + "T13:05:09Z"},
                                  {"eTipoIntegracao", "eXVSMiddleware_" + aNomes[i][1]},
                                  {"eSistemaIntegracao", aNomes[i][3]},
                                  {"eTipoData", "eXVSMiddleware_" + aNomes[i][5]}}};
    };
    for (unsigned i = 0; i < std::size(aNomes); ++i)
        EXPECT_EQ(
            Json(Junta({"datahora", "grava", "--data-hora", "2026-11-2" + std::to_string(i) + "T13:05:09"},
                       aNomes[i])),
            gravada(i));
    for (unsigned i = 0; i < std::size(aNomes); ++i)
        EXPECT_EQ(Json(Junta({"datahora", "busca"}, aNomes[i])), gravada(i));
    const TArgumentos listaOutra{"datahora",  "busca",  "--tipo",      "CadastroProduto",
                                 "--sistema", "Mercos", "--tipo-data", "DataUltimaBusca"};
    EXPECT_EQ(Json(listaOutra), std::vector<json>{});
    EXPECT_EQ(Executa(listaOutra).sSaida, "nenhuma data-hora encontrada\n");
}

// Company, user, session, type, origin, integration, key of the record, database, system, transaction,
// branch, auxiliary pointer and its kind are what the provider says it was asked with.
TEST_F(Opcoes, PendenciaLevaCadaUmaAoProvedorEAoRegistro) {
    EXPECT_EQ(
        Executa(Junta({"pendencia", "--sistema", "OfficialBank", "--origem", "20261121-15-2"}, k_campos))
            .sSaida,
        "pendências gravadas\n");
    const std::string sDmc = Json({"busca"}).at(0)["sDmc"];
    json esperada = json::parse(k_szTudo);
    esperada.merge_patch(
        {{"regDmcIntegracaoOrigem", Decimal("20261121-15-2")},
         {"regDmcMovimentoOrigem", Decimal("20261121-15-2")},
         {"uiChaveIntegracaoSistemaTerceiro", "0"},
         {"uiBaseDadosTerceiro", "31"},
         {"eStatusIntegracao", "eXVSMiddleware_Pendente"},
         {"eSistemaIntegracao", "OfficialBank"},
         {"cReconsultarIdTerceiros", 0},
         {"regRegistroJSON", "001 7 42 6 " + Decimal("20261121-15-2") + " 0 12 13 8 3 19 22 23"},
         {"regMensagemIntegracao", ""},
         {"regJSONRetornoIntegracao", ""}});
    EXPECT_EQ(Le(sDmc), Integracao(sDmc, esperada));
    EXPECT_EQ(Json({"pendencia", "--sistema", "OfficialBank", "--origem", "20261121-15-2", "--tipo", "6",
                    "--transacao", "1"}),
              std::vector<json>{});
}

TEST_F(Opcoes, InstantaneaLevaCadaUmaAoProvedorEAoRegistro) {
    const TArgumentos listaPedido{
        "instantanea",  "--sistema",  "OfficialBank", "--tipo",          "6",  "--filial",
        "19",           "--auxiliar", "22",           "--tipo-auxiliar", "23", "--integracao-origem",
        "20261121-17-1"};
    const std::string sOrigem = Decimal("20261121-17-1");
    const std::string sDmc = Grava(Junta(listaPedido, {"--transacao", "Inclusao"}));
    json esperada{{"regDmcIntegracaoOrigem", sOrigem},
                  {"regDmcMovimentoOrigem", sOrigem},
                  {"uiChaveIntegracaoSistemaTerceiro", "77"},
                  {"uiBaseDadosTerceiro", "31"},
                  {"eTipoIntegracao", "eXVSMiddleware_CadastroProduto"},
                  {"eStatusIntegracao", "eXVSMiddleware_Sucesso"},
                  {"eSistemaIntegracao", "OfficialBank"},
                  {"eTipoTransacao", "eXVSMiddleware_Inclusao"},
                  {"ulPonteiroFilial", 19},
                  {"ulPonteiroUsuarioInclusao", 7},
                  {"ulPonteiroAuxiliar", 22},
                  {"ucTipoPonteiroAuxiliar", 23},
                  {"regRegistroJSON", "001 7 42 6 " + sOrigem + " 0 0 0 8 1 19 22 23"},
                  {"regMensagemIntegracao", "0 0"}};
    json lida = Le(sDmc);
    esperada["regDataHoraInclusao"] = lida["regDataHoraInclusao"];
    EXPECT_EQ(lida, Integracao(sDmc, esperada));

    EXPECT_EQ(Executa(Junta(listaPedido, {"--transacao", "Exclusao", "--dmc", sDmc})).sSaida, sDmc + "\n");
    esperada.merge_patch(
        {{"eStatusIntegracao", "eXVSMiddleware_Cancelado"},
         {"eTipoTransacao", "eXVSMiddleware_Exclusao"},
         {"regRegistroJSON", "001 7 42 6 " + sOrigem + ' ' + Decimal(sDmc) + " 0 0 8 3 19 22 23"},
         {"regMensagemIntegracao", Decimal(sDmc) + " 77"}});
    lida = Le(sDmc);
    esperada["regDataHoraInclusao"] = lida["regDataHoraInclusao"];
    esperada["regDataHoraAlteracaoStatus"] = lida["regDataHoraAlteracaoStatus"];
    EXPECT_EQ(lida, Integracao(sDmc, esperada));
    EXPECT_EQ(Json({"busca"}).size(), 1U);

    const TArgumentos listaNenhuma{"instantanea", "--sistema", "SimulacaoSistemaTerceiro", "--tipo", "6",
                                   "--transacao", "1"};
    EXPECT_EQ(Executa(listaNenhuma).sSaida, "nenhuma integração gravada\n");
    EXPECT_EQ(Json(listaNenhuma), std::vector<json>{});
}

TEST_F(Opcoes, ConsultaLevaCadaUmaAoProvedorETrazODocumentoByteAByte) {
    Grava({"grava"});  // a query makes no store
    const TArgumentos listaConsulta{"consulta",
                                    "--tipo-consulta",
                                    "ConsultaBoleto",
                                    "--chave-consulta",
                                    "@@9",
                                    "--auxiliar",
                                    "5",
                                    "--tipo-auxiliar",
                                    "6"};
    json esperada{{"regMensagemRetorno", "@9 2 5 6"},
                  {"regJSONRetorno", "{\"eco\":1}"},
                  {"eStatusConsulta", "eXVSMiddleware_ConsultaPagamentoNecessario"},
                  {"ulTamanhoDocumentoRetorno", 6},
                  {"pDocumentoRetorno_base64", "JVBERgD/"}};
    EXPECT_EQ(Json(listaConsulta), std::vector<json>{esperada});

    const std::string sArquivo = m_Diretorio.Junta("boleto.pdf");
    esperada.erase("pDocumentoRetorno_base64");
    esperada["pDocumentoRetorno_arquivo"] = sArquivo;
    EXPECT_EQ(Json(Junta(listaConsulta, {"--documento", sArquivo})), std::vector<json>{esperada});
    EXPECT_EQ(m_Diretorio.LeConteudo("boleto.pdf"), std::string("%PDF\0\xff", 6));
    EXPECT_EQ(Executa(listaConsulta).sSaida,
              "Resultado:  ConsultaPagamentoNecessario\n"
              "Mensagem:   @9 2 5 6\n"
              "JSON:       {\"eco\":1}\n"
              "Documento:  6 bytes\n");
}

}  // namespace
