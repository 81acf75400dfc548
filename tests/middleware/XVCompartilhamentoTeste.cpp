// One store of a company in the process, several companies, viewing beside a writer.
#include "core/xvdatabase/XVDiarioFormato.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/middleware/XVCenarioLoja.h"

namespace {

class CXVCompartilhamentoTeste : public CXVCenarioLoja {
  protected:
    // The file's header is of this user and session.
    void EsperaCarimbo(const std::string& sNome, XVUInt64 uiContador, unsigned uiUsuario, unsigned uiSessao) {
        const std::string sConteudo = Conteudo(sNome);
        EXPECT_EQ(sConteudo, XVArquivoDoTeste({sNome, uiContador, 1, uiUsuario, uiSessao}, Dados(sConteudo)));
    }
};

TEST_F(CXVCompartilhamentoTeste, ObjetosDaEmpresaDividemABaseECarimbamSeuUsuario) {
    TLoja pUm = Abre(11, "MATRIZ", 101);
    TLoja pDois = Abre(12, "Matriz", 102);  // the same directory
    const REG_XVDMC regDmc = Grava(*pUm, CXVIntegracaoTeste(1));
    EsperaCarimbo("CRINDEXINTEG.dat", 1, 11, 101);
    EXPECT_EQ(XVLe(*pDois, regDmc).hr, S_OK) << "seen at once";
    Grava(*pDois, CXVIntegracaoTeste(2));
    EsperaCarimbo("CRINDEXINTEG.dat", 2, 12, 102);
    pUm.reset();
    EXPECT_GT(m_Arquivos.GetQuantidadeAberta(), 0U) << "the other one still works";
    Grava(*pDois, CXVIntegracaoTeste(3));
    EsperaCarimbo("CRINTEGMID20240315.dat", 3, 12, 102);
    EXPECT_EQ(pDois->Finaliza(), S_OK);
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U) << "the last one closes";
    EXPECT_EQ(XVLe(*pDois, regDmc).hr, E_XVCR_COMPONENTE_NAO_INICIALIZADO);
    EXPECT_EQ(pDois->Finaliza(), S_OK);
    const TLoja pTres = Abre();
    EXPECT_EQ(XVBusca(*pTres).size(), 3U);
}

TEST_F(CXVCompartilhamentoTeste, BaseDeOutroProcessoERecusadaENadaFicaAberto) {
    { Grava(*Abre(), CXVIntegracaoTeste(1)); }
    std::unique_ptr<IXVArquivo> pAlheio = Segura("CRINDEXINTEG.dat");
    CBaseMiddleware loja;
    EXPECT_EQ(loja.Inicializa(&m_Dono), eSharingViolation);
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 1U);
    EXPECT_TRUE(m_Captura.Contem("m_pLoja->dataBase.Inicializa(this)"));
    pAlheio.reset();
    EXPECT_EQ(loja.Inicializa(&m_Dono), S_OK) << "the same object, once the other one has gone";
    EXPECT_EQ(XVBusca(loja).size(), 1U);
}

// Whoever comes while another one finds out that the store is held does not begin anew after it.
TEST_F(CXVCompartilhamentoTeste, AberturasRecusadasNaoEsperamUmaPelaOutra) {
    { Grava(*Abre(), CXVIntegracaoTeste(1)); }
    const std::unique_ptr<IXVArquivo> pAlheio = Segura("CRINDEXINTEG.dat");
    constexpr unsigned k_uiObjetos = 4;
    std::vector<CBaseMiddleware> lista(k_uiObjetos + 1);
    std::vector<std::string> listaArquivos(k_uiObjetos);
    std::vector<HRESULT> listaCodigos(k_uiObjetos, S_OK);
    std::vector<std::thread> listaThreads;
    std::atomic<unsigned> uiChegaram = 0;
    const auto abre = [&](unsigned i) {
        const CXVCapturaTrace captura;
        const CXVArquivosRecusados recusados;
        ++uiChegaram;
        listaCodigos[i] = lista[i].Inicializa(&m_Dono);
        listaArquivos[i] = recusados.GetPath(listaCodigos[i]);
    };
    m_Relogio.SetAoDormir([&](XVUInt64 uiDormidas) {
        if (uiDormidas == 1)
            for (unsigned i = 0; i < k_uiObjetos; ++i) listaThreads.emplace_back(abre, i);
        // The first one's attempts last as long as it takes the others to come and wait.
        while (uiChegaram < k_uiObjetos) std::this_thread::yield();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    });
    EXPECT_EQ(lista[k_uiObjetos].Inicializa(&m_Dono), eSharingViolation);
    m_Relogio.SetAoDormir(nullptr);
    for (std::thread& rThread : listaThreads) rThread.join();
    EXPECT_EQ(listaCodigos, std::vector<HRESULT>(k_uiObjetos, eSharingViolation));
    for (const std::string& sArquivo : listaArquivos) EXPECT_TRUE(sArquivo.ends_with("CRINDEXINTEG.dat"));
    EXPECT_EQ(m_Relogio.GetMilissegundosDormidos(), 4990U) << "nobody but the first one tried";
}

TEST_F(CXVCompartilhamentoTeste, SoOUltimoFechaEDizOQueFalhou) {
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    falhas.SetFiltro([](const std::string& s) { return s.ends_with(k_pszNomeDiario); });
    const CXVGuardaSistemaArquivos guarda(falhas);
    const TLoja pUm = Abre();
    const TLoja pDois = Abre(12);
    Grava(*pUm, CXVIntegracaoTeste(1));
    falhas.Programa({.bPermanente = true});
    EXPECT_EQ(pUm->Finaliza(), S_OK);
    EXPECT_EQ(pDois->Finaliza(), eHardIO);
    falhas.Limpa();
    EXPECT_EQ(XVBusca(*Abre()).size(), 1U);
}

}  // namespace
