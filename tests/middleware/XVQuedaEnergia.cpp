#include "tests/middleware/XVQuedaEnergia.h"

#include <vector>

#include "support/trace/XVCapturaTrace.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/harness/XVSistemaArquivosQueda.h"
#include "tests/middleware/XVExameQueda.h"
#include "tests/middleware/XVRoteiroAleatorio.h"

namespace {

constexpr XVUInt64 k_uiEstadosPorRoteiro = 20;
constexpr const char* k_pszDiretorio = "/telvo/MATRIZ/DF";

using TRetratoDisco = CXVSistemaArquivosMemoria::TRetrato;

// A failure at change uiAlteracao of step uiPasso, or after the step when it has fewer.
struct SCorte {
    XVUInt64 uiEstado = 0;
    std::size_t uiPasso = 0;
    std::size_t uiAlteracao = 0;
    bool bFeito = false;
    bool bReconhecida = false;
    TRetratoDisco disco;
};

// Clock, registry and company of one run.
class CXVAmbienteQueda {
  public:
    explicit CXVAmbienteQueda(EDurabilidade eDurabilidade)
        : m_guardaRelogio(m_relogio), m_guardaRegistry(m_registry) {
        const std::string sChave = CAmbienteXV::GetChaveRegistry(XV_DF);
        m_registry.SetTexto(sChave, "Path", "/telvo");
        m_registry.SetNumero(sChave, "Durabilidade", static_cast<XVUInt>(eDurabilidade));
    }
    CXVRelogioFalso& GetRelogio() { return m_relogio; }

  private:
    CXVRelogioFalso m_relogio;
    CXVRegistryFalso m_registry;
    CXVGuardaRelogio m_guardaRelogio;
    CXVGuardaRegistry m_guardaRegistry;
    CXVCapturaTrace m_captura;  // refusals are expected
};

// One script, cut at several moments of its single run. In every other script the device also refuses one
// write: what a failed operation leaves behind must not hurt after a power failure either.
class CXVExecucaoQueda {
  public:
    CXVExecucaoQueda(XVUInt64 uiRoteiro, CXVRelogioFalso& rRelogio)
        : m_roteiro(uiRoteiro, rRelogio), m_dispositivo(m_arquivos), m_falhas(m_dispositivo) {
        m_arquivos.CriaDiretorio(k_pszDiretorio).Ignora();
        if (uiRoteiro % 2 == 0) return;
        CXVSorteio sorteio(uiRoteiro);
        m_uiPassoComFalha = 1 + sorteio.Ate(m_roteiro.GetQuantidade());
        m_falha = {.eOperacao = EOperacaoArquivo::eGrava,
                   .uiNumero = 1 + sorteio.Ate(16),
                   .eCausa = ECausaArquivo::eErroFisico,
                   .bGravaMetade = sorteio.Acontece(1, 2)};
    }

    // What the state's number says. Drawn before anything runs: no other state has a part in it.
    void Marca(XVUInt64 uiEstado) {
        CXVSorteio sorteio(uiEstado);
        SCorte corte;
        corte.uiEstado = uiEstado;
        corte.uiPasso = sorteio.Ate(m_roteiro.GetQuantidade() + 1);
        corte.uiAlteracao = 1 + sorteio.Ate(corte.uiPasso == 0 ? 40 : 24);
        m_listaCortes.push_back(std::move(corte));
    }
    // False: a step failed without a fault, or the store did not open after one.
    bool Executa() {
        const CXVGuardaSistemaArquivos guarda(m_falhas);
        bool bOk = Passa(0, [&] { return m_roteiro.Abre(); });
        for (std::size_t ui = 1; bOk && ui <= m_roteiro.GetQuantidade(); ++ui)
            bOk = Passa(ui, [&] { return m_roteiro.Passo(); });
        m_roteiro.Fecha();
        return bOk;
    }
    const std::vector<SCorte>& GetCortes() const { return m_listaCortes; }
    SVerdadeQueda GetVerdade(const SCorte& rCorte) const {
        const std::size_t uiAntes = rCorte.uiPasso == 0 ? 0 : rCorte.uiPasso - 1;
        return {m_listaRetratos[uiAntes], m_listaRetratos[rCorte.uiPasso], rCorte.bReconhecida,
                m_roteiro.GetDonos()};
    }

  private:
    template <class TFn>
    bool Passa(std::size_t uiPasso, TFn fn) {
        std::size_t uiAlteracao = 0;
        m_dispositivo.SetAoAlterar(
            [&](const std::string& /*sCaminho*/, CXVSistemaArquivosQueda::EAlteracao /*e*/) {
                Corta(uiPasso, ++uiAlteracao, false);
            });
        if (uiPasso != 0 && uiPasso == m_uiPassoComFalha) m_falhas.Programa(m_falha);
        const bool bOk = fn();
        const bool bHouveFalha = m_falhas.GetFalhasOcorridas() != 0;
        m_falhas.Limpa();
        m_dispositivo.SetAoAlterar(nullptr);
        // Closing under a fault leaves the store closed; it opens again when the fault is over.
        if (!bOk && (!bHouveFalha || (!m_roteiro.EstaAberto() && !m_roteiro.Abre()))) return false;
        Corta(uiPasso, 0, true);
        m_listaRetratos.push_back(m_roteiro.Retrata());
        return true;
    }
    void Corta(std::size_t uiPasso, std::size_t uiAlteracao, bool bReconhecida) {
        for (SCorte& rCorte : m_listaCortes) {
            if (rCorte.bFeito || rCorte.uiPasso != uiPasso) continue;
            // Until the step with the fault is over its operation may still take place: no picture shows
            // that.
            const bool bNaHora = uiPasso != m_uiPassoComFalha && rCorte.uiAlteracao == uiAlteracao;
            if (!bReconhecida && !bNaHora) continue;
            rCorte.bFeito = true;
            rCorte.bReconhecida = bReconhecida;
            rCorte.disco = m_dispositivo.Corta(rCorte.uiEstado);
        }
    }

    CXVSistemaArquivosMemoria m_arquivos;
    CXVRoteiroAleatorio m_roteiro;
    CXVSistemaArquivosQueda m_dispositivo;
    CXVSistemaArquivosFalhas m_falhas;
    SFalhaArquivo m_falha;
    std::size_t m_uiPassoComFalha = 0;  // 0: none
    std::vector<SCorte> m_listaCortes;
    std::vector<TRetratoLoja> m_listaRetratos;  // after each step
};

}  // namespace

SContagemQueda XVExaminaQuedas(
    EDurabilidade eDurabilidade, XVUInt64 uiPrimeiro, XVUInt64 uiQuantidade,
    const std::function<void(XVUInt64 uiEstado, const std::string& sFalha)>& fnFalha) {
    SContagemQueda contagem;
    const auto falha = [&](XVUInt64 uiEstado, const std::string& sFalha) {
        if (sFalha.empty()) return;
        ++contagem.uiFalhas;
        fnFalha(uiEstado, sFalha);
    };
    for (XVUInt64 ui = uiPrimeiro; ui < uiPrimeiro + uiQuantidade;) {
        CXVAmbienteQueda ambiente(eDurabilidade);
        const XVUInt64 uiRoteiro = ui / k_uiEstadosPorRoteiro;
        CXVExecucaoQueda execucao(uiRoteiro, ambiente.GetRelogio());
        for (; ui < uiPrimeiro + uiQuantidade && ui / k_uiEstadosPorRoteiro == uiRoteiro; ++ui)
            execucao.Marca(ui);
        if (!execucao.Executa()) {
            falha(ui - 1, "a step failed without a fault, or the store did not open after one");
            continue;
        }
        for (const SCorte& rCorte : execucao.GetCortes()) {
            CXVSistemaArquivosMemoria arquivos;
            arquivos.Restaura(rCorte.disco);
            const CXVGuardaSistemaArquivos guarda(arquivos);
            const SVerdadeQueda verdade = execucao.GetVerdade(rCorte);
            CXVExameQueda exame(verdade);
            falha(rCorte.uiEstado, eDurabilidade == EDurabilidade::eDispositivo ? exame.ComDurabilidade()
                                                                                : exame.SemDurabilidade());
            ++contagem.uiEstados;
            if (exame.FoiRecusada()) ++contagem.uiRecusadas;
        }
    }
    return contagem;
}
