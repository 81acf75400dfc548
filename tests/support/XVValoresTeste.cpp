// CRC-64, the checksum of journal entries, dates, date-times, keys, and the rules for directories and company
// codes.
#include <gtest/gtest.h>

#include <limits>

#include "support/XVAmbiente.h"
#include "support/codes/XVCodigos.h"
#include "support/values/XVCrc64.h"
#include "support/values/XVDmc.h"
#include "support/values/XVSoma64.h"
#include "tests/harness/XVBytesBase.h"
#include "tests/support/XVBancadaTrace.h"

TEST(Crc64, ConfereComODefinidoEContinuaDoAnterior) {
    EXPECT_EQ(XVCrc64("123456789", 9), 0x2B9C7EE4E2780C8AULL);
    EXPECT_EQ(XVCrc64("", 0), 0U);
    std::string sTexto = "um texto de mais de oito bytes, para as tabelas todas";
    sTexto += sTexto + sTexto;
    for (std::size_t i = 0; i <= sTexto.size(); ++i) {
        const std::uint64_t uiInicio = XVCrc64(sTexto.data(), i);
        EXPECT_EQ(uiInicio, CrcBitABit(std::string_view(sTexto).substr(0, i))) << i;
        EXPECT_EQ(XVCrc64(sTexto.data() + i, sTexto.size() - i, uiInicio), CrcBitABit(sTexto)) << i;
        EXPECT_EQ(XVCrcInterno::PorTabelas(sTexto.data(), i, 0), uiInicio) << i;
    }
}

// Against values that another implementation computed from the description.
TEST(Soma64, ConfereComOutraImplementacao) {
    constexpr struct {
        std::size_t uiTamanho;
        std::uint64_t uiSoma;
    } k_aCasos[] = {{0, 0x324898C83F53FE0E},   {1, 0x42F5D7DB4468F83B},  {8, 0x5EC31A2AB950C3C6},
                    {63, 0x32F51E892E3DFC02},  {64, 0x6EB415D34AF8E562}, {65, 0x717EE0A6D2B24FFD},
                    {128, 0xB418000D20CC920B}, {200, 0xD86AF34B77637FE9}};
    for (const auto& rCaso : k_aCasos) {
        std::string s(rCaso.uiTamanho, '\0');
        for (std::size_t i = 0; i < s.size(); ++i) s[i] = static_cast<char>(i * 7 + 3);
        EXPECT_EQ(XVSoma64(s.data(), s.size()), rCaso.uiSoma) << rCaso.uiTamanho;
    }
}

TEST(Data, ValeSomenteODiaDoCalendario) {
    EXPECT_TRUE(REG_XVDMA::Cria(2024, 2, 29).EhValida());
    for (const REG_XVDMA dma : {REG_XVDMA::Cria(2023, 2, 29), REG_XVDMA::Cria(2100, 2, 29),
                                REG_XVDMA::Cria(2023, 13, 1), REG_XVDMA::Cria(2023, 4, 0), REG_XVDMA(),
                                REG_XVDMA(REG_XVDMA::Cria(2023, 4, 1).GetValor() | 1U << 18)})
        EXPECT_FALSE(dma.EhValida()) << dma.GetValor();
    EXPECT_EQ(REG_XVDMA::Cria(2026, 11, 21).ToChave(), 20261121U);
    EXPECT_EQ(REG_XVDMA().ToChave(), 0U);
    EXPECT_FALSE(REG_XVDMAHMSUTC::Cria(REG_XVDMA::Cria(2026, 1, 1), 86400).EhValida());
    EXPECT_TRUE(REG_XVDMAHMSUTC::Cria(REG_XVDMA::Cria(2026, 1, 1), 86399).EhValida());
}

TEST(DataHora, TextoISO8601VaiEVolta) {
    EXPECT_EQ(REG_XVDMAHMSUTC::De({2026, 11, 21, 13, 5, 9}).GetSegundos(), 13U * 3600 + 5 * 60 + 9);
    EXPECT_EQ(REG_XVDMAHMSUTC().ToISO8601(), "");
    REG_XVDMAHMSUTC lida;
    for (const auto& [pszTexto, pszInteiro] : {std::pair{"2026-11-21T13:05:09Z", "2026-11-21T13:05:09Z"},
                                               {"2026-11-21T13:05:09", "2026-11-21T13:05:09Z"},
                                               {"2026-11-21T13:05Z", "2026-11-21T13:05:00Z"},
                                               {"2026-11-21", "2026-11-21T00:00:00Z"}}) {
        ASSERT_TRUE(REG_XVDMAHMSUTC::DeISO8601(pszTexto, &lida)) << pszTexto;
        EXPECT_EQ(lida.ToISO8601(), pszInteiro);
    }
}

TEST(DataHora, TextoEstranhoERecusadoSemMudarOValor) {
    REG_XVDMAHMSUTC lida = REG_XVDMAHMSUTC::De({2020, 1, 1, 0, 0, 0});
    const REG_XVDMAHMSUTC antes = lida;
    for (const char* psz :
         {"", "2026", "2026-11", "2026-02-30", "2026-13-01", "1847-12-31", "2360-01-01", "2026-11-21T",
          "2026-11-21T24:00", "2026-11-21T10:60", "2026-11-21T10:00:60", "2026-11-21T10", "2026-11-21 10:00",
          "2026-11-21T10:00ZZ", "2026-1-1", "+026-11-21", "2026-11-21T10:00:0", "2026-10-33", "2026-17-01"})
        EXPECT_FALSE(REG_XVDMAHMSUTC::DeISO8601(psz, &lida)) << psz;
    EXPECT_EQ(lida, antes);
}

TEST(Dmc, CamposTextoEValidade) {
    const REG_XVDMA dma = REG_XVDMA::Cria(2359, 12, 31);
    const REG_XVDMC dmc = REG_XVDMC::Cria(1, 0xFFFFFFFFU, dma);
    EXPECT_EQ(dmc.GetTipo(), 1U);
    EXPECT_EQ(dmc.GetPonteiro(), 0xFFFFFFFFU);
    EXPECT_EQ(dmc.GetDma(), dma);
    EXPECT_TRUE(dmc.EhValido());
    EXPECT_EQ(dmc.ToString(), "23591231-4294967295-1");
    for (const REG_XVDMC& r : {dmc, REG_XVDMC::Cria(3, 15, REG_XVDMA::Cria(2026, 11, 21)), REG_XVDMC{},
                               REG_XVDMC{1U << 2}, REG_XVDMC{std::numeric_limits<XVUInt64>::max()}}) {
        REG_XVDMC lido;
        ASSERT_TRUE(REG_XVDMC::DeString(r.ToString(), &lido)) << r.ToString();
        EXPECT_TRUE(lido == r || (lido.EhNulo() && r.EhNulo())) << r.ToString();
    }
    EXPECT_TRUE(REG_XVDMC{2}.EhNulo());
    for (unsigned uiBit = 2; uiBit < 14; ++uiBit)
        EXPECT_FALSE((REG_XVDMC{dmc.uiValor | XVUInt64{1} << uiBit}).EhValido()) << uiBit;
    EXPECT_FALSE(REG_XVDMC::Cria(1, 0, dma).EhValido());
    EXPECT_FALSE(REG_XVDMC::Cria(1, 5, REG_XVDMA::Cria(2026, 2, 30)).EhValido());
}

TEST(Dmc, TextoEstranhoERecusadoSemMudarOValor) {
    REG_XVDMC dmc{77};
    for (const char* psz : {"",
                            "-",
                            "20261121-",
                            "20261121-0-1",
                            "20261121-1-4",
                            "20261121-1-",
                            "x",
                            "20260230-1-1",
                            "20261033-1-1",
                            "20261701-1-1",
                            "18471231-1-1",
                            "23600101-1-1",
                            "20261121-4294967297-1",
                            "4315228417-1-1",
                            "20261121-1-1-1",
                            "18446744073709551616",
                            "-5",
                            "20261121--1-1",
                            "120261121-1-1",
                            " 5"})
        EXPECT_FALSE(REG_XVDMC::DeString(psz, &dmc)) << psz;
    EXPECT_EQ(dmc.uiValor, 77U);
}

TEST(Ambiente, EmpresaNuncaSaiDoDiretorio) {
    for (const char* psz :
         {"A", "Acme_01-x", "COM0", "COM10", "CONTA", "01234567890123456789012345678901234567890123456"})
        EXPECT_TRUE(CAmbienteXV::EhEmpresaValida(psz)) << psz;
    for (const char* psz : {"", "..", ".", "a/b", "a\\b", "a b", "ação", "CON", "nul", "Aux", "prn", "com1",
                            "LPT9", "a.b", "C:", "012345678901234567890123456789012345678901234567"})
        EXPECT_FALSE(CAmbienteXV::EhEmpresaValida(psz)) << psz;
    EXPECT_FALSE(CAmbienteXV::EhEmpresaValida(std::string_view("A\0B", 3)));
}

TEST(Ambiente, DiretoriosVemDaRegistry) {
    CXVBancadaTrace bancada;
    std::string sDiretorio;
    for (const auto eModulo : {XV_DF, k_eModuloSemAuditoria}) {
        ASSERT_EQ(CAmbienteXV::GetPathDados(eModulo, "ACME", &sDiretorio), S_OK);
        EXPECT_EQ(sDiretorio, "/xv/ACME/DF");
    }
    EXPECT_EQ(CAmbienteXV::GetPathDados(XV_DF, "../x", &sDiretorio), E_INVALIDARG);
    EXPECT_EQ(sDiretorio, "");
    const struct {
        const char *pszPath, *pszPath64, *pszDiretorio;
    } aCasos[] = {{"/xv/", "/xv64\\", "/xv"}, {"", "/xv64\\", "/xv64"}, {"", "/", "/"}, {"", "", ""}};
    for (const auto& r : aCasos) {
        bancada.m_registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", r.pszPath);
        bancada.m_registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path_x64", r.pszPath64);
        const HRESULT hr = CAmbienteXV::GetDiretorioModulo(XV_DF, &sDiretorio);
        EXPECT_EQ(hr, *r.pszDiretorio == 0 ? eBadPath : S_OK);
        EXPECT_EQ(sDiretorio, r.pszDiretorio);
    }
}
