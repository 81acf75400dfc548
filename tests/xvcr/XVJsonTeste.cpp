#include <gtest/gtest.h>

#include <sstream>

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

    // A document in a string of a document: what looks ahead at each escape needs hours.
    std::string sEscapes;
    for (int i = 0; i < 1 << 23; ++i) sEscapes += "\\/";
    ASSERT_EQ(Le(R"({"regRegistroJSON":[")" + sEscapes + "\" ]}", &dados).sMensagem, "");
    EXPECT_TRUE(dados.sRegistroJSON == "[\"" + sEscapes + "\"]");
}

TEST(RegistroJson, ObjetoDeUmDmcEOMesmoComoTexto) {
    for (const REG_XVDMC regDmc : {REG_XVDMC{}, REG_XVDMC{6439443779698049025U}, REG_XVDMC{~XVUInt64{0}}}) {
        XVJson json;
        XVRegistroJson::Inclui(json, "regDmc", regDmc);
        std::string sTexto;
        XVRegistroJson::AnexaObjeto(sTexto, regDmc);
        EXPECT_EQ(sTexto, json.dump());
    }
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
    EXPECT_EQ(CampoErrado(R"({"eTipoIntegracao_base64":"BuscaPedidos"})"), "eTipoIntegracao_base64");
    EXPECT_EQ(CampoErrado(R"({"regDataHoraInclusao":"2026-13-01"})"), "regDataHoraInclusao");
    EXPECT_EQ(CampoErrado(R"({"regDmc":"20260231-1-1"})"), "regDmc");
    EXPECT_EQ(CampoErrado(R"({"sDmc":"20261121-1-1","regDmc":"20261121-2-1"})"), "regDmc");
    EXPECT_EQ(CampoErrado(R"({"sDmc":"20261121-1-1","regDmc":"20261121-1-1"})"), "nenhum");
    EXPECT_EQ(CampoErrado(R"({"regRegistroJSON":"a","regRegistroJSON_base64":"Zg=="})"),
              "regRegistroJSON_base64");
    EXPECT_EQ(CampoErrado(R"({"cReconsultarIdTerceiros":true,"regDmc":null,"regMensagemIntegracao":null})"),
              "nenhum");
}

// A null empties what was there, and a logical value is one of two.
TEST(RegistroJson, NuloEsvaziaELogicoValeUmOuZero) {
    CXVDadosCR_IntegracaoMiddleware dados, vazios;
    dados.regDmc.uiValor = dados.regDataHoraInclusao.uiValor = 5;
    dados.sMensagemIntegracao = "antes";
    dados.cReconsultarIdTerceiros = dados.ucTipoPonteiroAuxiliar = 7;
    vazios.ucTipoPonteiroAuxiliar = 1;
    ASSERT_EQ(Le(R"({"regDmc":null,"regDataHoraInclusao":null,"regMensagemIntegracao":null,)"
                 R"("cReconsultarIdTerceiros":false,"ucTipoPonteiroAuxiliar":true})",
                 &dados)
                  .sMensagem,
              "");
    EXPECT_TRUE(dados == vazios);
}

TEST(LinhaJson, RecusaOQueNaoEUmObjetoEDizOByte) {
    std::vector<SMembroJson> listaMembros;
    for (const char* pszLinha : {"[1]", "12", "{\"a\":1,\"\\u0061\":2}"}) {
        EXPECT_NE(XVSeparaMembros(pszLinha, &listaMembros), "") << pszLinha;
        EXPECT_FALSE(XVSeparaMembros(pszLinha, &listaMembros).starts_with("JSON")) << pszLinha;
    }
    std::istringstream fluxo(R"({ {"a":1 {"a":1}} {"a":} {'a':1} {"a":1,} {"a":1}{"b":2} {"a":[1} {"a":[1,]}
        {"a":{1:2}} {"a":tru} {"a":01} {"a":1.} {"a":-} {"a":1e} {"a":"\x"} {"a":"\u00g0"} {"a":"\ud83d"}
        {"a":"\ud83d\u0041"} {"a":"\ude00"} {"a":1,"a":2,} )"
                             "{\"a\":\"\x1f\"} {\"a\":\"123\x1f"
                             "45678\"} {\"a\":\"0123456789\x1f"
                             "0123456789abcdef\"} {\"a\":\"\xff\"}");
    for (std::string sLinha; fluxo >> sLinha;)
        EXPECT_TRUE(XVSeparaMembros(sLinha, &listaMembros).starts_with("JSON inválido no byte ")) << sLinha;
    EXPECT_EQ(XVSeparaMembros("", &listaMembros), "JSON inválido no byte 1");
    EXPECT_EQ(XVSeparaMembros("{\"a\":[1,]}", &listaMembros), "JSON inválido no byte 9");
    EXPECT_EQ(XVSeparaMembros("{\"a\":1e999}", &listaMembros), "JSON com um número fora da faixa");
    EXPECT_EQ(XVSeparaMembros("{\"a\":1}" + std::string(1, '\0'), &listaMembros), "JSON inválido");
    EXPECT_EQ(XVSeparaMembros("\xEF\xBB\xBF{ }", &listaMembros), "");
    EXPECT_TRUE(listaMembros.empty());
    const std::string sLinha =
        R"({"a":[true,false,null,{},[]],"b":-0.5E+3,"c":"\\\"\/\b\ud83d\ude00\u20ac"} )";
    EXPECT_EQ(XVSeparaMembros(sLinha, &listaMembros), "");
    ASSERT_EQ(listaMembros.size(), 3U);
    EXPECT_EQ(listaMembros[0].sValor, "[true,false,null,{},[]]");
    EXPECT_EQ(listaMembros[1].sValor, "-0.5E+3");
    EXPECT_EQ(listaMembros[2].GetTexto(), "\\\"/\b\xF0\x9F\x98\x80\xE2\x82\xAC");
}

TEST(LinhaJson, CadaEscapeECadaNumeroNoLimite) {
    std::vector<SMembroJson> listaMembros;
    ASSERT_EQ(XVSeparaMembros(
                  R"({"a":"\"\\\/\b\f\n\r\t\u0041\u007f\u0080\u07ff\u0800\uffff\ud800\udc00\udbff\udfff"})",
                  &listaMembros),
              "");
    EXPECT_EQ(listaMembros.at(0).GetTexto(),
              "\"\\/\b\f\n\r\tA\x7f\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
    for (const char* pszNumero : {"0", "-0", "10", "1.05", "1e308", "1E-5", "-1.5e+3"})
        EXPECT_EQ(XVSeparaMembros(std::string("{\"a\":") + pszNumero + '}', &listaMembros), "") << pszNumero;
    for (const auto& [cDigito, pszErro] :
         {std::pair{'1', "JSON com um número fora da faixa"}, {'0', "JSON inválido no byte 7"}})
        EXPECT_EQ(XVSeparaMembros("{\"a\":" + std::string(310, cDigito) + '}', &listaMembros), pszErro);
    std::string sMembros = "{\"m0\":0";
    for (int i = 1; i < 256; ++i) sMembros += ",\"m" + std::to_string(i) + "\":1";
    EXPECT_EQ(XVSeparaMembros(sMembros + "}", &listaMembros), "");
    EXPECT_EQ(listaMembros.size(), 256U);
    EXPECT_EQ(XVSeparaMembros(sMembros + ",\"x\":1}", &listaMembros), "campos demais");
}

TEST(LinhaJson, AninhamentoFundoNaoEsgotaAPilha) {
    const std::string sFundo = std::string(1000000, '[') + std::string(1000000, ']');
    CXVDadosCR_IntegracaoMiddleware dados;
    EXPECT_EQ(Le("{\"regRegistroJSON\":" + sFundo + "}", &dados).sMensagem, "");
    EXPECT_EQ(dados.sRegistroJSON, sFundo);
    EXPECT_NE(Le("{\"regRegistroJSON\":" + sFundo, &dados).sMensagem, "");
}

}  // namespace
