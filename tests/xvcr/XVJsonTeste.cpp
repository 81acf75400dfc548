#include <gtest/gtest.h>

#include "contract/XVCR_Enumeracoes.h"
#include "tools/xvcr/fields/XVRegistroJson.h"

namespace {

SErroCampo Le(const std::string& sLinha, CXVDadosCR_IntegracaoMiddleware* pDados) {
    std::vector<SMembroJson> listaMembros;
    const std::string sErro = XVSeparaMembros(sLinha, &listaMembros);
    if (!sErro.empty()) return {"", sErro};
    return XVRegistroJson::DeMembros(
        listaMembros, [](const SMembroJson&) { return false; }, pDados);
}

std::string CampoErrado(const std::string& sLinha) {
    CXVDadosCR_IntegracaoMiddleware dados;
    const SErroCampo erro = Le(sLinha, &dados);
    return erro.sMensagem.empty() ? "nenhum" : erro.sCampo;
}

CXVDadosCR_IntegracaoMiddleware IntegracaoCompleta() {
    CXVDadosCR_IntegracaoMiddleware dados;
    dados.sRegistroJSON = "{\"descrição\":\"ação\"}";
    dados.sMensagemIntegracao = "linha 1\nlinha \"2\"\t\x01";
    dados.sJSONRetornoIntegracao = "\xff\xfe bytes";
    dados.regDmc = REG_XVDMC::Cria(1, 15, REG_XVDMA::Cria(2026, 11, 21));
    dados.regDmcIntegracaoOrigem = REG_XVDMC::Cria(1, 4294967295U, REG_XVDMA::Cria(2359, 12, 31));
    dados.regDmcMovimentoOrigem = REG_XVDMC::Cria(2, 7, REG_XVDMA::Cria(1848, 1, 1));
    dados.regDataHoraInclusao = REG_XVDMAHMSUTC::Cria(REG_XVDMA::Cria(2026, 11, 21), 86399);
    dados.uiChaveIntegracaoSistemaTerceiro = ~XVUInt64{0};
    dados.uiChaveRegistroSistemaTerceiro = 9007199254740993U;  // no double holds it
    dados.uiBaseDadosTerceiro = 3;
    dados.eTipoIntegracao = eXVSMiddleware_BuscaPedidos;
    dados.eStatusIntegracao = eXVSMiddleware_Sucesso;
    dados.eSistemaIntegracao = Mercos;
    dados.eTipoTransacao = eXVSMiddleware_Alteracao;
    dados.ulPonteiroFilial = 4294967295U;
    dados.ulPonteiroUsuarioInclusao = 2;
    dados.ulPonteiroUsuarioCancelamento = 3;
    dados.ulPonteiroAuxiliar = 4;
    dados.cReconsultarIdTerceiros = 1;
    dados.ucTipoPonteiroAuxiliar = 255;
    return dados;
}

TEST(RegistroJson, OQueSaiVoltaIgual) {
    const CXVDadosCR_IntegracaoMiddleware dados = IntegracaoCompleta();
    const XVJson json = XVRegistroJson::ParaJson(dados);
    EXPECT_EQ(json["regDmc"], std::to_string(dados.regDmc.uiValor));
    EXPECT_EQ(json["sDmc"], "20261121-15-1");
    EXPECT_EQ(json["eStatusIntegracao"], "eXVSMiddleware_Sucesso");
    EXPECT_EQ(json["regDataHoraAlteracaoStatus"], "");
    EXPECT_FALSE(json.contains("regJSONRetornoIntegracao"));
    CXVDadosCR_IntegracaoMiddleware volta;
    const SErroCampo erro = Le(json.dump(), &volta);
    ASSERT_EQ(erro.sMensagem, "") << erro.sCampo;
    EXPECT_EQ(XVRegistroJson::ParaJson(volta), json);
    EXPECT_EQ(volta.sJSONRetornoIntegracao, dados.sJSONRetornoIntegracao);
    EXPECT_EQ(volta.uiChaveRegistroSistemaTerceiro, dados.uiChaveRegistroSistemaTerceiro);
}

TEST(RegistroJson, JsonEmbutidoFicaComoEstaMenosOsEspacos) {
    CXVDadosCR_IntegracaoMiddleware dados;
    const SErroCampo erro =
        Le(R"( { "regRegistroJSON" : { "z" : 1.50 , "a" : [ 1e2, 12345678901234567890123, )"
           R"("é \" , \\" ] , "a2": "\u00e9" } ,)"
           R"( "regMensagemIntegracao":"texto \u00e9 \ud83d\ude00","regJSONRetornoIntegracao":[ ] } )",
           &dados);
    ASSERT_EQ(erro.sMensagem, "");
    EXPECT_EQ(dados.sRegistroJSON,
              R"({"z":1.50,"a":[1e2,12345678901234567890123,"é \" , \\"],"a2":"\u00e9"})");
    EXPECT_EQ(dados.sMensagemIntegracao, "texto é \xF0\x9F\x98\x80");
    EXPECT_EQ(dados.sJSONRetornoIntegracao, "[]");
}

TEST(RegistroJson, DizOCampoErrado) {
    EXPECT_EQ(CampoErrado(R"({"eStatus":1})"), "eStatus");
    EXPECT_EQ(CampoErrado(R"({"eStatusIntegracao":6})"), "eStatusIntegracao");
    EXPECT_EQ(CampoErrado(R"({"eStatusIntegracao":true})"), "eStatusIntegracao");
    EXPECT_EQ(CampoErrado(R"({"eStatusIntegracao":null})"), "eStatusIntegracao");
    EXPECT_EQ(CampoErrado(R"({"ulPonteiroFilial":4294967296})"), "ulPonteiroFilial");
    EXPECT_EQ(CampoErrado(R"({"ulPonteiroFilial":1.0})"), "ulPonteiroFilial");
    EXPECT_EQ(CampoErrado(R"({"ulPonteiroFilial":{}})"), "ulPonteiroFilial");
    EXPECT_EQ(CampoErrado(R"({"ucTipoPonteiroAuxiliar":-1})"), "ucTipoPonteiroAuxiliar");
    EXPECT_EQ(CampoErrado(R"({"regRegistroJSON":12})"), "regRegistroJSON");
    EXPECT_EQ(CampoErrado(R"({"regRegistroJSON":"a\u0000b"})"), "regRegistroJSON");
    EXPECT_EQ(CampoErrado(R"({"regRegistroJSON_base64":"Zg="})"), "regRegistroJSON_base64");
    EXPECT_EQ(CampoErrado(R"({"eTipoIntegracao_base64":"Zg=="})"), "eTipoIntegracao_base64");
    EXPECT_EQ(CampoErrado(R"({"regDataHoraInclusao":"2026-13-01"})"), "regDataHoraInclusao");
    EXPECT_EQ(CampoErrado(R"({"regDmc":"20260231-1-1"})"), "regDmc");
    EXPECT_EQ(CampoErrado(R"({"sDmc":"20261121-1-1","regDmc":"20261121-2-1"})"), "regDmc");
    EXPECT_EQ(CampoErrado(R"({"sDmc":"20261121-1-1","regDmc":"20261121-1-1"})"), "nenhum");
    EXPECT_EQ(CampoErrado(R"({"regRegistroJSON":"a","regRegistroJSON_base64":"Zg=="})"),
              "regRegistroJSON_base64");
    EXPECT_EQ(CampoErrado(R"({"cReconsultarIdTerceiros":true,"regDmc":null,"regMensagemIntegracao":null})"),
              "nenhum");
}

TEST(LinhaJson, RecusaOQueNaoEUmObjeto) {
    std::vector<SMembroJson> listaMembros;
    for (const char* pszLinha :
         {"", "[1]", "12", "{", "{\"a\":1", "{\"a\":1}}", "{\"a\":}", "{'a':1}", "{\"a\":1,}",
          "{\"a\":\"\xff\"}", "{\"a\":1e999}", "{\"a\":1}{\"b\":2}", "{\"a\":1,\"\\u0061\":2}"})
        EXPECT_NE(XVSeparaMembros(pszLinha, &listaMembros), "") << pszLinha;
    EXPECT_EQ(XVSeparaMembros("\xEF\xBB\xBF{ }", &listaMembros), "");
    EXPECT_TRUE(listaMembros.empty());
}

TEST(LinhaJson, AninhamentoFundoNaoEsgotaAPilha) {
    const std::string sFundo = std::string(1000000, '[') + std::string(1000000, ']');
    CXVDadosCR_IntegracaoMiddleware dados;
    EXPECT_EQ(Le("{\"regRegistroJSON\":" + sFundo + "}", &dados).sMensagem, "");
    EXPECT_EQ(dados.sRegistroJSON, sFundo);
    EXPECT_NE(Le("{\"regRegistroJSON\":" + sFundo, &dados).sMensagem, "");
}

}  // namespace
