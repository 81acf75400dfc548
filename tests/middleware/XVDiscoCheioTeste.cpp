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
        m_inicial = m_Arquivos.Retrata();
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
    // Whether an operation, the first one after an opening or one after it, fits into so much space.
    bool Cabe(XVUInt64 uiLivres, bool bComDiario) {
        SCOPED_TRACE(testing::Message() << uiLivres << (bComDiario ? " beside the journal" : ""));
        m_Arquivos.LimitaEspaco(std::nullopt);
        m_Arquivos.Restaura(m_inicial);
        SetDia(15);
        if (!bComDiario) Enche(uiLivres);
        const TLoja pLoja = Abre();
        if (bComDiario) {
            EXPECT_EQ(Inclui(*pLoja, 76), S_OK);
            Enche(uiLivres);
        }
        const TRetratoLoja antes = XVRetrataLoja(*pLoja);
        EXPECT_EQ(bComDiario, antes != m_retrato);
        const std::string sLogAntes = LogGeral();
        SetDia(16);
        const HRESULT hr = Inclui(*pLoja, 77);
        const TRetratoLoja depois = XVRetrataLoja(*pLoja);
        if (FAILED(hr)) {
            EXPECT_EQ(hr, eDiskFull);
            EXPECT_EQ(XVDiferenca(antes, depois), "");
            EXPECT_EQ(LogGeral(), sLogAntes);
        }
        EXPECT_EQ(pLoja->Finaliza(), S_OK);
        const TLoja pReaberta = Abre();
        EXPECT_EQ(Diferenca(depois, *pReaberta), "");
        m_Arquivos.LimitaEspaco(std::nullopt);
        EXPECT_EQ(Inclui(*pReaberta, 78), S_OK);
        return SUCCEEDED(hr);
    }
    static std::string Diferenca(const TRetratoLoja& rEsperado, CBaseMiddleware& rLoja) {
        return XVDiferenca(rEsperado, XVRetrataLoja(rLoja));
    }

    TRetratoLoja m_retrato;
    CXVSistemaArquivosMemoria::TRetrato m_inicial;
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

// However much space there is, an operation takes place whole or not at all. It comes to its end in the place
// of the journal, which the first write after an opening takes, or in that of the files.
TEST_F(CXVDiscoCheio, CadaQuantidadeDeBytesLivresAntesEDepoisDoDiario) {
    for (const XVUInt64 uiLivres : {0U, 1U, 32U, 4095U, 4096U, 4200U, 20000U})
        EXPECT_FALSE(Cabe(uiLivres, false)) << uiLivres;
    XVUInt64 uiLivres = 0;
    for (; !HasFailure() && !Cabe(uiLivres, true); uiLivres += XVSaltoVarredura(13, 65))
        ASSERT_LT(uiLivres, 10000U);
}

}  // namespace
