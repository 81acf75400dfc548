// What the store's operations cost with 1,000,000 integrations over 100 days on the local disk.
// Options: --integracoes=N --dias=N --pasta=DIRECTORY (kept, and used again) and --carga: instead of the
// benchmarks, record everything one by one and print time and peak memory.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <random>

#include "bench/XVBenchCenarioLoja.h"
#include "contract/XVCR_BuffersPS.h"

namespace {

CXVAmbienteBench& Ambiente() {
    return CXVAmbienteBench::Instancia();
}

// One open store for all benchmarks that need one.
CBaseMiddleware& Loja() {
    static const auto pLoja = [] {
        Ambiente().CriaDados();
        auto p = std::make_unique<CBaseMiddleware>();
        Exige(p->Inicializa(&Ambiente()), "Inicializa");
        return p;
    }();
    return *pLoja;
}

void Busca(benchmark::State& state, tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS& rFiltro) {
    CBaseMiddleware& rLoja = Loja();
    XVUInt ulAchadas = 0;
    for (auto _ : state) {
        _REG_DF_LISTA_XVDMCPS lista{};
        Exige(rLoja.BuscaPonteiros(rFiltro, &lista), "BuscaPonteiros");
        ulAchadas = lista.ulQuantidade;
        XVLiberaBuffers(&lista);
    }
    state.counters["found"] = ulAchadas;
}

// Opening and closing: the whole index is read and its keys are built. First, while no other object shares
// it.
void Abertura(benchmark::State& state) {
    Ambiente().CriaDados();
    for (auto _ : state) {
        CBaseMiddleware loja;
        Exige(loja.Inicializa(&Ambiente()), "Inicializa");
        Exige(loja.Finaliza(), "Finaliza");
    }
}
BENCHMARK(Abertura)->Unit(benchmark::kMillisecond);

void BuscaPrimeiroNivel(benchmark::State& state) {
    XVUInt eStatus = eXVSMiddleware_Erro;
    tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS filtro{};
    filtro.ulQuantidadeStatusIntegracao = 1;
    filtro.pListaStatusIntegracao = &eStatus;
    Busca(state, filtro);
}
BENCHMARK(BuscaPrimeiroNivel)->Unit(benchmark::kMillisecond);

void BuscaSegundoNivel(benchmark::State& state) {
    XVUInt eTipo = eXVSMiddleware_CadastroProduto;
    tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS filtro{};
    filtro.ulQuantidadeTipoIntegracao = 1;
    filtro.pListaTipoIntegracao = &eTipo;
    Busca(state, filtro);
}
BENCHMARK(BuscaSegundoNivel)->Unit(benchmark::kMillisecond);

void BuscaDireta(benchmark::State& state) {
    XVUInt eSistema = Mercos;
    tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS filtro{};
    filtro.uiChaveIntegracaoSistemaTerceiroInicial = 2;
    filtro.ulQuantidadeSistemaIntegracao = 1;
    filtro.pListaSistemaIntegracao = &eSistema;
    Busca(state, filtro);
}
BENCHMARK(BuscaDireta)->Unit(benchmark::kMicrosecond);

// Reads with three texts; Arg: over how many days (two stay open, more open a member each time).
void Leitura(benchmark::State& state) {
    CBaseMiddleware& rLoja = Loja();
    const unsigned uiDias = static_cast<unsigned>(state.range(0));
    const unsigned uiPorDia = Ambiente().PorDia();
    std::mt19937 sorteio(1);
    unsigned uiDia = 0;
    for (auto _ : state) {
        uiDia = (uiDia + 1) % uiDias;
        tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
        Exige(rLoja.LeIntegracao(
                  Ambiente().Dmc(uiDia * uiPorDia + static_cast<unsigned>(sorteio() % uiPorDia)), &reg, 7),
              "LeIntegracao");
        XVLiberaBuffers(&reg);
    }
}
BENCHMARK(Leitura)->Arg(1)->Arg(2)->Arg(3)->Unit(benchmark::kMicrosecond);

void Status(benchmark::State& state) {
    CBaseMiddleware& rLoja = Loja();
    Ambiente().SetDia(0);
    std::mt19937 sorteio(1);
    tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS status{};
    for (auto _ : state) {
        status.regDmc = Ambiente().Dmc(static_cast<unsigned>(sorteio() % Ambiente().PorDia()));
        status.eStatusIntegracao = 1 + static_cast<XVUInt>(sorteio() % 5);
        Exige(rLoja.GravaStatusIntegracao(status), "GravaStatusIntegracao");
    }
}
BENCHMARK(Status)->Unit(benchmark::kMicrosecond);

void Gravacao(benchmark::State& state) {
    CBaseMiddleware& rLoja = Loja();
    Ambiente().SetDia(Ambiente().GetOpcoes().uiDias);
    unsigned uiNumero = Ambiente().GetOpcoes().uiIntegracoes;
    for (auto _ : state) {
        const auto reg = XVIntegracaoBench(uiNumero++);
        REG_XVDMC regDmc;
        Exige(rLoja.GravaIntegracao(&regDmc, &reg), "GravaIntegracao");
    }
}
BENCHMARK(Gravacao)->Unit(benchmark::kMicrosecond);

// Takes this program's own options out of the arguments.
SOpcoesBench LeOpcoes(int* piArgumentos, char** ppArgumentos) {
    SOpcoesBench opcoes;
    int iResto = 1;
    for (int i = 1; i < *piArgumentos; ++i) {
        const std::string_view s = ppArgumentos[i];
        const std::string sValor(s.substr(std::min(s.find('='), s.size() - 1) + 1));
        const auto uiValor = static_cast<unsigned>(std::strtoul(sValor.c_str(), nullptr, 10));
        if (s.starts_with("--integracoes="))
            opcoes.uiIntegracoes = uiValor;
        else if (s.starts_with("--dias="))
            opcoes.uiDias = uiValor;
        else if (s.starts_with("--pasta="))
            opcoes.sPasta = sValor;
        else if (s == "--carga")
            opcoes.bCarga = true;
        else
            ppArgumentos[iResto++] = ppArgumentos[i];
    }
    *piArgumentos = iResto;
    return opcoes;
}

}  // namespace

int main(int argc, char** argv) {
    const SOpcoesBench opcoes = LeOpcoes(&argc, argv);
    if (opcoes.uiDias < 3 || opcoes.uiIntegracoes < opcoes.uiDias) {
        std::fprintf(stderr, "--dias: at least 3; --integracoes: at least one a day\n");
        return 2;
    }
    CXVAmbienteBench ambiente(opcoes);
    if (opcoes.bCarga) return XVCargaMilhao(ambiente);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    benchmark::RunSpecifiedBenchmarks();
    Exige(Loja().Finaliza(), "Finaliza");
    return 0;
}
