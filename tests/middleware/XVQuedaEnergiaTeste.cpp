// Power failures in the middle of random scripts. A state is a number: it names the script, the moment of the
// failure and what of the writes until then had reached the device; the same number is the same state.
//
// XV_QUEDAS: states for each durability (300); XV_QUEDA_PRIMEIRA: the first of them (1000).
#include <stdexcept>

#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/harness/XVSistemaArquivosQueda.h"
#include "tests/middleware/XVExameQueda.h"
#include "tests/middleware/XVMaquinaMorte.h"

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

// One script, cut at several moments of its single run. In every other script the device also refuses one
// write: what a failed operation leaves behind must not hurt after a power failure either.
class CXVExecucaoQueda {
  public:
    CXVExecucaoQueda(XVUInt64 uiRoteiro, CXVMaquinaMorte& rMaquina)
        : m_roteiro(rMaquina.Roteiro(uiRoteiro)), m_dispositivo(m_arquivos), m_falhas(m_dispositivo) {
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
    bool TemFalha() const { return m_uiPassoComFalha != 0; }
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

// Examines the cuts of one script; how many of the stores were refused.
unsigned Examina(const CXVExecucaoQueda& rExecucao, bool bDurabilidade) {
    unsigned uiRecusadas = 0;
    for (const SCorte& rCorte : rExecucao.GetCortes()) {
        CXVSistemaArquivosMemoria arquivos;
        arquivos.Restaura(rCorte.disco);
        const CXVGuardaSistemaArquivos guarda(arquivos);
        const SVerdadeQueda verdade = rExecucao.GetVerdade(rCorte);
        CXVExameQueda exame(verdade);
        try {
            exame.Recuperada(bDurabilidade, rExecucao.TemFalha());
            if (bDurabilidade)
                exame.ComDurabilidade();
            else if (!exame.SemDurabilidade())
                ++uiRecusadas;
        } catch (const std::runtime_error& erro) {
            ADD_FAILURE() << "state " << rCorte.uiEstado << ": " << erro.what();
        }
    }
    return uiRecusadas;
}

// 0, the system has what was acknowledged, and a power failure may take it away; 1, the device has it.
class CXVQuedaEnergia : public testing::TestWithParam<XVUInt> {};

TEST_P(CXVQuedaEnergia, EmEstadosDeRoteirosAoAcaso) {
    const XVUInt64 uiPrimeiro = XVDoAmbiente("XV_QUEDA_PRIMEIRA", 1000);
    const XVUInt64 uiEstados = XVDoAmbiente("XV_QUEDAS", 300);
    unsigned uiRecusadas = 0;
    for (XVUInt64 ui = uiPrimeiro; ui < uiPrimeiro + uiEstados;) {
        CXVMaquinaMorte maquina("/telvo", GetParam());
        const XVUInt64 uiRoteiro = ui / k_uiEstadosPorRoteiro;
        CXVExecucaoQueda execucao(uiRoteiro, maquina);
        for (; ui < uiPrimeiro + uiEstados && ui / k_uiEstadosPorRoteiro == uiRoteiro; ++ui)
            execucao.Marca(ui);
        ASSERT_TRUE(execucao.Executa())
            << "script " << uiRoteiro
            << ": a step failed without a fault, or the store did not open after one";
        uiRecusadas += Examina(execucao, GetParam() == 1);
    }
    RecordProperty("refused", static_cast<int>(uiRecusadas));
    // About two of five, without durability.
    EXPECT_TRUE(uiEstados < 300 || uiRecusadas < uiEstados * 3 / 5) << "a refused store shows nothing at all";
}

INSTANTIATE_TEST_SUITE_P(Durabilidade, CXVQuedaEnergia, testing::Values(0U, 1U),
                         testing::PrintToStringParamName());

}  // namespace
