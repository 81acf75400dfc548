#include <gtest/gtest.h>

#include <optional>

#include "contract/XVCR_Enumeracoes.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tools/xvcr/text/XVBase64.h"
#include "tools/xvcr/text/XVErros.h"
#include "tools/xvcr/text/XVFonteBytes.h"
#include "tools/xvcr/text/XVLeituraValor.h"

namespace {

// None: refused, and the value that stood there was not touched.
template <class T, class... TQual>
std::optional<T> Le(std::string_view sTexto, TQual... eQual) {
    T valor{7};
    if (XVLeituraValor::Le(sTexto, eQual..., &valor).empty()) return valor;
    EXPECT_EQ(valor, T{7}) << sTexto;
    return std::nullopt;
}

TEST(LeituraValor, EnumeracaoPorNomeInteiroCurtoENumero) {
    const struct {
        EEnumeracao eEnumeracao;
        const char* pszTexto;
        std::optional<XVUInt> ulValor;
    } aCasos[] = {{EEnumeracao::eStatusIntegracao, "eXVSMiddleware_Pendente", eXVSMiddleware_Pendente},
                  {EEnumeracao::eStatusIntegracao, "pENDENTE", eXVSMiddleware_Pendente},
                  {EEnumeracao::eStatusIntegracao, "5", eXVSMiddleware_Cancelado},
                  {EEnumeracao::eSistemaIntegracao, "officialbank", OfficialBank},
                  {EEnumeracao::eSistemaIntegracao, "Nenhum", Tipo_Nenhum},
                  {EEnumeracao::eTipoTransacao, "TipoTransacaoNenhum", XVSMiddleware_TipoTransacaoNenhum},
                  {EEnumeracao::eTipoIntegracao, "MovimentoContasPagarRemessaOnline", 17},
                  {EEnumeracao::eSistemaIntegracao, "1", {}},
                  {EEnumeracao::eSistemaIntegracao, "4", {}}};
    for (const auto& r : aCasos) EXPECT_EQ(Le<XVUInt>(r.pszTexto, r.eEnumeracao), r.ulValor) << r.pszTexto;
    for (const char* pszTexto : {"", "6", "-1", "1.0", "Pendent", "eXVSMiddleware_", "4294967297"})
        EXPECT_FALSE(Le<XVUInt>(pszTexto, EEnumeracao::eStatusIntegracao)) << pszTexto;
    EXPECT_EQ(XVEnumeracoesTexto::GetNomeCurto(EEnumeracao::eSistemaIntegracao, 4), "4");
}

TEST(LeituraValor, NumerosNoLimiteEAlemDele) {
    EXPECT_EQ(Le<XVByte>("255"), 255);
    EXPECT_FALSE(Le<XVByte>("256"));
    EXPECT_EQ(Le<XVUInt64>("18446744073709551615"), ~XVUInt64{0});
    for (const char* pszTexto : {"18446744073709551616", "", " 1", "1 ", "-1", "+1", "0x10", "1e3"})
        EXPECT_FALSE(Le<XVUInt64>(pszTexto)) << pszTexto;
}

TEST(LeituraValor, DmcEDataHoraNasDuasFormasENenhuns) {
    const REG_XVDMC regDmc = REG_XVDMC::Cria(1, 15, REG_XVDMA::Cria(2026, 11, 21));
    EXPECT_EQ(Le<REG_XVDMC>("20261121-15-1"), regDmc);
    EXPECT_EQ(Le<REG_XVDMC>(std::to_string(regDmc.uiValor)), regDmc);
    EXPECT_EQ(Le<REG_XVDMC>("0"), REG_XVDMC{});
    for (const char* pszTexto :
         {"", "20260230-1-1", "20261121-0-1", "20261121-1-4", "20261121-1", "abc", "18446744073709551615"})
        EXPECT_FALSE(Le<REG_XVDMC>(pszTexto)) << pszTexto;
    const REG_XVDMAHMSUTC regDataHora = REG_XVDMAHMSUTC::Cria(REG_XVDMA::Cria(2026, 11, 21), 47109);
    EXPECT_EQ(Le<REG_XVDMAHMSUTC>("2026-11-21T13:05:09Z"), regDataHora);
    EXPECT_EQ(Le<REG_XVDMAHMSUTC>(std::to_string(regDataHora.uiValor)), regDataHora);
    EXPECT_EQ(Le<REG_XVDMAHMSUTC>(""), REG_XVDMAHMSUTC{});
    for (const char* pszTexto :
         {"2026-02-30", "2026-11-21T24:00", "86400", "21/11/2026", "2026-11-21T13:05:09+01"})
        EXPECT_FALSE(Le<REG_XVDMAHMSUTC>(pszTexto)) << pszTexto;
}

TEST(FonteBytes, TextoVaiAteOLimiteENaoAlem) {
    const CXVDiretorioTeste diretorio;
    diretorio.CriaArquivo("a", "abc");
    EXPECT_EQ(XVLeTudo(*XVAbreFonte(diretorio.Junta("a")), 3), "abc");
    EXPECT_THROW(XVLeTudo(*XVAbreFonte(diretorio.Junta("a")), 2), CXVErro);
}

TEST(Base64, VaiEVoltaComQualquerByteERecusaOQueNaoECanonico) {
    std::string sBytes;
    std::string sVolta;
    for (int i = 0; i < 256; ++i) {
        ASSERT_TRUE(XVBase64::Decodifica(XVBase64::Codifica(sBytes), &sVolta)) << i;
        EXPECT_EQ(sVolta, sBytes);
        sBytes += static_cast<char>(i);
    }
    EXPECT_EQ(XVBase64::Codifica("foob"), "Zm9vYg==");
    EXPECT_EQ(XVBase64::Codifica("fooba"), "Zm9vYmE=");
    for (const char* pszTexto : {"Zg", "Zg=", "Zg===", "Zh==", "Z=g=", "====", "Zm9v!mFy"})
        EXPECT_FALSE(XVBase64::Decodifica(pszTexto, &sVolta)) << pszTexto;
}

}  // namespace
