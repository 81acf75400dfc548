// One store of a company in the process, several companies, viewing beside a writer.
#include "core/xvdatabase/XVDiarioFormato.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/middleware/XVCenarioLoja.h"

namespace {

class CXVCompartilhamentoTeste : public CXVCenarioLoja {
  protected:
    static unsigned Usuario(const std::string& sConteudo) { return Numero(sConteudo, 100); }
    static unsigned Sessao(const std::string& sConteudo) { return Numero(sConteudo, 88); }

  private:
    static unsigned Numero(const std::string& s, std::size_t i) {
        const auto byte = [&](std::size_t n) { return unsigned{static_cast<unsigned char>(s[n])}; };
        return s.size() < 240 ? 0U : byte(i) | byte(i + 1) << 8U;
    }
};

TEST_F(CXVCompartilhamentoTeste, ObjetosDaEmpresaDividemABaseECarimbamSeuUsuario) {
    TLoja pUm = Abre(11, "MATRIZ", 101);
    TLoja pDois = Abre(12, "Matriz", 102);  // the same directory
    const REG_XVDMC regDmc = Grava(*pUm, CXVIntegracaoTeste(1));
    EXPECT_EQ(Usuario(Conteudo("CRINDEXINTEG.dat")), 11U);
    EXPECT_EQ(XVLe(*pDois, regDmc).hr, S_OK) << "seen at once";
    Grava(*pDois, CXVIntegracaoTeste(2));
    EXPECT_EQ(Usuario(Conteudo("CRINDEXINTEG.dat")), 12U);
    EXPECT_EQ(Sessao(Conteudo("CRINTEGMID20240315.dat")), 102U);
    pUm.reset();
    EXPECT_GT(m_Arquivos.GetQuantidadeAberta(), 0U) << "the other one still works";
    Grava(*pDois, CXVIntegracaoTeste(3));
    EXPECT_EQ(Usuario(Conteudo("CRINTEGMIDJSON20240315.dat")), 12U);
    EXPECT_EQ(pDois->Finaliza(), S_OK);
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U) << "the last one closes";
    EXPECT_EQ(XVLe(*pDois, regDmc).hr, E_XVCR_COMPONENTE_NAO_INICIALIZADO);
    EXPECT_EQ(pDois->Finaliza(), S_OK);
    const TLoja pTres = Abre();
    EXPECT_EQ(XVBusca(*pTres).size(), 3U);
}

TEST_F(CXVCompartilhamentoTeste, VisorNadaGrava) {
    const TLoja pEscritor = Abre();
    const REG_XVDMC regDmc = Grava(*pEscritor, CXVIntegracaoTeste(1));
    const auto retrato = m_Arquivos.Retrata();
    CBaseMiddleware visor;
    visor.SetSomenteLeitura(true);
    ASSERT_EQ(visor.Inicializa(&m_Dono), S_OK);
    REG_XVDMC regNova;
    EXPECT_EQ(visor.GravaIntegracao(&regNova, CXVIntegracaoTeste().Ptr()), eXVReadOnly);
    EXPECT_EQ(visor.GravaChaveRegistroTelvoParaTerceiro({1, regDmc, 0, 6, 16, {}}), eXVReadOnly);
    EXPECT_EQ(visor.GravaDataHoraIntegracaoTerceiro({{}, 9, 2, 1, {}}), eXVReadOnly);
    tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS status{};
    status.regDmc = regDmc;
    EXPECT_EQ(visor.GravaStatusIntegracao(status), eXVReadOnly);
    EXPECT_EQ(visor.GravaIntegracaoInstantanea(&regNova, {}), eXVReadOnly);
    EXPECT_EQ(visor.GravaPendenciaIntegracao(regDmc, {}), eXVReadOnly);
    EXPECT_EQ(m_Arquivos.Diferenca(retrato, m_Arquivos.Retrata()), "");
}

TEST_F(CXVCompartilhamentoTeste, BaseDeOutroProcessoERecusadaENadaFicaAberto) {
    { Grava(*Abre(), CXVIntegracaoTeste(1)); }
    std::unique_ptr<IXVArquivo> pAlheio;
    ASSERT_TRUE(m_Arquivos
                    .Abre(PastaDados("CRINDEXINTEG.dat"),
                          {EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaEscrita,
                           ECriacaoArquivo::eSomenteExistente},
                          pAlheio)
                    .Ok());
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
