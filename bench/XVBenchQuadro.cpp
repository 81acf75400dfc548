// What the frame adds to an operation called in process: the same operation of a logic object called
// directly and through the component's interface. The target is less than a microsecond.
#include <benchmark/benchmark.h>

#include "platform/XVPlataforma.h"
#include "tests/xvrpcdll/XVLogicaFalsa.h"

namespace {

const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS k_regChave{};

class CComponenteBench {
  public:
    CComponenteBench() {
        m_controle.fnOperacao = [] { return S_OK; };
        const REG_DF_INICIALIZAPS reg = RegistroValido();
        m_hr = m_p->Inicializa_Padrao(&reg);
    }
    IXVCR_Middleware& Get() { return *m_p.operator->(); }
    HRESULT GetResultado() const { return m_hr; }

  private:
    SControleLogica m_controle;
    CReferencia m_p;
    HRESULT m_hr = S_OK;
};

void OperacaoDireta(benchmark::State& estado) {
    SControleLogica controle;
    controle.fnOperacao = [] { return S_OK; };
    CLogicaFalsa logica;
    for (auto _ : estado) benchmark::DoNotOptimize(logica.GravaChaveRegistroTelvoParaTerceiro(k_regChave));
}
BENCHMARK(OperacaoDireta);

void OperacaoPeloQuadro(benchmark::State& estado) {
    CComponenteBench componente;
    if (FAILED(componente.GetResultado())) estado.SkipWithError("Inicializa_Padrao");
    for (auto _ : estado)
        benchmark::DoNotOptimize(componente.Get().GravaChaveRegistroTelvoParaTerceiro(&k_regChave));
}
BENCHMARK(OperacaoPeloQuadro);

// Of which the system's own yield.
void CedeProcessador(benchmark::State& estado) {
    for (auto _ : estado) XVPlataforma::Relogio().Dorme(0);
}
BENCHMARK(CedeProcessador);

}  // namespace
