// What the operation journal costs, and what a recording that has reached the device costs beside SQLite. All
// ways of recording take turns within one run, block by block, so that what else the machine does meets all
// of them alike; the figures are medians and minima over the rounds.
//
// Options: --rodadas=N (rounds), --operacoes=N (of a block that waits for no device), --aquecimento=N (before
// the first round), --so=PART (of the name), --json=FILE, --pasta=DIRECTORY (of the disk to measure;
// otherwise the system's place for temporary files).
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "bench/XVBenchVariantesDiario.h"

#if defined(__OPTIMIZE__) && defined(NDEBUG)
constexpr bool k_bOtimizado = true;
#else
constexpr bool k_bOtimizado = false;
#endif

namespace {

struct SOpcoes {
    unsigned uiRodadas = 15;
    STamanhosBloco tamanhos;
    std::string sFiltro;
    std::string sJson;
    std::string sPasta;
    bool bValidas = true;
};

SOpcoes LeOpcoes(int iArgumentos, char** ppArgumentos) {
    SOpcoes opcoes;
    for (int i = 1; i < iArgumentos; ++i) {
        const std::string_view s = ppArgumentos[i];
        const std::string sValor(s.substr(std::min(s.find('='), s.size() - 1) + 1));
        const auto uiValor = static_cast<unsigned>(std::strtoul(sValor.c_str(), nullptr, 10));
        if (s.starts_with("--rodadas="))
            opcoes.uiRodadas = uiValor;
        else if (s.starts_with("--operacoes="))
            opcoes.tamanhos = {uiValor, std::max(1U, uiValor / 2),
                               std::max(1U, uiValor / 4) * k_uiThreadsBench, opcoes.tamanhos.uiAquecimento};
        else if (s.starts_with("--aquecimento="))
            opcoes.tamanhos.uiAquecimento = uiValor;
        else if (s.starts_with("--so="))
            opcoes.sFiltro = sValor;
        else if (s.starts_with("--json="))
            opcoes.sJson = sValor;
        else if (s.starts_with("--pasta="))
            opcoes.sPasta = sValor;
        else
            opcoes.bValidas = false;
    }
    opcoes.bValidas = opcoes.bValidas && opcoes.uiRodadas > 0 && opcoes.tamanhos.uiSemEspera > 0;
    return opcoes;
}

double Mede(const SVarianteDiario& rVariante) {
    using TRelogio = std::chrono::steady_clock;
    const TRelogio::time_point inicio = TRelogio::now();
    rVariante.fnBloco(rVariante.uiOperacoes);
    const std::chrono::duration<double, std::micro> duracao = TRelogio::now() - inicio;
    return duracao.count() / rVariante.uiOperacoes;
}

// What makes the files and warms up does not count. No variant always goes first.
void MedeTodas(std::vector<SVarianteDiario>& rLista, const SOpcoes& rOpcoes) {
    for (const SVarianteDiario& rVariante : rLista) rVariante.fnBloco(rOpcoes.tamanhos.uiAquecimento);
    for (unsigned uiRodada = 0; uiRodada < rOpcoes.uiRodadas; ++uiRodada) {
        for (std::size_t i = 0; i < rLista.size(); ++i) {
            SVarianteDiario& rVariante = rLista[(i + uiRodada) % rLista.size()];
            rVariante.listaUs.push_back(Mede(rVariante));
        }
    }
}

double Mediana(std::vector<double> lista) {
    std::sort(lista.begin(), lista.end());
    const std::size_t uiMeio = lista.size() / 2;
    return lista.size() % 2 == 1 ? lista[uiMeio] : (lista[uiMeio - 1] + lista[uiMeio]) / 2;
}
double Minimo(const std::vector<double>& lista) {
    return *std::min_element(lista.begin(), lista.end());
}

// A goal: how the figures of two variants stand to each other.
struct SMeta {
    const char* pszNome;
    const char* pszVariante1;
    const char* pszVariante2;
    double (*pfnRelacao)(double d1, double d2);
    double dMeta;
    bool bNoMaximo;
    const char* pszUnidade;
};

double Diferenca(double d1, double d2) {
    return d1 - d2;
}
double Quociente(double d1, double d2) {
    return d1 / d2;
}

constexpr SMeta k_aMetas[] = {
    {"cost of the journal, Durabilidade 0", "operacao-com-diario", "operacao-sem-diario", Diferenca, 1.0,
     true, "us"},
    {"Durabilidade 1 to SQLite, time, one caller", "loja-1", "sqlite", Quociente, 0.65, true, ""},
    {"Durabilidade 1 to SQLite, rate, 8 callers", "sqlite-threads", "loja-1-threads", Quociente, 3.0, false,
     ""},
    {"Durabilidade 1, rate, 8 callers to one", "loja-1", "loja-1-threads", Quociente, 3.0, false, ""},
};

const SVarianteDiario* Busca(const std::vector<SVarianteDiario>& rLista, std::string_view sNome) {
    const auto it = std::find_if(rLista.begin(), rLista.end(),
                                 [sNome](const SVarianteDiario& v) { return v.pszNome == sNome; });
    return it == rLista.end() ? nullptr : &*it;
}

struct SResultado {
    const SMeta* pMeta;
    double dMediana;  // of what each round gives
    double dMinimos;  // of the fastest blocks
};

std::vector<SResultado> Compara(const std::vector<SVarianteDiario>& rLista) {
    std::vector<SResultado> lista;
    for (const SMeta& rMeta : k_aMetas) {
        const SVarianteDiario* p1 = Busca(rLista, rMeta.pszVariante1);
        const SVarianteDiario* p2 = Busca(rLista, rMeta.pszVariante2);
        if (p1 == nullptr || p2 == nullptr) continue;
        std::vector<double> listaRelacoes;
        for (std::size_t i = 0; i < p1->listaUs.size(); ++i)
            listaRelacoes.push_back(rMeta.pfnRelacao(p1->listaUs[i], p2->listaUs[i]));
        lista.push_back(
            {&rMeta, Mediana(listaRelacoes), rMeta.pfnRelacao(Minimo(p1->listaUs), Minimo(p2->listaUs))});
    }
    return lista;
}

void Imprime(const std::vector<SVarianteDiario>& rLista, const std::vector<SResultado>& rResultados) {
    std::printf("%-50s %10s %10s %10s\n", "us an operation", "median", "minimum", "op/s");
    for (const SVarianteDiario& v : rLista)
        std::printf("%-50s %10.2f %10.2f %10.0f\n", v.pszDescricao, Mediana(v.listaUs), Minimo(v.listaUs),
                    1e6 / Mediana(v.listaUs));
    if (!rResultados.empty()) std::printf("\n%-50s %10s %10s %10s\n", "", "rounds", "minima", "goal");
    for (const SResultado& r : rResultados)
        std::printf("%-50s %10.2f %10.2f %s %.2f %s\n", r.pMeta->pszNome, r.dMediana, r.dMinimos,
                    r.pMeta->bNoMaximo ? "<=" : ">=", r.pMeta->dMeta, r.pMeta->pszUnidade);
}

bool GravaJson(const std::string& sCaminho, const std::vector<SVarianteDiario>& rLista,
               const std::vector<SResultado>& rResultados) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pArquivo(std::fopen(sCaminho.c_str(), "w"), std::fclose);
    if (pArquivo == nullptr) return false;
    std::fprintf(pArquivo.get(), "{\"variants\": [");
    const char* pszSeparador = "\n";
    for (const SVarianteDiario& v : rLista) {
        std::fprintf(pArquivo.get(),
                     "%s  {\"name\": \"%s\", \"rounds\": %zu, \"median_us\": %.3f, \"minimum_us\": %.3f}",
                     pszSeparador, v.pszNome, v.listaUs.size(), Mediana(v.listaUs), Minimo(v.listaUs));
        pszSeparador = ",\n";
    }
    std::fprintf(pArquivo.get(), "\n], \"goals\": [");
    pszSeparador = "\n";
    for (const SResultado& r : rResultados) {
        std::fprintf(pArquivo.get(),
                     "%s  {\"name\": \"%s\", \"median\": %.3f, \"minima\": %.3f, \"%s\": %.2f}", pszSeparador,
                     r.pMeta->pszNome, r.dMediana, r.dMinimos, r.pMeta->bNoMaximo ? "at_most" : "at_least",
                     r.pMeta->dMeta);
        pszSeparador = ",\n";
    }
    return std::fprintf(pArquivo.get(), "\n]}\n") > 0;
}

}  // namespace

int main(int argc, char** argv) {
    const SOpcoes opcoes = LeOpcoes(argc, argv);
    if (!opcoes.bValidas) {
        std::fprintf(stderr,
                     "options: --rodadas=N --operacoes=N --aquecimento=N --so=PART "
                     "--json=FILE --pasta=DIRECTORY\n");
        return 2;
    }
    if (!k_bOtimizado) {
        std::fprintf(stderr, "This build is not optimised; its figures would mean nothing.\n");
        return 2;
    }
    CXVAmbienteDiario ambiente(opcoes.sPasta);
    std::vector<SVarianteDiario> lista = XVMontaVariantes(ambiente, opcoes.tamanhos, opcoes.sFiltro);
    if (lista.empty()) {
        std::fprintf(stderr, "nothing is called %s\n", opcoes.sFiltro.c_str());
        return 2;
    }
    MedeTodas(lista, opcoes);
    const std::vector<SResultado> listaResultados = Compara(lista);
    Imprime(lista, listaResultados);
    if (!opcoes.sJson.empty() && !GravaJson(opcoes.sJson, lista, listaResultados)) {
        std::fprintf(stderr, "%s could not be written\n", opcoes.sJson.c_str());
        return 1;
    }
    return 0;
}
