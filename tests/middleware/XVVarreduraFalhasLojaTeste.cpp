// Every operation that changes the store with its Nth file operation failing, and with its Nth allocation
// refused, for every N until a run meets no fault: in a process that goes on with the same object, and in one
// that opens, operates and closes under the fault. The failure is told and nothing of the operation is there,
// or all of it is.
#include <new>

#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/middleware/XVAlocacoes.h"
#include "tests/middleware/XVCenarioVarredura.h"

namespace {

constexpr auto k_eCheio = ECausaArquivo::eDiscoCheio;                   // tried again
constexpr auto k_eFisico = ECausaArquivo::eErroFisico;                  // fatal
constexpr auto k_eViolacao = ECausaArquivo::eViolacaoCompartilhamento;  // tried again when opening

std::vector<SFalhaArquivo> Falhas() {
    std::vector<SFalhaArquivo> lista{{.eCausa = k_eFisico, .bGravaMetade = true},
                                     {.bPermanente = true, .eCausa = k_eCheio, .bGravaMetade = true}};
    if (!XVVarreduraCompleta()) return lista;
    lista.push_back({.eCausa = k_eFisico});
    for (const bool bMetade : {false, true}) {
        lista.push_back({.eCausa = k_eCheio, .bGravaMetade = bMetade});
        lista.push_back({.bPermanente = true, .eCausa = k_eFisico, .bGravaMetade = bMetade});
    }
    lista.push_back({.bPermanente = true, .eCausa = k_eCheio});
    for (const bool bPermanente : {false, true})
        lista.push_back({.bPermanente = bPermanente, .eCausa = k_eViolacao});
    return lista;
}

std::string Descreve(const SFalhaArquivo& rFalha) {
    return std::string(rFalha.bPermanente ? "and all after it" : "") +
           (rFalha.bGravaMetade ? ", half written" : "") +
           (rFalha.eCausa == k_eCheio    ? ", disk full"
            : rFalha.eCausa == k_eFisico ? ", hard I/O"
                                         : ", shared");
}

class CXVVarreduraFalhasLoja : public CXVCenarioVarredura {
  protected:
    // The allocations of the device in memory have no counterpart in a real one.
    CXVVarreduraFalhasLoja() : m_Falhas(m_Arquivos), m_envolto(m_Falhas), m_Guarda(m_envolto) {}

    // Runs fnCaso for every uiSalto-th number of every fault, and then of the allocations, each until a run
    // meets none.
    void Varre(unsigned uiSalto, const std::function<void()>& fnCaso) {
        for (const SFalhaArquivo& rFalha : Falhas()) {
            SCOPED_TRACE(Descreve(rFalha));
            m_falha = rFalha;
            VarreUma("operation ", uiSalto, fnCaso);
        }
        m_falha = std::nullopt;
        VarreUma("allocation ", XVSaltoVarredura(7, 77), fnCaso);
    }
    bool EhPermanente() const { return m_falha && m_falha->bPermanente; }

    // Runs fn under the fault; an operation that throws has failed.
    HRESULT ExecutaComFalha(const std::function<HRESULT()>& fn) {
        if (m_falha) {
            m_falha->uiNumero = m_uiNumero;
            m_Falhas.Programa(*m_falha);
        } else {
            XVAlocacoes::Recusa(static_cast<long>(m_uiNumero));
        }
        HRESULT hr = E_OUTOFMEMORY;
        try {
            hr = fn();
        } catch (const std::bad_alloc&) {
        }
        m_bHouveFalha = m_falha ? m_Falhas.GetFalhasOcorridas() > 0 : XVAlocacoes::FoiRecusada();
        XVAlocacoes::Recusa(0);
        m_Falhas.Limpa();
        EXPECT_TRUE(m_bHouveFalha || hr == S_OK);
        return hr;
    }

    // The device refused even the undoing: the next operation works or says so, the next opening decides.
    void ContinuaDepoisDeRecusarTudo(CBaseMiddleware& rLoja, HRESULT hr) {
        const bool bFeita = SUCCEEDED(hr);
        const bool bProxima = SUCCEEDED(GravaProxima(rLoja));
        const TRetratoLoja& rAntes = bProxima ? m_esperado.antesEProxima : m_esperado.antes;
        const TRetratoLoja& rDepois = bProxima ? m_esperado.depoisEProxima : m_esperado.depois;
        if (bProxima) {
            ASSERT_TRUE(AntesOuDepois(rAntes, rDepois, bFeita, XVRetrataLoja(rLoja), ERecusa::eAceita))
                << std::hex << hr;
            ASSERT_TRUE(AntesOuDepois(rAntes, rDepois, bFeita, RetrataParaConsulta())) << "a viewer";
        }
        XVIgnora(rLoja.Finaliza());
        ASSERT_TRUE(AntesOuDepois(rAntes, rDepois, bFeita, RetrataParaConsulta())) << "a viewer, closed";
        ASSERT_TRUE(AntesOuDepois(rAntes, rDepois, bFeita, RetrataReaberta()))
            << "reopened " << std::hex << hr;
    }

  private:
    void VarreUma(const char* pszOque, unsigned uiSalto, const std::function<void()>& fnCaso) {
        m_bHouveFalha = true;
        for (m_uiNumero = 1; m_bHouveFalha && !HasFailure(); m_uiNumero += uiSalto) {
            SCOPED_TRACE(pszOque + std::to_string(m_uiNumero));
            ASSERT_LT(m_uiNumero, 20000U);
            Prepara();
            fnCaso();
        }
        EXPECT_GT(m_uiNumero, 1 + uiSalto) << "the sweep must have met the operation";
    }

    std::optional<SFalhaArquivo> m_falha;  // nothing: an allocation
    XVUInt64 m_uiNumero = 0;
    bool m_bHouveFalha = false;  // in the case run last
    CXVSistemaArquivosFalhas m_Falhas;
    TXVSistemaArquivosEnvolto<TXVVigiaGuarda<XVAlocacoes::CSuspensa>> m_envolto;
    CXVGuardaSistemaArquivos m_Guarda;
};

TEST_P(CXVVarreduraFalhasLoja, NoMesmoProcesso) {
    // That one does nothing to a store that is open: it is swept below.
    if (std::string_view(GetParam().pszNome) == "AberturaSemCabecalho") return;
    Varre(XVSaltoVarredura(1, 11), [&] {
        const TLoja pLoja = Abre();
        ASSERT_NE(pLoja, nullptr);
        const std::string sLogAntes = LogGeral();
        const HRESULT hr = ExecutaComFalha([&] { return Opera(*pLoja); });
        if (FAILED(hr)) {
            EXPECT_EQ(LogGeral(), sLogAntes) << "a line for what did not take place";
        }
        if (EhPermanente())
            ContinuaDepoisDeRecusarTudo(*pLoja, hr);
        else
            ConfereContinuacao(*pLoja, SUCCEEDED(hr));
    });
}

TEST_P(CXVVarreduraFalhasLoja, EmProcessoQueReabre) {
    Varre(XVSaltoVarredura(5, 55), [&] {
        bool bFeita = false;
        {
            CBaseMiddleware loja;
            ExecutaComFalha([&] {
                HRESULT hr = loja.Inicializa(&m_Dono);
                if (SUCCEEDED(hr)) hr = Opera(loja);
                bFeita = SUCCEEDED(hr);
                const HRESULT hrFinaliza = loja.Finaliza();
                return FAILED(hr) ? hr : hrFinaliza;
            });
        }
        EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
        const auto confere = [&](const TRetratoLoja& rObtido, const char* pszQuem) {
            EXPECT_TRUE(AntesOuDepois(m_esperado.antes, m_esperado.depois, bFeita, rObtido)) << pszQuem;
        };
        if (GetParam().eInicial == ELojaInicial::eComum) confere(RetrataParaConsulta(), "a viewer");
        confere(RetrataReaberta(), "reopened");
        if (HasFailure()) return;
        const TLoja pLoja = Abre();
        if (pLoja != nullptr) {
            EXPECT_EQ(GravaProxima(*pLoja), S_OK);
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Operacoes, CXVVarreduraFalhasLoja, testing::ValuesIn(XVOperacoesLoja()),
                         [](const auto& rInfo) { return std::string(rInfo.param.pszNome); });

}  // namespace
