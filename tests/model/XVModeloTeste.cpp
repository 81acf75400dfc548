// Random operations of the whole store with reopenings against the model; by one worker and by four at once.
//
// XV_MODELO_SEMENTE: seed (1), printed by a failing run; XV_MODELO_PASSOS: operations of the run (2000).

#include "tests/harness/XVEmThreads.h"
#include "tests/harness/XVSorteio.h"
#include "tests/model/XVPassosModelo.h"

namespace {

class CModelo : public CXVCenarioLoja {
  protected:
    const XVUInt64 m_uiSemente = XVDoAmbiente("XV_MODELO_SEMENTE", 1);
    const XVUInt64 m_uiPassos = XVDoAmbiente("XV_MODELO_PASSOS", 2000);
    CXVSorteio m_sorteio{m_uiSemente};

    // Sets the clock to one of a few days, back as well as on, and a time of day: the date-time that it
    // shows.
    REG_XVDMAHMSUTC SorteiaAgora() {
        const auto uiDia = static_cast<unsigned>(10 + m_sorteio.Ate(5));
        const auto uiHora = static_cast<unsigned>(m_sorteio.Ate(24));
        SetDia(uiDia, uiHora);
        return {XVDataHora(XVDma(2024, 3, uiDia), uiHora)};
    }
};

TEST_F(CModelo, OperacoesAoAcasoRespondemComoOModelo) {
    CXVPassosModelo passos(m_uiSemente, {});
    passos.SetAgora(SorteiaAgora());
    TLoja pLoja = Abre();
    for (XVUInt64 i = 0; i < m_uiPassos; ++i) {
        if (m_sorteio.Ate(20) == 0) passos.SetAgora(SorteiaAgora());
        if (m_sorteio.Ate(150) == 0) {
            ASSERT_EQ(pLoja->Finaliza(), S_OK);
            ASSERT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
            pLoja = Abre();
            ASSERT_EQ(passos.ConfereTudo(*pLoja), "")
                << "after a reopening, step " << i << ", seed " << m_uiSemente;
        }
        ASSERT_EQ(passos.Passo(*pLoja), "") << "step " << i << ", seed " << m_uiSemente;
    }
    EXPECT_EQ(passos.ConfereTudo(*pLoja), "") << "seed " << m_uiSemente;
}

TEST_F(CModelo, QuatroThreadsNumaLojaCadaUmaComOSeuModelo) {
    constexpr unsigned k_uiThreads = 4;
    constexpr unsigned k_uiFases = 4;
    std::vector<std::unique_ptr<CXVPassosModelo>> passos;
    for (unsigned i = 0; i < k_uiThreads; ++i)
        passos.push_back(
            std::make_unique<CXVPassosModelo>(m_uiSemente * k_uiThreads + i, SParteModelo{i, k_uiThreads}));
    // The day changes between two phases, when nobody works.
    for (unsigned uiFase = 0; uiFase < k_uiFases; ++uiFase) {
        const REG_XVDMAHMSUTC regAgora = SorteiaAgora();
        const TLoja pLoja = Abre();
        std::vector<std::string> erros(k_uiThreads);
        XVEmThreads(k_uiThreads, [&](unsigned i) {
            const CXVCapturaTrace captura;
            passos[i]->SetAgora(regAgora);
            erros[i] = passos[i]->ConfereTudo(*pLoja);
            for (XVUInt64 n = 0; n < m_uiPassos / k_uiFases && erros[i].empty(); ++n)
                erros[i] = passos[i]->Passo(*pLoja);
        });
        for (unsigned i = 0; i < k_uiThreads; ++i)
            ASSERT_EQ(erros[i], "") << "thread " << i << ", phase " << uiFase << ", seed " << m_uiSemente;
        ASSERT_EQ(pLoja->Finaliza(), S_OK);
    }
}

}  // namespace
