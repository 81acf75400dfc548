// Every operation that changes the store with its Nth allocation refused, in a process that goes on with the
// same object and in one that opens, operates and closes.
#include <new>

#include "tests/harness/XVSistemaArquivosEnvolto.h"
#include "tests/middleware/XVCenarioVarredura.h"
#include "tests/middleware/XVRecusaAlocacao.h"

namespace {

class CXVVarreduraAlocacao : public CXVCenarioVarredura {
  protected:
    CXVVarreduraAlocacao() : m_envolto(m_Arquivos), m_guarda(m_envolto) {}

    // Runs fn with allocation uiNumero refused. False: it failed or threw.
    template <class TFn>
    bool ExecutaComRecusa(long iNumero, TFn fn) {
        XVRecusaAlocacao::Programa(iNumero);
        bool bFeita = false;
        try {
            bFeita = fn();
        } catch (const std::bad_alloc&) {
        }
        m_bRecusada = XVRecusaAlocacao::Ocorreu();
        XVRecusaAlocacao::Programa(0);
        return bFeita;
    }
    void Varre(const std::function<void(long)>& fnCaso) {
        const auto iSalto = static_cast<long>(XVSaltoVarredura(7, 77));
        m_bRecusada = true;
        for (long i = 1; m_bRecusada; i += iSalto) {
            SCOPED_TRACE("allocation " + std::to_string(i));
            ASSERT_LT(i, 20000);
            Prepara();
            fnCaso(i);
            if (HasFailure()) return;
        }
    }

    // The allocations of the device in memory have no counterpart in a real one.
    TXVSistemaArquivosEnvolto<TXVVigiaGuarda<XVRecusaAlocacao::CSuspensa>> m_envolto;
    CXVGuardaSistemaArquivos m_guarda;
    bool m_bRecusada = false;  // in the case run last
};

TEST_P(CXVVarreduraAlocacao, NoMesmoProcesso) {
    Varre([&](long iNumero) {
        const TLoja pLoja = Abre();
        ASSERT_NE(pLoja, nullptr);
        const std::string sLogAntes = LogGeral();
        const bool bFeita = ExecutaComRecusa(iNumero, [&] { return SUCCEEDED(Opera(*pLoja)); });
        if (!bFeita) {
            EXPECT_EQ(LogGeral(), sLogAntes) << "a line for what did not take place";
        }
        EXPECT_TRUE(bFeita || m_bRecusada);
        ConfereContinuacao(*pLoja, bFeita);
    });
}

TEST_P(CXVVarreduraAlocacao, EmProcessoQueReabre) {
    Varre([&](long iNumero) {
        bool bFeita = false;
        {
            CBaseMiddleware loja;
            const bool bFechou = ExecutaComRecusa(iNumero, [&] {
                bFeita = SUCCEEDED(loja.Inicializa(&m_Dono)) && SUCCEEDED(Opera(loja));
                return SUCCEEDED(loja.Finaliza());
            });
            EXPECT_TRUE((bFeita && bFechou) || m_bRecusada);
        }
        EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
        EXPECT_TRUE(AntesOuDepois(m_esperado.antes, m_esperado.depois, bFeita, RetrataReaberta()));
    });
}

INSTANTIATE_TEST_SUITE_P(Operacoes, CXVVarreduraAlocacao, testing::ValuesIn(XVOperacoesLoja()),
                         [](const auto& rInfo) { return std::string(rInfo.param.pszNome); });

}  // namespace
