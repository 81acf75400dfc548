// Creation control: what is listed, when, and what a missing listed file means.
#include "core/xvdatabase/XVDataBaseUtil.h"
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

using T = std::vector<std::string>;

class Controle : public CXVCenarioBanco {
  protected:
    void CriaBom(const std::string& sNome) { Cria(sNome, ArquivoComCabecalho(sNome, "")); }
    T Listados() { return Existe(k_pszControle) ? LeTextos(k_pszControle) : T{}; }
};

// A name in another case, a file that somebody deletes meanwhile, a list that is being written, a directory.
TEST_F(Controle, NomeNaListaEOQueHaNoDiretorio) {
    Cria(k_pszControle, Prefixado("a.DAT") + Prefixado("B.dat"));
    CriaBom("A.dat");
    int iUsos = 0;
    m_Falhas.SetFiltro([&](const std::string& s) {
        if (s.ends_with("A.dat") && ++iUsos == 2) m_Arquivos.Apaga(s).Ignora();
        return false;
    });
    EXPECT_EQ(CXVDataBaseUtil::DeletaArquivo(&m_Dono, XV_DF, "A.dat", CXVDataBaseUtil::eRemoveDoControle),
              S_OK);
    EXPECT_GT(iUsos, 1);
    m_Falhas.SetFiltro({});
    EXPECT_EQ(Listados(), T{"B.dat"});

    CriaBom("B.dat");
    std::unique_ptr<IXVArquivo> pEscritor = Segura(k_pszControle);
    EXPECT_EQ(Tenta<CXVFileTeste>("B.dat"), S_OK);
    pEscritor.reset();

    ASSERT_TRUE(m_Arquivos.CriaDiretorio(PastaDados("D.dat")).Ok());
    EXPECT_NE(Tenta<CXVFileTeste>("D.dat"), S_OK);
    EXPECT_EQ(Listados(), T{"B.dat"});

    // What is not told is neither there nor absent.
    CriaBom("E.dat");
    m_Falhas.SetFiltro([](const std::string& s) { return s.ends_with("E.dat"); });
    bool bHouveFalha = true;
    XVUInt64 uiNumero = 1;
    for (; bHouveFalha; ++uiNumero) {
        Cria(k_pszControle, Prefixado("B.dat"));
        m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eConsulta, .uiNumero = uiNumero});
        const HRESULT hr = Tenta<CXVFileTeste>("E.dat");
        bHouveFalha = m_Falhas.GetFalhasOcorridas() > 0;
        m_Falhas.Limpa();
        EXPECT_EQ(hr, bHouveFalha ? eAccessDenied : S_OK) << uiNumero;
        EXPECT_EQ(Listados().size(), bHouveFalha ? 1U : 2U) << uiNumero;
    }
    EXPECT_GT(uiNumero, 2U) << "the sweep must have met the opening";
}

TEST_F(Controle, FalhaNaRemocaoNaoDeixaCopia) {
    CriaBom("A.dat");
    const std::string sLista = Prefixado("A.dat") + Prefixado("B.dat");
    Cria(k_pszControle, sLista);
    m_Falhas.SetFiltro([](const std::string& s) { return s.find("FILE_CTRL") != std::string::npos; });
    for (const EOperacaoArquivo eOperacao :
         {EOperacaoArquivo::eGrava, EOperacaoArquivo::eSincroniza, EOperacaoArquivo::eSubstitui}) {
        m_Falhas.Programa(
            {.eOperacao = eOperacao, .bPermanente = true, .eCausa = ECausaArquivo::eDiscoCheio});
        CXVCapturaTrace captura;
        EXPECT_NE(CXVDataBaseUtil::DeletaArquivo(&m_Dono, XV_DF, "A.dat", CXVDataBaseUtil::eRemoveDoControle),
                  S_OK);
        EXPECT_FALSE(Existe("XVDATABASE_FILE_CTRL.tra"));
        EXPECT_EQ(Le(k_pszControle), sLista);
    }
    m_Falhas.Limpa();
    // One that is there already is somebody else's.
    Cria("XVDATABASE_FILE_CTRL.tra", "outro");
    EXPECT_EQ(CXVDataBaseUtil::DeletaArquivo(&m_Dono, XV_DF, "A.dat", CXVDataBaseUtil::eRemoveDoControle),
              E_XVCR_ARQUIVO_TRA_ENCONTRADO);
    EXPECT_EQ(Le("XVDATABASE_FILE_CTRL.tra"), "outro");
    EXPECT_TRUE(Existe("A.dat"));
}

TEST_F(Controle, MarcaDoDiretorioEEsperadaERecusadaComTexto) {
    CriaBom("A.dat");
    std::unique_ptr<IXVMarcaDiretorio> pMarca;
    ASSERT_TRUE(m_Arquivos.MarcaDiretorio(PastaDados(), "DFXXMARCA1", pMarca).Ok());
    CXVCapturaTrace captura;
    EXPECT_EQ(Tenta<CXVFileTeste>("A.dat"), eSharingViolation);
    EXPECT_EQ(m_Relogio.GetMilissegundosDormidos(), 499U * 10);
    ASSERT_FALSE(captura.GetFalhas().empty());
    EXPECT_NE(captura.GetFalhas().front().sMensagem.find("iRetorno = "), std::string::npos);
    m_Relogio.SetAoDormir([&](XVUInt64) { pMarca.reset(); });
    EXPECT_EQ(Tenta<CXVFileTeste>("A.dat"), S_OK);
    m_Relogio.SetAoDormir({});
    EXPECT_EQ(Listados(), T{"A.dat"});
}

// While one opener lists a name, or takes one off the list, nobody else has the mark; and what another has
// listed between the first look and the mark is not listed again.
TEST_F(Controle, ListaMudaSoSobAMarcaENenhumNomeEntraDuasVezes) {
    for (const bool bDesabilitado : {false, true}) {
        CriaBom("A.dat");
        const std::string sLista =
            bDesabilitado ? Prefixado("A.dat") + Prefixado("B.dat") : Prefixado("B.dat");
        Cria(k_pszControle, sLista);
        int iLivres = 0;  // openings and other uses of the list without the mark
        int iMarcadas = 0;
        bool bMarcada = false;
        m_Falhas.SetFiltro([&](const std::string& s) {
            if (s.find("FILE_CTRL") == std::string::npos) return false;
            std::unique_ptr<IXVMarcaDiretorio> pMarca;
            const bool bLivre = m_Arquivos.MarcaDiretorio(PastaDados(), "DFXXMARCA1", pMarca).Ok();
            ++(bLivre ? iLivres : iMarcadas);
            if (!bLivre && !bMarcada && !bDesabilitado) Cria(k_pszControle, sLista + Prefixado("a.DAT"));
            bMarcada = bMarcada || !bLivre;
            return false;
        });
        CXVDataBase xvDB(XV_DF);
        if (bDesabilitado) xvDB.DesabilitaControleCriacaoArquivos();
        CXVFileTeste xvFile("A.dat", &xvDB);
        EXPECT_EQ(xvDB.Inicializa(&m_Dono), S_OK);
        EXPECT_EQ(xvDB.Finaliza(), S_OK);
        m_Falhas.SetFiltro({});
        EXPECT_GT(iLivres, 0) << "the first look needs no mark";
        EXPECT_GT(iMarcadas, 0);
        EXPECT_EQ(Listados(), bDesabilitado ? T{"B.dat"} : (T{"B.dat", "a.DAT"}));
        EXPECT_FALSE(Existe("XVDATABASE_FILE_CTRL.tra"));
    }
}

}  // namespace
