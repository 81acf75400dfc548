// A store on a device without one free byte: it opens, is searched and read; the first write says that the
// device is full; with space given back it works.
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/middleware/XVCenarioVarredura.h"

namespace {

class CXVDiscoCheio : public CXVCenarioLoja {
  protected:
    CXVDiscoCheio() {
        const TLoja pLoja = Abre();
        EXPECT_TRUE(pLoja != nullptr && XVPovoaLoja(*pLoja, [&](unsigned uiDia) { SetDia(uiDia); }));
        m_retrato = XVRetrataLoja(*pLoja);
        EXPECT_EQ(pLoja->Finaliza(), S_OK);
    }
    // What is there fits, and only so much more.
    void Enche(XVUInt64 uiLivres = 0) {
        XVUInt64 uiOcupado = 0;
        for (const auto& [sCaminho, rArquivo] : m_Arquivos.Retrata()) uiOcupado += rArquivo.sConteudo.size();
        m_Arquivos.LimitaEspaco(uiOcupado + uiLivres);
    }
    HRESULT Inclui(CBaseMiddleware& rLoja, XVUInt64 uiChave) {
        CXVIntegracaoTeste integracao(uiChave);
        REG_XVDMC regDmc;
        return rLoja.GravaIntegracao(&regDmc, integracao.Textos("{\"a\":1}", "mensagem", "{}").Ptr());
    }
    static std::string Diferenca(const TRetratoLoja& rEsperado, CBaseMiddleware& rLoja) {
        return XVDiferenca(rEsperado, XVRetrataLoja(rLoja));
    }

    TRetratoLoja m_retrato;
};

// Not even a name can be created: there is no journal, and so nothing is recorded.
TEST_F(CXVDiscoCheio, AbreBuscaELeTambemQuandoODiarioNaoPodeSerCriado) {
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(falhas);
    falhas.SetFiltro([](const std::string& sCaminho) { return sCaminho.ends_with(".srk"); });
    falhas.Programa(
        {.eOperacao = EOperacaoArquivo::eAbre, .bPermanente = true, .eCausa = ECausaArquivo::eDiscoCheio});
    const TLoja pLoja = Abre();
    ASSERT_NE(pLoja, nullptr);
    EXPECT_EQ(Diferenca(m_retrato, *pLoja), "");
    EXPECT_EQ(Inclui(*pLoja, 77), eDiskFull);
    EXPECT_EQ(Diferenca(m_retrato, *pLoja), "");
    EXPECT_GT(falhas.GetFalhasOcorridas(), 0U) << "the journal was asked for";
    falhas.Limpa();
    EXPECT_EQ(Inclui(*pLoja, 78), S_OK);
}

// However much space there is, an operation takes place whole or not at all. The journal has its place
// already: what is scarce is the place of the files.
TEST_F(CXVDiscoCheio, CadaQuantidadeDeBytesLivres) {
    const auto inicial = m_Arquivos.Retrata();
    const XVUInt64 uiSalto = XVSaltoVarredura(13, 65);
    bool bCoube = false;
    for (XVUInt64 uiLivres = 0; !bCoube; uiLivres += uiSalto) {
        SCOPED_TRACE(uiLivres);
        ASSERT_LT(uiLivres, 10000U);
        m_Arquivos.LimitaEspaco(std::nullopt);
        m_Arquivos.Restaura(inicial);
        SetDia(15);
        const TLoja pLoja = Abre();
        ASSERT_EQ(Inclui(*pLoja, 77), S_OK);
        const TRetratoLoja antes = XVRetrataLoja(*pLoja);
        Enche(uiLivres);
        SetDia(16);
        const HRESULT hr = Inclui(*pLoja, 78);
        bCoube = SUCCEEDED(hr);
        const TRetratoLoja depois = XVRetrataLoja(*pLoja);
        if (!bCoube) {
            ASSERT_EQ(hr, eDiskFull);
            ASSERT_EQ(XVDiferenca(antes, depois), "");
        }
        ASSERT_EQ(pLoja->Finaliza(), S_OK);
        const TLoja pReaberta = Abre();
        ASSERT_NE(pReaberta, nullptr);
        ASSERT_EQ(Diferenca(depois, *pReaberta), "");
    }
}

// The first write after an opening takes the place of the journal, which may come to its end half-way.
TEST_F(CXVDiscoCheio, AbreBuscaELeSemEspacoERecusaAPrimeiraGravacao) {
    for (const XVUInt64 uiLivres : {0U, 1U, 32U, 4095U, 4096U, 4200U, 20000U}) {
        SCOPED_TRACE(uiLivres);
        m_Arquivos.LimitaEspaco(std::nullopt);
        TRetratoLoja antes;
        {
            const TLoja pLoja = Abre();
            ASSERT_NE(pLoja, nullptr);
            antes = XVRetrataLoja(*pLoja);
            ASSERT_EQ(pLoja->Finaliza(), S_OK);
        }
        Enche(uiLivres);
        const TLoja pLoja = Abre();
        ASSERT_NE(pLoja, nullptr);
        EXPECT_EQ(Diferenca(antes, *pLoja), "");
        const std::string sLogAntes = LogGeral();
        EXPECT_EQ(Inclui(*pLoja, 77), eDiskFull);
        EXPECT_EQ(Diferenca(antes, *pLoja), "");
        EXPECT_EQ(LogGeral(), sLogAntes);
        EXPECT_EQ(pLoja->Finaliza(), S_OK);
        const TLoja pReaberta = Abre();
        ASSERT_NE(pReaberta, nullptr);
        EXPECT_EQ(Diferenca(antes, *pReaberta), "");
        m_Arquivos.LimitaEspaco(std::nullopt);
        EXPECT_EQ(Inclui(*pReaberta, 78), S_OK);
    }
}

}  // namespace
