// What the store leaves on disk, byte for byte.
#include "tests/middleware/XVCenarioLoja.h"

namespace {

using CXVEsquemaTeste = CXVCenarioLoja;

TEST_F(CXVEsquemaTeste, RegistrosTextosECabecalhosDeUmaIntegracaoFicamNoSeuLugar) {
    TLoja pLoja = Abre();
    ASSERT_NE(pLoja, nullptr);
    CXVIntegracaoTeste integracao(0x1122334455667788ULL, Mercos, eXVSMiddleware_Sucesso);
    integracao.Textos("{\"pão\":1}", "aceito", "{\"id\":9}");
    integracao.reg.regDmcIntegracaoOrigem = {XVChaveDmc(XVDma(2022, 12, 31), 3)};
    integracao.reg.regDataHoraAlteracaoStatus = {XVDataHora(XVDma(2024, 2, 29), 23, 59)};
    integracao.reg.uiBaseDadosTerceiro = 0x0102030405060708ULL;
    integracao.reg.ulPonteiroFilial = 11;
    integracao.reg.ulPonteiroUsuarioInclusao = 12;
    integracao.reg.ulPonteiroUsuarioCancelamento = 13;
    integracao.reg.cReconsultarIdTerceiros = 1;
    integracao.reg.ucTipoPonteiroAuxiliar = 5;
    integracao.reg.ulPonteiroAuxiliar = 0xA1B2C3D4;
    integracao.reg.uiChaveRegistroSistemaTerceiro = 999;  // stored nowhere
    const REG_XVDMC regDmc = Grava(*pLoja, integracao);
    EXPECT_EQ(regDmc.uiValor, XVChaveDmc(k_uiHoje, 1));

    const CXVBytes integ = CXVBytes()
                               .U64(XVChaveDmc(XVDma(2022, 12, 31), 3))
                               .U64(XVChaveDmc(XVDma(2023, 1, 2), 5, 2))
                               .U64(XVDataHora(k_uiHoje, 12))
                               .U64(XVDataHora(XVDma(2024, 2, 29), 23, 59))
                               .U64(0x0102030405060708ULL)
                               .U32(9)
                               .U32(1)
                               .U32(1)
                               .U32(1)
                               .U32(1)
                               .U32(11)
                               .U32(12)
                               .U32(13)
                               .U8(1)
                               .U8(5)
                               .U32(0xA1B2C3D4)
                               .Zeros(10);
    ASSERT_EQ(integ.Str().size(), 88U);
    const CXVBytes index = CXVBytes().U64(0x1122334455667788ULL).U64(XVChaveDmc(k_uiHoje, 1)).U32(16).U32(3);
    EXPECT_EQ(Conteudo("CRINTEGMID20240315.dat"),
              XVArquivoDoTeste({"CRINTEGMID20240315.dat", 1}, integ.Str()));
    EXPECT_EQ(Conteudo("CRINDEXINTEG.dat"), XVArquivoDoTeste({"CRINDEXINTEG.dat", 1}, index.Str()));
    EXPECT_EQ(Conteudo("CRINTEGMIDJSON20240315.dat"),
              XVArquivoDoTeste({"CRINTEGMIDJSON20240315.dat", 1}, CXVBytes().Texto("{\"pão\":1}").Str()));
    EXPECT_EQ(Conteudo("CRINTEGMIDMENS20240315.dat"),
              XVArquivoDoTeste({"CRINTEGMIDMENS20240315.dat", 1}, CXVBytes().Texto("aceito").Str()));
    EXPECT_EQ(Conteudo("CRINTEGMIDJSONRET20240315.dat"),
              XVArquivoDoTeste({"CRINTEGMIDJSONRET20240315.dat", 1}, CXVBytes().Texto("{\"id\":9}").Str()));
}

TEST_F(CXVEsquemaTeste, MapaDataHoraEVersaoTemSeusLeiautes) {
    TLoja pLoja = Abre();
    ASSERT_NE(pLoja, nullptr);
    ASSERT_EQ(pLoja->GravaChaveRegistroTelvoParaTerceiro({77, {XVChaveDmc(k_uiHoje, 4, 2)}, 3, 6, 16, {}}),
              S_OK);
    ASSERT_EQ(pLoja->GravaDataHoraIntegracaoTerceiro({{XVDataHora(k_uiHoje, 8)}, 9, 2, 1, {}}), S_OK);
    EXPECT_EQ(Dados(Conteudo("CRCHAVEREGTER.dat")),
              CXVBytes().U64(77).U64(XVChaveDmc(k_uiHoje, 4, 2)).U64(3).U32(6).U32(16).U64(0).Str());
    EXPECT_EQ(Dados(Conteudo("CRDTHRINTEG.dat")),
              CXVBytes().U64(XVDataHora(k_uiHoje, 8)).U32(9).U32(2).U32(1).Zeros(12).Str());
    EXPECT_EQ(Dados(Conteudo("CRMIDDLEWAREVS.dat")), CXVBytes().U16(5).Zeros(14).Str());
}

}  // namespace
