// What tracing costs: a scope that log.ini switches off, a check that succeeds, a check that fails with
// its record going to a file of the local disk, and one that several threads share.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

#include "platform/XVAmbienteSO.h"
#include "platform/XVPlataforma.h"
#include "support/XVAmbiente.h"
#include "support/trace/XVCheck.h"
#include "support/trace/XVProfiler.h"

namespace {

// The module directory of the benchmark: a fresh one of the local disk.
class CRegistryBench final : public IXVRegistry {
  public:
    CRegistryBench()
        : m_diretorio(std::filesystem::temp_directory_path() / ("xvbench-" + XVAmbienteSO::NovoGuid())) {
        std::filesystem::create_directories(m_diretorio);
        XVPlataforma::TrocaRegistry(this);
        XVProfiler::RecarregaConfiguracao();
    }
    ~CRegistryBench() override {
        XVPlataforma::TrocaRegistry(nullptr);
        std::error_code erro;
        std::filesystem::remove_all(m_diretorio, erro);
    }
    CRegistryBench(const CRegistryBench&) = delete;
    CRegistryBench& operator=(const CRegistryBench&) = delete;
    std::optional<std::string> LeTexto(std::string_view, std::string_view sValor) override {
        return sValor == "Path" ? std::optional(m_diretorio.string()) : std::nullopt;
    }
    std::optional<XVUInt> LeNumero(std::string_view, std::string_view) override { return std::nullopt; }

  private:
    std::filesystem::path m_diretorio;
};

void PreparaDiretorio() {
    static CRegistryBench s_registry;
}

class CClasseBench : public IXVDF_Profiler {
  public:
    XV_CLASSE("CClasseBench", "bench/XVBenchTrace")
    std::string_view GetEmpresa() const override { return {}; }
    XVUShort GetUsuario() const override { return 1; }
    XVUInt GetNumeroSessao() const override { return 1; }

    void Escopo(XVUInt64 uiPosicao) { XV_ESCOPO({"uiPosicao", uiPosicao}); }
    HRESULT Verifica(HRESULT hr) {
        XV_CHECK(Devolve(hr));
        return S_OK;
    }

  private:
    static HRESULT Devolve(HRESULT hr) {
        benchmark::DoNotOptimize(hr);
        return hr;
    }
};

void EscopoDesligado(benchmark::State& rState) {
    PreparaDiretorio();
    CClasseBench objeto;
    XVUInt64 uiPosicao = 0;
    for (auto _ : rState) objeto.Escopo(++uiPosicao);
}
BENCHMARK(EscopoDesligado)->ThreadRange(1, 2);

void VerificacaoQuePassa(benchmark::State& rState) {
    CClasseBench objeto;
    for (auto _ : rState) benchmark::DoNotOptimize(objeto.Verifica(S_OK));
}
BENCHMARK(VerificacaoQuePassa);

void VerificacaoQueFalha(benchmark::State& rState) {
    PreparaDiretorio();
    CClasseBench objeto;
    const XVUInt64 uiPerdidos = XVProfiler::GetLinhasPerdidas();
    for (auto _ : rState) benchmark::DoNotOptimize(objeto.Verifica(E_FAIL));
    rState.counters["perdidos"] = static_cast<double>(XVProfiler::GetLinhasPerdidas() - uiPerdidos);
}
BENCHMARK(VerificacaoQueFalha)->ThreadRange(1, 8)->UseRealTime();

}  // namespace
