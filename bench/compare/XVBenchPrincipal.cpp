// The comparison's program: measures, and writes the figures of every round as JSON to the standard output.
// scripts/bench runs it and makes tables, ratios and the plot of what it wrote.
//
//   xv_bench_comparacao --pasta=DIRECTORY [--integracoes=N --dias=N --gravacoes=N --dias-gravacao=N
//                       --rodadas=N --duraveis=N --status=N --leituras=N --ms-busca=N]
//   xv_bench_comparacao --pasta=DIRECTORY --sozinho=OPPONENT [--integracoes=N --dias=N --leituras=N]
//
// The second form is a fresh process on a large store that the first left in the same directory: it opens it,
// reads one integration, then others at random, and tells times and peak memory.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <random>

#include "bench/compare/XVBenchComparacao.h"
#include "bench/compare/XVBenchLoja.h"

#if defined(__OPTIMIZE__) && defined(NDEBUG)
constexpr bool k_bOtimizado = true;
#else
constexpr bool k_bOtimizado = false;
#endif

namespace {

using nlohmann::ordered_json;

struct SLinhaComando {
    SOpcoesBench opcoes;
    std::string sSozinho;
    bool bValida = true;
};

SLinhaComando LeLinha(int iArgumentos, char** ppArgumentos) {
    SLinhaComando linha;
    SOpcoesBench& r = linha.opcoes;
    const std::map<std::string_view, unsigned*> mapNumeros{
        {"--integracoes", &r.uiIntegracoes},
        {"--dias", &r.uiDias},
        {"--gravacoes", &r.uiGravacoes},
        {"--dias-gravacao", &r.uiDiasGravacao},
        {"--rodadas", &r.uiRodadas},
        {"--duraveis", &r.uiDuraveis},
        {"--status", &r.uiStatus},
        {"--leituras", &r.uiLeituras},
        {"--ms-busca", &r.uiMilissegundosBusca},
    };
    for (int i = 1; i < iArgumentos; ++i) {
        const std::string_view s = ppArgumentos[i];
        const std::size_t uiIgual = std::min(s.find('='), s.size());
        const std::string_view sNome = s.substr(0, uiIgual);
        const std::string sValor(s.substr(std::min(uiIgual + 1, s.size())));
        if (const auto it = mapNumeros.find(sNome); it != mapNumeros.end()) {
            *it->second = static_cast<unsigned>(std::strtoul(sValor.c_str(), nullptr, 10));
            linha.bValida = linha.bValida && *it->second != 0;
        } else if (sNome == "--pasta") {
            r.sPasta = sValor;
        } else if (sNome == "--sozinho") {
            linha.sSozinho = sValor;
        } else {
            linha.bValida = false;
        }
    }
    linha.bValida = linha.bValida && !r.sPasta.empty() && r.uiIntegracoes % r.uiDias == 0 &&
                    r.uiGravacoes % r.uiDiasGravacao == 0;
    return linha;
}

std::vector<SAdversarioBench> Adversarios(CXVAmbienteBench& rAmbiente) {
    return {
        {"store", "the store, journal and general log on", true,
         [&rAmbiente](const SAberturaBench& r) { return XVAbreLoja(rAmbiente, r); }},
        {"sqlite", "SQLite as a user sets it", true,
         [](const SAberturaBench& r) { return XVAbreSqlite(r, false); }},
        {"sqlite-tuned", "SQLite, tuned", false,
         [](const SAberturaBench& r) { return XVAbreSqlite(r, true); }},
        {"lmdb", "LMDB", false, XVAbreLmdb},
        {"bare", "the bare calls", false, XVAbreNu},
    };
}

// Peak resident memory in bytes, where the system tells it; 0 otherwise.
double PicoMemoria() {
    std::ifstream status("/proc/self/status");
    for (std::string sLinha; std::getline(status, sLinha);)
        if (sLinha.starts_with("VmHWM:")) return std::strtod(sLinha.c_str() + 6, nullptr) * 1024.0;
    return 0;
}

ordered_json MedeSozinho(const SAdversarioBench& rAdversario, const SOpcoesBench& rOpcoes) {
    CXVGeradorBench gerador(rOpcoes.uiIntegracoes, rOpcoes.uiDias);
    std::mt19937 sorteio(std::random_device{}());
    const auto regDmc = [&] {
        return gerador.Gera(static_cast<unsigned>(sorteio() % gerador.Quantidade())).regDmc;
    };
    ordered_json resultado;
    const CXVCronometro inicio;
    const auto p = rAdversario.fnAbre({CXVComparacao::PastaGrande(rOpcoes.sPasta, rAdversario.pszNome),
                                       EDuracaoBench::eSistema, rOpcoes.uiIntegracoes});
    XVUInt64 uiSoma = p->Le(regDmc()).uiChave;
    resultado["start_us"] = inicio.Decorridos();
    resultado["start_cpu"] = inicio.Processador();
    resultado["start_bytes"] = PicoMemoria();
    const CXVCronometro leituras;
    for (unsigned i = 0; i < rOpcoes.uiLeituras; ++i) uiSoma += p->Le(regDmc()).uiChave;
    resultado["read_us"] = leituras.Decorridos() / rOpcoes.uiLeituras;
    resultado["read_bytes"] = PicoMemoria();
    resultado["sum"] = uiSoma;
    return resultado;
}

ordered_json Resultado(const SOpcoesBench& rOpcoes, const std::vector<SAdversarioBench>& rAdversarios,
                       const CXVMedidasBench& rMedidas) {
    ordered_json resultado;
    resultado["integrations"] = rOpcoes.uiIntegracoes;
    resultado["days"] = rOpcoes.uiDias;
    resultado["recordings"] = rOpcoes.uiGravacoes;
    resultado["rounds"] = rOpcoes.uiRodadas;
    for (const SAdversarioBench& r : rAdversarios) resultado["opponents"][r.pszNome] = r.pszDescricao;
    for (const SMedidaBench& r : rMedidas.Lista())
        resultado["figures"].push_back({{"work", r.sTrabalho},
                                        {"opponent", r.sAdversario},
                                        {"unit", r.sUnidade},
                                        {"rounds", r.listaRodadas},
                                        {"cpu", r.listaProcessador}});
    return resultado;
}

int Executa(const SLinhaComando& rLinha) {
    CXVAmbienteBench ambiente(rLinha.opcoes.sPasta);
    const std::vector<SAdversarioBench> lista = Adversarios(ambiente);
    ordered_json resultado;
    if (rLinha.sSozinho.empty()) {
        resultado = Resultado(rLinha.opcoes, lista, CXVComparacao(rLinha.opcoes, lista).Mede());
    } else {
        const auto it = std::find_if(lista.begin(), lista.end(),
                                     [&](const SAdversarioBench& r) { return r.pszNome == rLinha.sSozinho; });
        if (it == lista.end()) XVTermina("nobody is called " + rLinha.sSozinho);
        resultado = MedeSozinho(*it, rLinha.opcoes);
    }
    std::printf("%s\n", resultado.dump(1).c_str());
    return 0;
}

}  // namespace

void XVTermina(const std::string& sMotivo) {
    std::fprintf(stderr, "%s\n", sMotivo.c_str());
    std::_Exit(1);
}

int main(int argc, char** argv) {
    const SLinhaComando linha = LeLinha(argc, argv);
    if (!linha.bValida) {
        std::fprintf(stderr, "wrong options; the head of the source says which there are\n");
        return 2;
    }
    if (!k_bOtimizado) {
        std::fprintf(stderr, "This build is not optimised; its figures would mean nothing.\n");
        return 2;
    }
    return Executa(linha);
}
