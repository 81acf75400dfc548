// Several callers of one store with Durabilidade 1 share a flush: while the device works for the first, the
// others prepare on top of it. Power failures and failing writes in every moment of that.
#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <thread>

#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/harness/XVSistemaArquivosQueda.h"
#include "tests/middleware/XVCenarioLoja.h"
#include "tests/middleware/XVRetratoLoja.h"

namespace {

using EAlteracao = CXVSistemaArquivosQueda::EAlteracao;

class CXVQuedaGrupo : public CXVCenarioLoja {
  protected:
    static constexpr std::size_t k_uiChamadores = 4;
    static constexpr auto k_esperaMaxima = std::chrono::seconds(5);  // met only where callers do not share

    CXVQuedaGrupo() {
        m_registry.SetNumero(CAmbienteXV::GetChaveRegistry(XV_DF), "Durabilidade", 1);
        m_inicial = m_Arquivos.Retrata();
    }

    // One run of the group on a new store. Caller 0 goes first; when its operation is to be brought to the
    // device the others start, and it goes on when each of them has written to the journal.
    struct SRodada {
        std::array<HRESULT, k_uiChamadores> aResultados{};
        std::array<std::string, k_uiChamadores> aRetratos;  // of what each recorded, in the living object
        std::array<REG_XVDMC, k_uiChamadores> aDmcs{};
        TRetratoLoja vivo;
        bool bCortada = false;
        std::array<bool, k_uiChamadores> aReconhecidas{};  // when it was cut
        CXVSistemaArquivosMemoria::TRetrato disco;
    };
    class CXVFila;
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

// The callers: 0 in this thread, and the others while the device works for it.
class CXVQuedaGrupo::CXVFila {
  public:
    explicit CXVFila(std::function<void(std::size_t)> fnOpera) : m_fnOpera(std::move(fnOpera)) {}

    std::mutex& GetMutex() { return m_mutex; }
    bool TodosVieram() const { return m_fios.size() == k_uiChamadores - 1; }
    void Executa() {
        Opera(0);
        for (std::thread& fio : m_fios) fio.join();
    }
    // At a change of the journal. For the first flush of caller 0: starts the others and waits until each has
    // written or is done; true.
    bool EsperaTodos(std::unique_lock<std::mutex>& rTrava, EAlteracao eAlteracao) {
        if (s_uiChamador != 0) {
            Chegou(s_uiChamador);
            return false;
        }
        if (eAlteracao != EAlteracao::eSincroniza || !m_fios.empty()) return false;
        for (std::size_t ui = 1; ui < k_uiChamadores; ++ui) m_fios.emplace_back([this, ui] { Opera(ui); });
        m_avisa.wait_for(rTrava, k_esperaMaxima, [this] {
            return std::count(m_aNaFila.begin(), m_aNaFila.end(), true) + 1 == k_uiChamadores;
        });
        return true;
    }

  private:
    void Opera(std::size_t uiChamador) {
        const CXVCapturaTrace captura;  // records are captured thread by thread
        s_uiChamador = uiChamador;
        m_fnOpera(uiChamador);
        const std::lock_guard trava(m_mutex);
        Chegou(uiChamador);
    }
    void Chegou(std::size_t uiChamador) {
        m_aNaFila[uiChamador] = true;
        m_avisa.notify_all();
    }

    static inline thread_local std::size_t s_uiChamador = 0;
    std::function<void(std::size_t)> m_fnOpera;
    std::mutex m_mutex;
    std::condition_variable m_avisa;
    std::array<bool, k_uiChamadores> m_aNaFila{};
    std::vector<std::thread> m_fios;
};

CXVQuedaGrupo::SRodada CXVQuedaGrupo::Roda(std::size_t uiCorte, const SFalhaArquivo* pFalha) {
    m_Arquivos.Restaura(m_inicial);
    CXVSistemaArquivosQueda dispositivo(m_Arquivos);
    CXVSistemaArquivosFalhas falhas(dispositivo);
    const CXVGuardaSistemaArquivos guarda(falhas);
    falhas.SetFiltro([](const std::string& sCaminho) { return sCaminho.ends_with(".dat"); });
    SRodada rodada;
    const TLoja pLoja = Abre();
    REG_XVDMC regPrimeira;
    if (pLoja == nullptr || FAILED(Grava(*pLoja, 99, &regPrimeira))) return rodada;

    std::array<bool, k_uiChamadores> aReconhecidas{};
    std::size_t uiAlteracoes = 0;
    CXVFila fila([&](std::size_t uiChamador) {
        const HRESULT hr = Grava(*pLoja, uiChamador, &rodada.aDmcs[uiChamador]);
        const std::lock_guard trava(fila.GetMutex());
        rodada.aResultados[uiChamador] = hr;
        aReconhecidas[uiChamador] = SUCCEEDED(hr);
    });
    dispositivo.SetAoAlterar([&](const std::string& sCaminho, EAlteracao eAlteracao) {
        std::unique_lock trava(fila.GetMutex());
        if (++uiAlteracoes == uiCorte) {
            rodada.bCortada = true;
            rodada.aReconhecidas = aReconhecidas;
            rodada.disco = dispositivo.Corta(uiCorte);
        }
        if (sCaminho.ends_with(".srk") && fila.EsperaTodos(trava, eAlteracao) && pFalha != nullptr)
            falhas.Programa(*pFalha);
    });
    fila.Executa();
    falhas.Limpa();
    dispositivo.SetAoAlterar(nullptr);
    EXPECT_TRUE(fila.TodosVieram()) << "a durable operation flushes the journal";
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
