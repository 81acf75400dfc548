// Every operation that changes the store, with its opening and closing, in a process that dies at each of its
// changes to the files; then the opening after it, dying as well. Whoever looks without opening for writing,
// and whoever opens, finds the operation whole or absent, and present when it was acknowledged.
#include "tests/harness/XVSistemaArquivosMorte.h"
#include "tests/middleware/XVCenarioVarredura.h"

namespace {

class CXVVarreduraMorteLoja : public CXVCenarioVarredura {
  protected:
    // Opens, operates where it is told to, closes, and dies at its change uiMorte. True: it died.
    bool Morre(XVUInt64 uiMorte, bool bGravaMetade, bool bOpera, bool* pbReconhecida) {
        m_Morte.Nasce(uiMorte, bGravaMetade);
        {
            CBaseMiddleware loja;
            const bool bAberta = SUCCEEDED(loja.Inicializa(&m_Dono));
            if (bAberta && bOpera) *pbReconhecida = SUCCEEDED(Opera(loja)) && !m_Morte.EstaMorto();
            XVIgnora(loja.Finaliza());
        }
        const bool bMorreu = m_Morte.EstaMorto();
        m_uiAlteracoes = m_Morte.GetQuantidade();
        m_Morte.Nasce(0);
        return bMorreu;
    }

    void ConferePorConsulta(bool bReconhecida) {
        EXPECT_TRUE(AntesOuDepois(m_esperado.antes, m_esperado.depois, bReconhecida, RetrataParaConsulta()))
            << "a viewer before the store is opened again";
    }
    void ConferePorAbertura(bool bReconhecida) {
        const TRetratoLoja reaberta = RetrataReaberta();
        EXPECT_TRUE(AntesOuDepois(m_esperado.antes, m_esperado.depois, bReconhecida, reaberta)) << "reopened";
        if (HasFailure()) return;
        const TLoja pLoja = Abre();
        ASSERT_NE(pLoja, nullptr);
        EXPECT_EQ(GravaProxima(*pLoja), S_OK) << "the next operation";
        EXPECT_TRUE(
            Igual(reaberta == m_esperado.depois ? m_esperado.depoisEProxima : m_esperado.antesEProxima,
                  XVRetrataLoja(*pLoja)));
    }
    // From the bytes that the first death left.
    void ConfereSegundaMorte(const CXVSistemaArquivosMemoria::TRetrato& rMorta, bool bReconhecida,
                             XVUInt64 uiSegunda) {
        for (const bool bGravaMetade : {false, true}) {
            SCOPED_TRACE("and at change " + std::to_string(uiSegunda) + " of the opening after it" +
                         (bGravaMetade ? ", half written" : ""));
            m_Arquivos.Restaura(rMorta);
            if (!Morre(uiSegunda, bGravaMetade, false, nullptr)) return;
            ConferePorConsulta(bReconhecida);
            ConferePorAbertura(bReconhecida);
        }
    }
    void ConfereMorta(XVUInt64 uiMorte, bool bReconhecida) {
        const auto morta = m_Arquivos.Retrata();
        ConferePorConsulta(bReconhecida);
        ConferePorAbertura(bReconhecida);
        m_Arquivos.Restaura(morta);
        Morre(0, false, false, nullptr);
        const XVUInt64 uiAbertura = m_uiAlteracoes;
        if (XVVarreduraCompleta()) {
            for (XVUInt64 ui = 1; ui <= uiAbertura && !HasFailure(); ++ui)
                ConfereSegundaMorte(morta, bReconhecida, ui);
        } else if (uiAbertura != 0) {
            ConfereSegundaMorte(morta, bReconhecida, uiMorte % uiAbertura + 1);
        }
    }

    XVUInt64 m_uiAlteracoes = 0;  // that the process made which died or ended last
    CXVSistemaArquivosMorte m_Morte{m_Arquivos};
    CXVGuardaSistemaArquivos m_Guarda{m_Morte};
};

TEST_P(CXVVarreduraMorteLoja, EmCadaAlteracaoDosArquivos) {
    const XVUInt64 uiSalto = XVSaltoVarredura(3, 13);
    XVUInt64 uiMorte = 1;
    for (bool bMorreu = true; bMorreu && !HasFailure(); uiMorte += uiSalto) {
        for (const bool bGravaMetade : {false, true}) {
            SCOPED_TRACE("died at change " + std::to_string(uiMorte) +
                         (bGravaMetade ? ", half written" : ""));
            ASSERT_LT(uiMorte, 1000U);
            Prepara();
            bool bReconhecida = false;
            bMorreu = Morre(uiMorte, bGravaMetade, true, &bReconhecida);
            if (!bMorreu) {
                EXPECT_TRUE(bReconhecida);
                break;
            }
            EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
            ConfereMorta(uiMorte, bReconhecida);
            if (HasFailure()) return;
        }
    }
    EXPECT_GT(uiMorte, 3U) << "the sweep must have met the operation";
}

INSTANTIATE_TEST_SUITE_P(Operacoes, CXVVarreduraMorteLoja, testing::ValuesIn(XVOperacoesLoja()),
                         [](const auto& rInfo) { return std::string(rInfo.param.pszNome); });

}  // namespace
