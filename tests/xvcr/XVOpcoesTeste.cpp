// Every option of the commands that record or exchange, each at a value of its own, from the line to the
// files and back: records are compared whole.
#include <gtest/gtest.h>

#include <utility>

#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/xvcr/XVExecutaAqui.h"
#include "tools/xvcr/text/XVLeituraValor.h"

namespace {

using TArgumentos = std::vector<std::string>;
using nlohmann::json;

// Texts with bytes that JSON escapes and bytes that it cannot hold; numbers at their limits.
const TArgumentos k_textos{"--json-enviado", "{\"ç\":1}",     "--mensagem", "linha 1\nlinha \"2\"\t\x01",
                           "--json-retorno", "\xff\xfe bytes"};
constexpr const char* k_szCampos =
    "--tipo CadastroProduto --status Erro --transacao Exclusao --chave 18446744073709551615 "
    "--chave-registro 12 --base-dados 9007199254740993 --integracao-origem 20261121-17-1 "
    "--movimento-origem 23591231-4294967295-2 --inclusao 2026-11-01T01:02:03 --alteracao-status 1848-01-01 "
    "--filial 4294967295 --usuario-inclusao 20 --usuario-cancelamento 21 --auxiliar 22 --tipo-auxiliar 255 "
    "--reconsultar 1 ";

constexpr const char* k_szVazia = R"({
    "regDmcIntegracaoOrigem":"0", "regDmcMovimentoOrigem":"0", "regDataHoraInclusao":"",
    "regDataHoraAlteracaoStatus":"", "uiChaveIntegracaoSistemaTerceiro":"0",
    "uiChaveRegistroSistemaTerceiro":"0", "uiBaseDadosTerceiro":"0",
    "eTipoIntegracao":"eXVSMiddleware_NenhumaIntegracao", "eStatusIntegracao":"eXVSMiddleware_NenhumStatus",
    "eSistemaIntegracao":"Tipo_Nenhum", "eTipoTransacao":"XVSMiddleware_TipoTransacaoNenhum",
    "ulPonteiroFilial":0, "ulPonteiroUsuarioInclusao":0, "ulPonteiroUsuarioCancelamento":0,
    "ulPonteiroAuxiliar":0, "cReconsultarIdTerceiros":0, "ucTipoPonteiroAuxiliar":0,
    "regRegistroJSON":"", "regMensagemIntegracao":"", "regJSONRetornoIntegracao":""})";

// What grava makes of k_textos and k_szCampos. The store keeps no key of the external record.
constexpr const char* k_szTudo = R"({
    "regDmcIntegracaoOrigem":"6439373410954133505", "regDmcMovimentoOrigem":"18439988674268479490",
    "regDataHoraInclusao":"2026-11-01T01:02:03Z", "regDataHoraAlteracaoStatus":"1848-01-01T00:00:00Z",
    "uiChaveIntegracaoSistemaTerceiro":"18446744073709551615", "uiBaseDadosTerceiro":"9007199254740993",
    "eTipoIntegracao":"eXVSMiddleware_CadastroProduto", "eStatusIntegracao":"eXVSMiddleware_Erro",
    "eSistemaIntegracao":"Mercos", "eTipoTransacao":"eXVSMiddleware_Exclusao",
    "ulPonteiroFilial":4294967295, "ulPonteiroUsuarioInclusao":20, "ulPonteiroUsuarioCancelamento":21,
    "ulPonteiroAuxiliar":22, "cReconsultarIdTerceiros":1, "ucTipoPonteiroAuxiliar":255,
    "regRegistroJSON":"{\"ç\":1}", "regMensagemIntegracao":"linha 1\nlinha \"2\"\t\u0001",
    "regJSONRetornoIntegracao":null, "regJSONRetornoIntegracao_base64":"//4gYnl0ZXM="})";

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
    SExecucao Executa(const std::string& sPalavras, const TArgumentos& rMais = {}) const {
        const TArgumentos listaGeral{"--diretorio", m_Diretorio.GetCaminho()};
        return XVExecutaAqui(Junta(
            Junta(listaGeral, XVPalavras("--empresa 001 --usuario 7 --sessao 42 " + sPalavras)), rMais));
    }
    // The lines of a run that succeeds.
    std::vector<json> Json(const std::string& sPalavras, const TArgumentos& rMais = {}) const {
        const SExecucao execucao = Executa("--json " + sPalavras, rMais);
        EXPECT_EQ(execucao.iSaida, 0) << execucao.sErro;
        return XVLinhasJson(execucao.sSaida);
    }
    // The DMC that a recording answers.
    std::string Grava(const std::string& sPalavras, const TArgumentos& rMais = {}) const {
        return Json(sPalavras, rMais).at(0).value("sDmc", "");
    }
    json Le(const std::string& sDmc) const { return Json("le --todos " + sDmc).at(0); }

    CXVDiretorioTeste m_Diretorio;
};

TEST_F(Opcoes, GravaLevaCadaUmaAoSeuCampo) {
    json esperada = json::parse(k_szTudo);
    const std::string sDmc = Grava(std::string("grava --sistema Mercos ") + k_szCampos, k_textos);
    EXPECT_EQ(Le(sDmc), Integracao(sDmc, esperada));

    const json semTextos = Json("le " + sDmc).at(0);
    for (const auto& [sOpcao, sCampo] :
         {std::pair<std::string, std::string>{"json-enviado", "regRegistroJSON"},
          {"mensagem", "regMensagemIntegracao"},
          {"json-retorno", "regJSONRetornoIntegracao_base64"}}) {
        json comUm = semTextos;
        comUm[sCampo] = esperada[sCampo];
        EXPECT_EQ(Json("le --" + sOpcao + ' ' + sDmc).at(0), comUm) << "one text alone";
    }
    EXPECT_EQ(Json("grava --filial 119 --mensagem outra --dmc " + sDmc),
              (std::vector<json>{{{"regDmc", Decimal(sDmc)}, {"sDmc", sDmc}}}));
    json outra = esperada;
    outra["ulPonteiroFilial"] = 119;
    outra["regMensagemIntegracao"] = "outra";
    EXPECT_EQ(Le(sDmc), Integracao(sDmc, outra)) << "what is not given stays";

    m_Diretorio.CriaArquivo("lida.jsonl", Integracao(sDmc, esperada).dump());
    EXPECT_EQ(Grava("carrega", {m_Diretorio.Junta("lida.jsonl")}), sDmc);
    EXPECT_EQ(Le(sDmc), Integracao(sDmc, esperada)) << "what was read is loaded again, each field";

    Grava("grava --substitui --status Erro --inclusao 2026-10-01 --dmc " + sDmc);
    EXPECT_EQ(Le(sDmc), Integracao(sDmc, {{"eStatusIntegracao", "eXVSMiddleware_Erro"},
                                          {"regDataHoraInclusao", "2026-10-01T00:00:00Z"}}))
        << "what is not given is emptied";
}

TEST_F(Opcoes, StatusPorDmcEPorChave) {
    const std::string sUm = Grava(std::string("grava --sistema Mercos ") + k_szCampos, k_textos);
    const std::string sOutro =
        Grava(std::string("grava --sistema SimulacaoSistemaTerceiro ") + k_szCampos, k_textos);
    json outro = json::parse(k_szTudo);
    outro["eSistemaIntegracao"] = "SimulacaoSistemaTerceiro";
    EXPECT_EQ(Json("status --chave 18446744073709551615 --sistema Mercos --status Enviado --mensagem foi "
                   "--json-retorno [3]"),
              (std::vector<json>{{{"regDmc", "0"},
                                  {"sDmc", "0"},
                                  {"uiChaveIntegracaoSistemaTerceiro", "18446744073709551615"},
                                  {"eStatusIntegracao", "eXVSMiddleware_Enviado"},
                                  {"eSistemaIntegracao", "Mercos"}}}));
    json lida = Le(sUm);
    json esperada = json::parse(k_szTudo);
    EXPECT_NE(lida["regDataHoraAlteracaoStatus"], esperada["regDataHoraAlteracaoStatus"]);
    esperada.merge_patch({{"eStatusIntegracao", "eXVSMiddleware_Enviado"},
                          {"regMensagemIntegracao", "foi"},
                          {"regJSONRetornoIntegracao", "[3]"},
                          {"regJSONRetornoIntegracao_base64", nullptr},
                          {"regDataHoraAlteracaoStatus", lida["regDataHoraAlteracaoStatus"]}});
    EXPECT_EQ(lida, Integracao(sUm, esperada));
    EXPECT_EQ(Le(sOutro), Integracao(sOutro, outro)) << "the same key of another system";

    EXPECT_EQ(Executa("status --status Cancelado --dmc " + sOutro).sSaida, "status gravado: Cancelado\n");
    lida = Le(sOutro);
    outro.merge_patch({{"eStatusIntegracao", "eXVSMiddleware_Cancelado"},
                       {"ulPonteiroUsuarioCancelamento", 7},
                       {"regDataHoraAlteracaoStatus", lida["regDataHoraAlteracaoStatus"]}});
    outro["regMensagemIntegracao"] = "";
    EXPECT_EQ(lida, Integracao(sOutro, outro));
}

// Entries that differ in one part of their key do not meet.
TEST_F(Opcoes, MapaTemUmaLigacaoPorRegistroTipoSistemaEBase) {
    const struct {
        std::string sRegistro, sTipo, sSistema, sBase;
    } aLigacoes[] = {{"20261121-7-2", "CadastroProduto", "Mercos", "0"},
                     {"20261121-8-2", "CadastroProduto", "Mercos", "0"},
                     {"20261121-7-2", "BuscaPedidos", "Mercos", "0"},
                     {"20261121-7-2", "CadastroProduto", "OfficialBank", "0"},
                     {"20261121-7-2", "CadastroProduto", "Mercos", "3"}};
    const auto ligacao = [&](unsigned i, unsigned uiChave, const char* pszOrigem) {
        return std::vector<json>{{{"uiChaveRegistroSistemaTerceiro", std::to_string(uiChave)},
                                  {"regDmcRegistroTelvo", Decimal(aLigacoes[i].sRegistro)},
                                  {"uiBaseDadosTerceiro", aLigacoes[i].sBase},
                                  {"eTipoIntegracao", "eXVSMiddleware_" + aLigacoes[i].sTipo},
                                  {"eSistemaIntegracao", aLigacoes[i].sSistema},
                                  {"regDmcOrigemIntegracao", Decimal(pszOrigem)}}};
    };
    const auto mapa = [&](const std::string& sComando, unsigned i, const std::string& sMais) {
        return Json("mapa " + sComando + " --tipo " + aLigacoes[i].sTipo + " --sistema " +
                    aLigacoes[i].sSistema + " --base-dados " + aLigacoes[i].sBase + sMais);
    };
    const auto registro = [&](unsigned i) { return " --registro " + aLigacoes[i].sRegistro; };
    const auto chave = [](unsigned i) { return " --chave-registro " + std::to_string(5500 + i); };
    for (unsigned i = 0; i < std::size(aLigacoes); ++i) {
        EXPECT_EQ(mapa("pendente", i, registro(i) + " --origem 20261121-1-1"), ligacao(i, 0, "20261121-1-1"));
        EXPECT_EQ(mapa("grava", i, registro(i) + chave(i) + " --origem 20261121-2-1"),
                  ligacao(i, 5500 + i, "20261121-2-1"));
    }
    for (unsigned i = 0; i < std::size(aLigacoes); ++i) {
        const auto esperada = ligacao(i, 5500 + i, "20261121-2-1");
        EXPECT_EQ(mapa("busca", i, registro(i)), esperada);
        EXPECT_EQ(mapa("busca", i, chave(i)), esperada);
        EXPECT_EQ(mapa("busca", i, registro(i) + chave(i + 1)), std::vector<json>{}) << "both must hold";
        EXPECT_EQ(mapa("pendente", i, registro(i) + " --origem 20261121-3-1"), esperada) << "left as it is";
    }
    EXPECT_EQ(Executa("mapa busca --registro 20261121-9-2 --tipo 6 --sistema 16").sSaida,
              "nenhuma ligação encontrada\n");
    EXPECT_EQ(Executa("mapa grava --tipo 6 --sistema 16").sErro.substr(0, 49),
              "xvcr: 0x81080CEB E_XVCR_CHAVE_REGISTRO_TELVO_ZERA");
}

TEST_F(Opcoes, DataHoraTemUmaPorTipoSistemaEData) {
    const struct {
        std::string sTipo, sSistema, sTipoData;
    } aDatas[] = {{"BuscaPedidos", "Mercos", "DataUltimaBusca"},
                  {"BuscaUsuarios", "Mercos", "DataUltimaBusca"},
                  {"BuscaPedidos", "OfficialBank", "DataUltimaBusca"},
                  {"BuscaPedidos", "Mercos", "DataProximaRequisicao"}};
    const auto datahora = [&](const std::string& sComando, unsigned i, const std::string& sMais) {
        return Json("datahora " + sComando + " --tipo " + aDatas[i].sTipo + " --sistema " +
                    aDatas[i].sSistema + " --tipo-data " + aDatas[i].sTipoData + sMais);
    };
    const auto gravada = [&](unsigned i) {
        return std::vector<json>{{{"regDataHora", "2026-11-2" + std::to_string(i) + "T13:05:09Z"},
                                  {"eTipoIntegracao", "eXVSMiddleware_" + aDatas[i].sTipo},
                                  {"eSistemaIntegracao", aDatas[i].sSistema},
                                  {"eTipoData", "eXVSMiddleware_" + aDatas[i].sTipoData}}};
    };
    for (unsigned i = 0; i < std::size(aDatas); ++i)
        EXPECT_EQ(datahora("grava", i, " --data-hora 2026-11-2" + std::to_string(i) + "T13:05:09"),
                  gravada(i));
    for (unsigned i = 0; i < std::size(aDatas); ++i) EXPECT_EQ(datahora("busca", i, ""), gravada(i));
    const std::string sOutra = "datahora busca --tipo CadastroProduto --sistema 16 --tipo-data 1";
    EXPECT_EQ(Json(sOutra), std::vector<json>{});
    EXPECT_EQ(Executa(sOutra).sSaida, "nenhuma data-hora encontrada\n");
}

// Company, user, session, type, origin, integration, key of the record, database, system, transaction,
// branch, auxiliary pointer and its kind are what the provider says it was asked with.
TEST_F(Opcoes, PendenciaLevaCadaUmaAoProvedorEAoRegistro) {
    EXPECT_EQ(
        Executa(std::string("pendencia --sistema OfficialBank --origem 20261121-15-2 ") + k_szCampos).sSaida,
        "pendências gravadas\n");
    const std::string sOrigem = Decimal("20261121-15-2");
    const std::string sDmc = Json("busca").at(0)["sDmc"];
    json esperada = json::parse(k_szTudo);
    esperada.merge_patch(
        {{"regDmcIntegracaoOrigem", sOrigem},
         {"regDmcMovimentoOrigem", sOrigem},
         {"uiChaveIntegracaoSistemaTerceiro", "0"},
         {"uiBaseDadosTerceiro", "31"},
         {"eStatusIntegracao", "eXVSMiddleware_Pendente"},
         {"eSistemaIntegracao", "OfficialBank"},
         {"cReconsultarIdTerceiros", 0},
         {"regRegistroJSON", "001 7 42 6 " + sOrigem + " 0 12 9007199254740993 8 3 4294967295 22 255"},
         {"regMensagemIntegracao", ""},
         {"regJSONRetornoIntegracao", ""},
         {"regJSONRetornoIntegracao_base64", nullptr}});
    EXPECT_EQ(Le(sDmc), Integracao(sDmc, esperada));
    EXPECT_EQ(Json("pendencia --sistema OfficialBank --origem 20261121-15-2 --tipo 6 --transacao 1"),
              std::vector<json>{});
}

TEST_F(Opcoes, InstantaneaLevaCadaUmaAoProvedorEAoRegistro) {
    const std::string sPedido =
        "instantanea --sistema OfficialBank --tipo 6 --filial 19 --auxiliar 22 --tipo-auxiliar 23 "
        "--integracao-origem 20261121-17-1 ";
    const std::string sOrigem = Decimal("20261121-17-1");
    const std::string sDmc = Grava(sPedido + "--transacao Inclusao");
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

    EXPECT_EQ(Executa(sPedido + "--transacao Exclusao --dmc " + sDmc).sSaida, sDmc + "\n");
    lida = Le(sDmc);
    esperada.merge_patch(
        {{"eStatusIntegracao", "eXVSMiddleware_Cancelado"},
         {"eTipoTransacao", "eXVSMiddleware_Exclusao"},
         {"regRegistroJSON", "001 7 42 6 " + sOrigem + ' ' + Decimal(sDmc) + " 0 0 8 3 19 22 23"},
         {"regMensagemIntegracao", Decimal(sDmc) + " 77"},
         {"regDataHoraInclusao", lida["regDataHoraInclusao"]},
         {"regDataHoraAlteracaoStatus", lida["regDataHoraAlteracaoStatus"]}});
    EXPECT_EQ(lida, Integracao(sDmc, esperada));
    EXPECT_EQ(Json("busca").size(), 1U);

    const std::string sNenhuma = "instantanea --sistema SimulacaoSistemaTerceiro --tipo 6 --transacao 1";
    EXPECT_EQ(Executa(sNenhuma).sSaida, "nenhuma integração gravada\n");
    EXPECT_EQ(Json(sNenhuma), std::vector<json>{});
}

TEST_F(Opcoes, ConsultaLevaCadaUmaAoProvedorETrazODocumentoByteAByte) {
    Grava("grava");  // a query makes no store
    const std::string sConsulta =
        "consulta --tipo-consulta ConsultaBoleto --chave-consulta @@9 --auxiliar 5 --tipo-auxiliar 6";
    json esperada{{"regMensagemRetorno", "@9 2 5 6"},
                  {"regJSONRetorno", "{\"eco\":1}"},
                  {"eStatusConsulta", "eXVSMiddleware_ConsultaPagamentoNecessario"},
                  {"ulTamanhoDocumentoRetorno", 6},
                  {"pDocumentoRetorno_base64", "JVBERgD/"}};
    EXPECT_EQ(Json(sConsulta), std::vector<json>{esperada});
    EXPECT_EQ(Executa(sConsulta).sSaida,
              "Resultado:  ConsultaPagamentoNecessario\nMensagem:   @9 2 5 6\nJSON:       {\"eco\":1}\n"
              "Documento:  6 bytes\n");

    const std::string sArquivo = m_Diretorio.Junta("boleto.pdf");
    esperada.erase("pDocumentoRetorno_base64");
    esperada["pDocumentoRetorno_arquivo"] = sArquivo;
    EXPECT_EQ(Json(sConsulta, {"--documento", sArquivo}), std::vector<json>{esperada});
    EXPECT_EQ(m_Diretorio.LeConteudo("boleto.pdf"), std::string("%PDF\0\xff", 6));
}

}  // namespace
