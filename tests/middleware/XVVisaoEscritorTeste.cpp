// Viewers in the middle of a writer's work: after each of its changes (every third where a look is slow) to
// the files, from the opening to the closing, one that opens then and one that has been open all the time
// show the store before the operation or after it.
#include "tests/harness/XVGanchoArquivos.h"
#include "tests/middleware/XVCenarioVarredura.h"

namespace {

class CXVVisaoEscritor : public CXVCenarioVarredura {
  protected:
    CXVVisaoEscritor() : m_Gancho(m_Arquivos), m_Guarda(m_Gancho) {}

    // Once after the operation, never before it again.
    void Olha(CBaseMiddleware& rVisor, bool& rbDepois, const char* pszQuem) {
        const TRetratoLoja retrato = XVRetrataLoja(rVisor);
        EXPECT_TRUE(AntesOuDepois(m_esperado.antes, m_esperado.depois, rbDepois, retrato))
            << pszQuem << ", file operation " << m_uiOperacoes;
        rbDepois = rbDepois || (m_esperado.antes != m_esperado.depois && retrato == m_esperado.depois);
    }
    void OlhaDeNovo() {
        CBaseMiddleware visor;
        ASSERT_EQ(XVInicializa(visor, true), S_OK) << "file operation " << m_uiOperacoes;
        Olha(visor, m_bNovoViuDepois, "a new viewer");
    }

    CXVSistemaArquivosGancho m_Gancho;
    CXVGuardaSistemaArquivos m_Guarda;
    unsigned m_uiOperacoes = 0;
    unsigned m_uiVistas = 0;
    CXVSistemaArquivosMemoria::TRetrato m_visto;
    bool m_bNovoViuDepois = false;
    bool m_bAntigoViuDepois = false;
};

TEST_P(CXVVisaoEscritor, CadaVisorVeOperacoesInteiras) {
    if (HasFatalFailure()) return;
    Prepara();
    CBaseMiddleware antigo;
    ASSERT_EQ(XVInicializa(antigo, true), S_OK);
    {
        const CXVGanchoArquivos gancho([&] {
            ++m_uiOperacoes;
            auto agora = m_Arquivos.Retrata();
            if (HasFailure() || agora == m_visto) return;
            m_visto = std::move(agora);
            if (++m_uiVistas % XVSaltoVarredura(1, 3) != 0) return;
            OlhaDeNovo();
            Olha(antigo, m_bAntigoViuDepois, "the old viewer");
            SetDia(GetParam().uiDia);  // the viewers' waiting is none of the writer's
        });
        const TLoja pLoja = Abre();
        ASSERT_NE(pLoja, nullptr);
        EXPECT_EQ(Opera(*pLoja), S_OK);
        EXPECT_EQ(pLoja->Finaliza(), S_OK);
    }
    EXPECT_GT(m_uiVistas, 5U);
    EXPECT_TRUE(Igual(m_esperado.depois, XVRetrataLoja(antigo))) << "the old viewer, afterwards";
    EXPECT_TRUE(Igual(m_esperado.depois, RetrataParaConsulta()));
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U) << "a viewer at rest holds no file";
    ConfereArquivosEmRepouso();
}

INSTANTIATE_TEST_SUITE_P(Operacoes, CXVVisaoEscritor, testing::ValuesIn(XVOperacoesLoja()),
                         [](const auto& rInfo) { return std::string(rInfo.param.pszNome); });

}  // namespace
