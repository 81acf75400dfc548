// Several callers of one store with Durabilidade 1 share a flush: while the device works for the first, the
// others prepare on top of it. Power failures and failing writes in every moment of that.
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/harness/XVSistemaArquivosQueda.h"
#include "tests/middleware/XVCenarioLoja.h"
#include "tests/middleware/XVRetratoLoja.h"
#include "tests/middleware/posix/XVEsperaDeFio.h"

namespace {

class CXVQuedaGrupo : public CXVCenarioLoja {
  protected:
    static constexpr std::size_t k_uiChamadores = 4;

    CXVQuedaGrupo() {
        m_registry.SetNumero(CAmbienteXV::GetChaveRegistry(XV_DF), "Durabilidade", 1);
        m_inicial = m_Arquivos.Retrata();
    }

    // One run of the group on a new store. Caller 0 goes first; when its operation is to be brought to the
    // device the others come, and it goes on when each of them waits for the device, too.
    struct SRodada {
        std::array<HRESULT, k_uiChamadores> aResultados{};
        std::array<std::string, k_uiChamadores> aRetratos;  // of what each recorded, in the living object
        std::array<REG_XVDMC, k_uiChamadores> aDmcs{};
        TRetratoLoja vivo;
        bool bCortada = false;
        std::array<bool, k_uiChamadores> aReconhecidas{};  // when it was cut
        CXVSistemaArquivosMemoria::TRetrato disco;
    };
    SRodada Roda(std::size_t uiCorte, const SFalhaArquivo* pFalha);

    static HRESULT Grava(CBaseMiddleware& rLoja, std::size_t uiChamador, REG_XVDMC* pDmc) {
        CXVIntegracaoTeste integracao(1000 + uiChamador, Mercos, eXVSMiddleware_Enviado);
        integracao.reg.uiBaseDadosTerceiro = uiChamador + 1;
        const std::string sMarca = "chamador " + std::to_string(uiChamador);
        return rLoja.GravaIntegracao(pDmc,
                                     integracao.Textos(sMarca + std::string(900, 'j'), sMarca, sMarca).Ptr());
    }

    CXVSistemaArquivosMemoria::TRetrato m_inicial;
};

CXVQuedaGrupo::SRodada CXVQuedaGrupo::Roda(std::size_t uiCorte, const SFalhaArquivo* pFalha) {
    m_Arquivos.Restaura(m_inicial);
    CXVSistemaArquivosQueda dispositivo(m_Arquivos);
    CXVSistemaArquivosFalhas falhas(dispositivo);
    TXVSistemaArquivosEnvolto<CXVVigiaFio> fios(falhas);
    const CXVGuardaSistemaArquivos guarda(fios);
    falhas.SetFiltro([](const std::string& sCaminho) { return sCaminho.ends_with(".dat"); });
    SRodada rodada;
    const TLoja pLoja = Abre();
    REG_XVDMC regPrimeira;
    if (pLoja == nullptr || FAILED(Grava(*pLoja, 99, &regPrimeira))) return rodada;

    std::mutex mutex;
    std::array<bool, k_uiChamadores> aReconhecidas{};
    std::size_t uiAlteracoes = 0;
    const auto opera = [&](std::size_t uiChamador) {
        const CXVCapturaTrace captura;  // records are captured thread by thread
        const HRESULT hr = Grava(*pLoja, uiChamador, &rodada.aDmcs[uiChamador]);
        const std::lock_guard trava(mutex);
        rodada.aResultados[uiChamador] = hr;
        aReconhecidas[uiChamador] = SUCCEEDED(hr);
    };
    dispositivo.SetAoAlterar([&](const std::string&, CXVSistemaArquivosQueda::EAlteracao) {
        const std::lock_guard trava(mutex);
        if (++uiAlteracoes != uiCorte) return;
        rodada.bCortada = true;
        rodada.aReconhecidas = aReconhecidas;
        rodada.disco = dispositivo.Corta(uiCorte);
    });
    bool bEsperam = false;
    CXVEsperaDeFio(
        [](const SOperacaoArquivo& r) {
            return r.eOperacao == EOperacaoArquivo::eSincroniza && r.sCaminho.ends_with(".srk");
        },
        {[&] { opera(1); }, [&] { opera(2); }, [&] { opera(3); }})
        .Executa([&] { opera(0); },
                 [&](bool bTodos) {
                     bEsperam = bTodos;
                     if (pFalha != nullptr) falhas.Programa(*pFalha);
                 });
    EXPECT_TRUE(bEsperam) << "a durable operation flushes the journal, and the others share the next flush";
    falhas.Limpa();
    dispositivo.SetAoAlterar(nullptr);
    for (std::size_t ui = 0; ui < k_uiChamadores; ++ui)
        if (SUCCEEDED(rodada.aResultados[ui]))
            rodada.aRetratos[ui] = XVRetrataIntegracao(*pLoja, rodada.aDmcs[ui]);
    rodada.vivo = XVRetrataLoja(*pLoja);
    EXPECT_EQ(pLoja->Finaliza(), S_OK);
    return rodada;
}

TEST_F(CXVQuedaGrupo, AQuedaNaoTomaOQueAlgumChamadorJaSabeGravado) {
    std::size_t uiCorte = 1;
    for (bool bCortada = true; bCortada && !HasFailure(); ++uiCorte) {
        SCOPED_TRACE("power failure at change " + std::to_string(uiCorte));
        const SRodada rodada = Roda(uiCorte, nullptr);
        bCortada = rodada.bCortada;
        for (const HRESULT hr : rodada.aResultados) EXPECT_EQ(hr, S_OK);
        if (!bCortada) break;
        m_Arquivos.Restaura(rodada.disco);
        const TLoja pLoja = Abre();
        ASSERT_NE(pLoja, nullptr);
        const TListaDmc lista = XVBusca(*pLoja);
        for (std::size_t ui = 0; ui < k_uiChamadores; ++ui) {
            const REG_XVDMC regDmc = rodada.aDmcs[ui];
            const bool bEsta = std::find(lista.begin(), lista.end(), regDmc.uiValor) != lista.end();
            EXPECT_TRUE(bEsta || !rodada.aReconhecidas[ui]) << "caller " << ui << " was told";
            if (!bEsta) continue;
            EXPECT_EQ(XVRetrataIntegracao(*pLoja, regDmc), rodada.aRetratos[ui]) << "caller " << ui;
        }
    }
    EXPECT_GT(uiCorte, 20U);
}

TEST_F(CXVQuedaGrupo, QuemPreparouSobreUmaOperacaoQueFalhouGravaDeNovo) {
    bool bHouveErro = true;
    for (SFalhaArquivo falha{.eOperacao = EOperacaoArquivo::eGrava, .bGravaMetade = true};
         bHouveErro && !HasFailure(); ++falha.uiNumero) {
        SCOPED_TRACE("write " + std::to_string(falha.uiNumero) + " to a file fails");
        ASSERT_LT(falha.uiNumero, 200U);
        const SRodada rodada = Roda(0, &falha);
        const auto iErros = std::count_if(rodada.aResultados.begin(), rodada.aResultados.end(),
                                          [](HRESULT hr) { return FAILED(hr); });
        bHouveErro = iErros != 0;
        EXPECT_LE(iErros, 1) << "one write failed, one operation";
        const TLoja pLoja = Abre();
        ASSERT_NE(pLoja, nullptr);
        EXPECT_EQ(XVDiferenca(rodada.vivo, XVRetrataLoja(*pLoja)), "") << "reopened";
        EXPECT_EQ(static_cast<std::size_t>(iErros) + XVBusca(*pLoja).size(), k_uiChamadores + 1);
        for (std::size_t ui = 0; ui < k_uiChamadores; ++ui) {
            if (FAILED(rodada.aResultados[ui])) continue;
            EXPECT_NE(rodada.aRetratos[ui].find("chave " + std::to_string(1000 + ui) + ' '),
                      std::string::npos);
        }
    }
}

}  // namespace
