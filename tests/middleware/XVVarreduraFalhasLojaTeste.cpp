// Every operation that changes the store with its Nth file operation failing, for every N until a run meets
// no fault: in a process that goes on with the same object, and in one that opens, operates and closes under
// the fault. The failure is told and nothing of the operation is there, or all of it is.
#include "tests/harness/XVSistemaArquivosFalhas.h"
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
    return "operation " + std::to_string(rFalha.uiNumero) + (rFalha.bPermanente ? " and all after it" : "") +
           (rFalha.bGravaMetade ? ", half written" : "") +
           (rFalha.eCausa == k_eCheio    ? ", disk full"
            : rFalha.eCausa == k_eFisico ? ", hard I/O"
                                         : ", shared");
}

class CXVVarreduraFalhasLoja : public CXVCenarioVarredura {
  protected:
    CXVVarreduraFalhasLoja() : m_Falhas(m_Arquivos), m_Guarda(m_Falhas) {}

    // Runs fnCaso for every uiSalto-th number of every fault until a run meets none; fnCaso programs the
    // fault and tells whether it came.
    void Varre(unsigned uiSalto, const std::function<bool(const SFalhaArquivo&)>& fnCaso) {
        for (SFalhaArquivo falha : Falhas()) {
            bool bHouveFalha = true;
            for (falha.uiNumero = 1; bHouveFalha; falha.uiNumero += uiSalto) {
                SCOPED_TRACE(Descreve(falha));
                ASSERT_LT(falha.uiNumero, 1000U);
                Prepara();
                bHouveFalha = fnCaso(falha);
                m_Falhas.Limpa();
                if (HasFailure()) return;
            }
        }
    }
    bool AcabaFalha() {
        const bool bHouveFalha = m_Falhas.GetFalhasOcorridas() > 0;
        m_Falhas.Limpa();
        return bHouveFalha;
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

    CXVSistemaArquivosFalhas m_Falhas;
    CXVGuardaSistemaArquivos m_Guarda;
};

TEST_P(CXVVarreduraFalhasLoja, NoMesmoProcesso) {
    Varre(XVSaltoVarredura(1, 11), [&](const SFalhaArquivo& rFalha) {
        const TLoja pLoja = Abre();
        if (pLoja == nullptr) return false;
        const std::string sLogAntes = LogGeral();
        m_Falhas.Programa(rFalha);
        const HRESULT hr = Opera(*pLoja);
        const bool bHouveFalha = AcabaFalha();
        if (FAILED(hr)) {
            EXPECT_EQ(LogGeral(), sLogAntes) << "a line for what did not take place";
        }
        if (!bHouveFalha) {
            EXPECT_EQ(hr, S_OK);
        }
        if (rFalha.bPermanente)
            ContinuaDepoisDeRecusarTudo(*pLoja, hr);
        else
            ConfereContinuacao(*pLoja, SUCCEEDED(hr));
        return bHouveFalha;
    });
}

TEST_P(CXVVarreduraFalhasLoja, EmProcessoQueReabre) {
    Varre(XVSaltoVarredura(5, 55), [&](const SFalhaArquivo& rFalha) {
        m_Falhas.Programa(rFalha);
        bool bFeita = false;
        {
            CBaseMiddleware loja;
            HRESULT hr = loja.Inicializa(&m_Dono);
            if (SUCCEEDED(hr)) hr = Opera(loja);
            bFeita = SUCCEEDED(hr);
            const HRESULT hrFinaliza = loja.Finaliza();
            if (m_Falhas.GetFalhasOcorridas() == 0) {
                EXPECT_TRUE(bFeita && hrFinaliza == S_OK);
            }
        }
        const bool bHouveFalha = AcabaFalha();
        EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
        const auto confere = [&](const TRetratoLoja& rObtido, const char* pszQuem) {
            EXPECT_TRUE(AntesOuDepois(m_esperado.antes, m_esperado.depois, bFeita, rObtido)) << pszQuem;
        };
        if (GetParam().eInicial == ELojaInicial::eComum) confere(RetrataParaConsulta(), "a viewer");
        confere(RetrataReaberta(), "reopened");
        if (HasFailure()) return bHouveFalha;
        const TLoja pLoja = Abre();
        if (pLoja != nullptr) {
            EXPECT_EQ(GravaProxima(*pLoja), S_OK);
        }
        return bHouveFalha;
    });
}

INSTANTIATE_TEST_SUITE_P(Operacoes, CXVVarreduraFalhasLoja, testing::ValuesIn(XVOperacoesLoja()),
                         [](const auto& rInfo) { return std::string(rInfo.param.pszNome); });

}  // namespace
