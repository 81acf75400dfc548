// Random scripts in a process that dies at a random change to its files: what the script has done lies behind
// the operation in flight, closed members, other days and a journal that went round included.
#include "tests/harness/XVSistemaArquivosMorte.h"
#include "tests/middleware/XVCenarioVarredura.h"
#include "tests/middleware/XVRoteiroAleatorio.h"

namespace {

struct SCasoMorte {
    XVUInt64 uiSemente = 0;
    std::size_t uiMaior = 0;  // bytes of a text
};
void PrintTo(const SCasoMorte& rCaso, std::ostream* pSaida) {
    *pSaida << "seed " << rCaso.uiSemente << ", texts of up to " << rCaso.uiMaior << " bytes";
}

class CXVMorteRoteiro : public CXVCenarioLoja, public testing::WithParamInterface<SCasoMorte> {
  protected:
    CXVMorteRoteiro() : m_morte(m_Arquivos, EContagem::eAlteracoes, EMorte::eCala), m_guarda(m_morte) {
        m_inicial = m_Arquivos.Retrata();
    }

    // Runs the script; after each step that was over before the process died (0: the opening) calls fnDepois.
    template <class TFn>
    void Executa(CXVRoteiroAleatorio& rRoteiro, TFn fnDepois) {
        const auto passa = [&](bool bOk) {
            EXPECT_TRUE(bOk || m_morte.EstaMorto());
            if (bOk && !m_morte.EstaMorto()) fnDepois();
            return bOk && !m_morte.EstaMorto();
        };
        bool bVivo = passa(rRoteiro.Abre());
        for (std::size_t ui = 1; bVivo && ui <= rRoteiro.GetQuantidade(); ++ui)
            bVivo = passa(rRoteiro.Passo());
        rRoteiro.Fecha();
    }
    // The pictures after each step, and the changes that the script makes.
    void ExecutaEmPaz() {
        CXVRoteiroAleatorio roteiro(GetParam().uiSemente, m_Relogio, GetParam().uiMaior);
        Executa(roteiro, [&] { m_retratos.push_back(roteiro.Retrata()); });
        m_morte.Nasce(0);
        m_Arquivos.Restaura(m_inicial);
        CXVRoteiroAleatorio outra(GetParam().uiSemente, m_Relogio, GetParam().uiMaior);
        Executa(outra, [] {});
        m_uiAlteracoes = m_morte.GetQuantidade();
    }
    // Steps that were over when the process died.
    std::size_t ExecutaEMorre(XVUInt64 uiMorte, bool bGravaMetade) {
        m_Arquivos.Restaura(m_inicial);
        m_morte.Nasce(uiMorte, bGravaMetade);
        CXVRoteiroAleatorio roteiro(GetParam().uiSemente, m_Relogio, GetParam().uiMaior);
        std::size_t uiFeitos = 0;
        m_morte.Executa([&] { Executa(roteiro, [&] { ++uiFeitos; }); });
        roteiro.Fecha();
        m_morte.Nasce(0);
        return uiFeitos;
    }
    testing::AssertionResult Confere(std::size_t uiFeitos, bool bConsulta) {
        CBaseMiddleware loja;
        loja.SetSomenteLeitura(bConsulta);
        const HRESULT hr = loja.Inicializa(&m_Dono);
        const TRetratoLoja obtido = FAILED(hr) ? XVRetratoRecusado(hr) : XVRetrataLoja(loja);
        const TRetratoLoja& rAntes = m_retratos[uiFeitos == 0 ? 0 : uiFeitos - 1];
        const TRetratoLoja& rDepois = m_retratos[std::min(uiFeitos, m_retratos.size() - 1)];
        if (obtido == rAntes || obtido == rDepois) return testing::AssertionSuccess();
        return testing::AssertionFailure() << "neither before\n"
                                           << XVDiferenca(rAntes, obtido) << "nor after\n"
                                           << XVDiferenca(rDepois, obtido);
    }

    CXVSistemaArquivosMorte m_morte;
    CXVGuardaSistemaArquivos m_guarda;
    CXVSistemaArquivosMemoria::TRetrato m_inicial;
    std::vector<TRetratoLoja> m_retratos;
    XVUInt64 m_uiAlteracoes = 0;
};

TEST_P(CXVMorteRoteiro, OReconhecidoFicaEOInterrompidoEhInteiroOuNenhum) {
    ExecutaEmPaz();
    ASSERT_FALSE(HasFailure());
    CXVSorteio sorteio(GetParam().uiSemente);
    for (unsigned ui = 0; ui < (XVVarreduraCompleta() ? 200U : 12U) && !HasFailure(); ++ui) {
        const XVUInt64 uiMorte = 1 + sorteio.Ate(static_cast<std::size_t>(m_uiAlteracoes));
        const bool bGravaMetade = sorteio.Acontece(1, 2);
        SCOPED_TRACE("died at change " + std::to_string(uiMorte) + " of " + std::to_string(m_uiAlteracoes) +
                     (bGravaMetade ? ", half written" : ""));
        const std::size_t uiFeitos = ExecutaEMorre(uiMorte, bGravaMetade);
        SCOPED_TRACE(std::to_string(uiFeitos) + " steps were over");
        if (uiFeitos != 0) {
            EXPECT_TRUE(Confere(uiFeitos, true)) << "a viewer";
        }
        EXPECT_TRUE(Confere(uiFeitos, false)) << "opened";
    }
}

std::vector<SCasoMorte> Casos() {
    std::vector<SCasoMorte> lista;
    for (XVUInt64 uiSemente = 1; uiSemente <= 6; ++uiSemente) lista.push_back({uiSemente, k_uiMaiorTexto});
    // Long enough for a journal of any small size to go round, and for one operation not to fit into it.
    for (XVUInt64 uiSemente = 7; uiSemente <= 8; ++uiSemente) lista.push_back({uiSemente, 600000});
    return lista;
}

INSTANTIATE_TEST_SUITE_P(Sementes, CXVMorteRoteiro, testing::ValuesIn(Casos()),
                         [](const auto& rInfo) { return "S" + std::to_string(rInfo.param.uiSemente); });

}  // namespace
