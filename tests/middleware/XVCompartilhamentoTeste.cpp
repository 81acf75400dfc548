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
