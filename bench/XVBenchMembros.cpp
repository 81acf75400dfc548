// Reading and status at random over many days, beside SQLite: what it costs that a day's files are not the
// ones of the day before. The two take turns, so that what else the machine does meets both.
// Options: --integracoes=N --dias=N --pasta=DIRECTORY (kept, and used again) --rodadas=N --operacoes=N (of
// each kind and round) --memoria=MB (registry value MemoriaMembros)
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "bench/XVBenchCenarioLoja.h"
#include "bench/XVBenchMembrosSqlite.h"
#include "contract/XVCR_BuffersPS.h"

namespace {

struct SRodadas {
    unsigned uiRodadas = 20;
    unsigned uiOperacoes = 500;
};

struct SMedida {
    std::vector<double> listaUs;

    template <class TOperacao>
    void Mede(TOperacao operacao) {
        const auto inicio = std::chrono::steady_clock::now();
        operacao();
        listaUs.push_back(
            std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - inicio).count());
    }
    double Mediana() {
        const auto itMeio = listaUs.begin() + static_cast<std::ptrdiff_t>(listaUs.size() / 2);
        std::nth_element(listaUs.begin(), itMeio, listaUs.end());
        return *itMeio;
    }
    double Media() const {
        double dSoma = 0;
        for (const double d : listaUs) dSoma += d;
        return dSoma / static_cast<double>(listaUs.size());
    }
};

void LeLoja(CBaseMiddleware& rLoja, unsigned uiNumero) {
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    Exige(rLoja.LeIntegracao(CXVAmbienteBench::Instancia().Dmc(uiNumero), &reg, 7), "LeIntegracao");
    XVLiberaBuffers(&reg);
}

void GravaStatusLoja(CBaseMiddleware& rLoja, unsigned uiNumero, XVUInt eStatus,
                     const std::string& sMensagem) {
    tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS status{};
    status.regDmc = CXVAmbienteBench::Instancia().Dmc(uiNumero);
    status.eStatusIntegracao = eStatus;
    status.regMensagemIntegracao = CXVStringPS::Vista(sMensagem);
    Exige(rLoja.GravaStatusIntegracao(status), "GravaStatusIntegracao");
}

// operacao(number of the integration, running number) of the store and of SQLite, over the first uiDias days.
template <class TLoja, class TSqlite>
void Compara(const char* pszNome, unsigned uiDias, const SRodadas& rRodadas, TLoja loja, TSqlite sqlite) {
    SMedida medidaLoja;
    SMedida medidaSqlite;
    std::mt19937 sorteio(1);
    const unsigned uiAlcance = CXVAmbienteBench::Instancia().PorDia() * uiDias;
    for (unsigned uiRodada = 0; uiRodada < rRodadas.uiRodadas; ++uiRodada) {
        std::vector<unsigned> listaNumeros(rRodadas.uiOperacoes);
        for (unsigned& rNumero : listaNumeros) rNumero = static_cast<unsigned>(sorteio() % uiAlcance);
        unsigned uiCorrente = uiRodada * rRodadas.uiOperacoes;
        for (const unsigned uiNumero : listaNumeros) medidaLoja.Mede([&] { loja(uiNumero, ++uiCorrente); });
        for (const unsigned uiNumero : listaNumeros)
            medidaSqlite.Mede([&] { sqlite(uiNumero, ++uiCorrente); });
    }
    const double dLoja = medidaLoja.Mediana();
    const double dSqlite = medidaSqlite.Mediana();
    std::printf("%-7s over %3u days: store %9.1f us (mean %9.1f), SQLite %7.1f us (mean %7.1f), ratio %.2f\n",
                pszNome, uiDias, dLoja, medidaLoja.Media(), dSqlite, medidaSqlite.Media(), dLoja / dSqlite);
    std::fflush(stdout);
}

void Executa(CXVAmbienteBench& rAmbiente, const SRodadas& rRodadas) {
    rAmbiente.CriaDados();
    CXVSqliteMembros sqlite((rAmbiente.GetPasta() / "sqlite.db").string());
    const unsigned uiDias = rAmbiente.GetOpcoes().uiDias;
    if (sqlite.EstaVazio()) sqlite.Carrega(rAmbiente.PorDia() * uiDias);
    CBaseMiddleware loja;
    Exige(loja.Inicializa(&rAmbiente), "Inicializa");
    const auto mensagem = [](unsigned uiCorrente) {
        std::string s = "Pedido recusado: o produto " + std::to_string(uiCorrente) + " está sem saldo";
        s.resize(80, '.');
        return s;
    };
    const auto leLoja = [&](unsigned uiNumero, unsigned) { LeLoja(loja, uiNumero); };
    const auto leSqlite = [&](unsigned uiNumero, unsigned) { sqlite.Le(uiNumero); };
    const auto statusLoja = [&](unsigned uiNumero, unsigned uiCorrente) {
        GravaStatusLoja(loja, uiNumero, 1 + uiCorrente % 5, mensagem(uiCorrente));
    };
    const auto statusSqlite = [&](unsigned uiNumero, unsigned uiCorrente) {
        sqlite.GravaStatus(uiNumero, 1 + uiCorrente % 5, mensagem(uiCorrente));
    };
    for (const unsigned uiAlcance : {1U, 10U, uiDias}) {
        Compara("read", std::min(uiAlcance, uiDias), rRodadas, leLoja, leSqlite);
        Compara("status", std::min(uiAlcance, uiDias), rRodadas, statusLoja, statusSqlite);
    }
    std::printf("peak memory of the program: %.0f MiB\n", XVPicoMemoria());
    Exige(loja.Finaliza(), "Finaliza");
}

}  // namespace

int main(int argc, char** argv) {
    SOpcoesBench opcoes;
    SRodadas rodadas;
    for (int i = 1; i < argc; ++i) {
        const std::string_view s = argv[i];
        const std::string sValor(s.substr(std::min(s.find('='), s.size() - 1) + 1));
        const auto uiValor = static_cast<unsigned>(std::strtoul(sValor.c_str(), nullptr, 10));
        if (s.starts_with("--integracoes="))
            opcoes.uiIntegracoes = uiValor;
        else if (s.starts_with("--dias="))
            opcoes.uiDias = uiValor;
        else if (s.starts_with("--pasta="))
            opcoes.sPasta = sValor;
        else if (s.starts_with("--rodadas="))
            rodadas.uiRodadas = uiValor;
        else if (s.starts_with("--operacoes="))
            rodadas.uiOperacoes = uiValor;
        else if (s.starts_with("--memoria="))
            opcoes.ulMemoriaMembros = uiValor;
        else {
            std::fprintf(stderr, "unknown option: %s\n", argv[i]);
            return 2;
        }
    }
    if (opcoes.uiDias == 0 || opcoes.uiIntegracoes < opcoes.uiDias || rodadas.uiRodadas == 0 ||
        rodadas.uiOperacoes == 0) {
        std::fprintf(stderr, "at least one day, one integration a day, one round and one operation\n");
        return 2;
    }
    CXVAmbienteBench ambiente(opcoes);
    Executa(ambiente, rodadas);
    return 0;
}
