#include <gtest/gtest.h>

#include "contract/XVCR_Enumeracoes.h"
#include "tools/xvcr/text/XVBase64.h"
#include "tools/xvcr/text/XVLeituraValor.h"

namespace {

XVUInt Enumeracao(EEnumeracao eEnumeracao, std::string_view sTexto) {
    XVUInt ulValor = 999;
    return XVEnumeracoesTexto::Busca(eEnumeracao, sTexto, &ulValor) ? ulValor : 999;
}

TEST(Enumeracoes, AceitaNomeInteiroCurtoENumero) {
    EXPECT_EQ(Enumeracao(EEnumeracao::eStatusIntegracao, "eXVSMiddleware_Pendente"), eXVSMiddleware_Pendente);
    EXPECT_EQ(Enumeracao(EEnumeracao::eStatusIntegracao, "pENDENTE"), eXVSMiddleware_Pendente);
    EXPECT_EQ(Enumeracao(EEnumeracao::eStatusIntegracao, "5"), eXVSMiddleware_Cancelado);
    EXPECT_EQ(Enumeracao(EEnumeracao::eSistemaIntegracao, "officialbank"), OfficialBank);
    EXPECT_EQ(Enumeracao(EEnumeracao::eSistemaIntegracao, "Nenhum"), Tipo_Nenhum);
    EXPECT_EQ(Enumeracao(EEnumeracao::eTipoTransacao, "TipoTransacaoNenhum"),
              XVSMiddleware_TipoTransacaoNenhum);
    EXPECT_EQ(Enumeracao(EEnumeracao::eTipoIntegracao, "MovimentoContasPagarRemessaOnline"), 17U);
}

TEST(Enumeracoes, RecusaValorSemNome) {
    for (const char* pszTexto : {"", "6", "-1", "1.0", "Pendent", "eXVSMiddleware_", "4294967297"})
        EXPECT_EQ(Enumeracao(EEnumeracao::eStatusIntegracao, pszTexto), 999U) << pszTexto;
    EXPECT_EQ(Enumeracao(EEnumeracao::eSistemaIntegracao, "1"), 999U);
    EXPECT_EQ(Enumeracao(EEnumeracao::eSistemaIntegracao, "4"), 999U);
    EXPECT_EQ(XVEnumeracoesTexto::GetNomeCurto(EEnumeracao::eSistemaIntegracao, 4), "4");
}

TEST(LeituraValor, NumerosNoLimiteEAlemDele) {
    XVByte ucValor = 7;
    EXPECT_EQ(XVLeituraValor::Le("255", &ucValor), "");
    EXPECT_EQ(ucValor, 255);
    EXPECT_NE(XVLeituraValor::Le("256", &ucValor), "");
    EXPECT_EQ(ucValor, 255) << "a refused value must not be taken";
    XVUInt64 uiValor = 0;
    EXPECT_EQ(XVLeituraValor::Le("18446744073709551615", &uiValor), "");
    EXPECT_EQ(uiValor, ~XVUInt64{0});
    for (const char* pszTexto : {"18446744073709551616", "", " 1", "1 ", "-1", "+1", "0x10", "1e3"})
        EXPECT_NE(XVLeituraValor::Le(pszTexto, &uiValor), "") << pszTexto;
}

TEST(LeituraValor, DmcNasDuasFormas) {
    const REG_XVDMC regEsperado = REG_XVDMC::Cria(1, 15, REG_XVDMA::Cria(2026, 11, 21));
    REG_XVDMC regDmc;
    EXPECT_EQ(XVLeituraValor::Le("20261121-15-1", &regDmc), "");
    EXPECT_EQ(regDmc, regEsperado);
    regDmc = {};
    EXPECT_EQ(XVLeituraValor::Le(std::to_string(regEsperado.uiValor), &regDmc), "");
    EXPECT_EQ(regDmc, regEsperado);
    EXPECT_EQ(XVLeituraValor::Le("0", &regDmc), "");
    EXPECT_TRUE(regDmc.EhNulo());
    for (const char* pszTexto :
         {"", "20260230-1-1", "20261121-0-1", "20261121-1-4", "20261121-1", "abc", "18446744073709551615"})
        EXPECT_NE(XVLeituraValor::Le(pszTexto, &regDmc), "") << pszTexto;
}

TEST(LeituraValor, DataHoraIsoEmpacotadaENenhuma) {
    const REG_XVDMAHMSUTC regEsperada = REG_XVDMAHMSUTC::Cria(REG_XVDMA::Cria(2026, 11, 21), 47109);
    REG_XVDMAHMSUTC regDataHora;
    EXPECT_EQ(XVLeituraValor::Le("2026-11-21T13:05:09Z", &regDataHora), "");
    EXPECT_EQ(regDataHora, regEsperada);
    regDataHora = {};
    EXPECT_EQ(XVLeituraValor::Le(std::to_string(regEsperada.uiValor), &regDataHora), "");
    EXPECT_EQ(regDataHora, regEsperada);
    EXPECT_EQ(XVLeituraValor::Le("", &regDataHora), "");
    EXPECT_TRUE(regDataHora.EhNula());
    for (const char* pszTexto :
         {"2026-02-30", "2026-11-21T24:00", "86400", "21/11/2026", "2026-11-21T13:05:09+01"})
        EXPECT_NE(XVLeituraValor::Le(pszTexto, &regDataHora), "") << pszTexto;
}

TEST(Base64, VaiEVoltaComQualquerByte) {
    std::string sBytes;
    for (int i = 0; i < 256; ++i) {
        std::string sVolta;
        ASSERT_TRUE(XVBase64::Decodifica(XVBase64::Codifica(sBytes), &sVolta)) << i;
        EXPECT_EQ(sVolta, sBytes);
        sBytes += static_cast<char>(i);
    }
    EXPECT_EQ(XVBase64::Codifica("f"), "Zg==");
    EXPECT_EQ(XVBase64::Codifica("foob"), "Zm9vYg==");
    EXPECT_EQ(XVBase64::Codifica("fooba"), "Zm9vYmE=");
}

TEST(Base64, RecusaOQueNaoECanonico) {
    std::string sVolta = "antes";
    for (const char* pszTexto : {"Zg", "Zg=", "Zg===", "Zh==", "Z=g=", "====", "Zm9v!mFy"})
        EXPECT_FALSE(XVBase64::Decodifica(pszTexto, &sVolta)) << pszTexto;
    EXPECT_EQ(sVolta, "antes");
}

}  // namespace
