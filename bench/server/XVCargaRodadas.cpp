// Programs that connect for one recording and leave again.
#include <algorithm>
#include <cstdio>
#include <iostream>

#include "bench/server/XVCarga.h"
#include "support/trace/XVCheck.h"
#include "tests/com/XVAmbienteCom.h"
#include "tests/com/XVServidores.h"

namespace XVCarga {

namespace {

constexpr int k_iProcessos = 3;
constexpr double k_fMeta = 0.3;  // seconds, of the slowest round when the server is up
// From so many rounds on the goal is part of the result: who asks for them measures, on a machine that has
// nothing else to do. Fewer are made beside other work, to see whether all come through.
constexpr int k_iRodadasQueMedem = 300;

struct SResultado {
    int iFeitas = 0;
    int iFalhas = 0;
    double fMaior = 0;
    double fSoma = 0;
};

HRESULT Rodada(const std::string& sEmpresa, XVUInt64 uiChave) {
    XVCliente::CXVCliente cliente;
    HRESULT hr = cliente.Conecta({.sEmpresa = sEmpresa, .usUsuario = 7});
    if (FAILED(hr)) DizFalha("Conecta", hr);
    REG_XVDMC regDmc;
    if (SUCCEEDED(hr) && FAILED(hr = cliente.GravaIntegracao(&regDmc, Integracao(uiChave, 500))))
        DizFalha("GravaIntegracao", hr);
    XVIgnora(cliente.Desconecta());
    return hr;
}

}  // namespace

// company, rounds, number of the process
void RodadasFilho(const TArgumentos& a) {
    SResultado r;
    const auto uiBase = std::stoull(a.at(3)) * 1000000;
    for (int i = 1; i <= std::stoi(a.at(2)); ++i) {
        const CCronometro cronometro;
        const HRESULT hr = Rodada(a.at(1), uiBase + static_cast<XVUInt64>(i));
        const double fSegundos = cronometro.Segundos();
        ++(FAILED(hr) ? r.iFalhas : r.iFeitas);
        r.fMaior = std::max(r.fMaior, fSegundos);
        r.fSoma += fSegundos;
    }
    std::cout << r.iFeitas << ' ' << r.iFalhas << ' ' << r.fMaior << ' ' << r.fSoma << std::endl;
}

bool Rodadas(int iRodadas, bool bServidorFica) {
    const std::string sEmpresa = XVAmbienteCom::NovaEmpresa();
    if (!XVServidores::Encerra()) return std::puts("rounds: the server does not end"), false;
    const XVAmbienteCom::CValorDaRegistry permanencia(L"PermanenciaServidor", bServidorFica ? 30 : 0);
    XVCliente::CXVCliente cliente;
    if (const HRESULT hr = bServidorFica ? cliente.Conecta({.sEmpresa = sEmpresa}) : S_OK; FAILED(hr))
        return DizFalha("Conecta", hr), false;
    XVIgnora(cliente.Desconecta());
    TFilhos filhos;
    for (int i = 0; i < k_iProcessos; ++i)
        filhos.push_back(
            Filho({"rodadas", sEmpresa, std::to_string((iRodadas + k_iProcessos - 1 - i) / k_iProcessos),
                   std::to_string(i + 1)}));
    SResultado total;
    for (const auto& rpFilho : filhos) {
        SResultado r;
        const std::string sLinha = rpFilho->LeLinha();
        if (std::sscanf(sLinha.c_str(), "%d %d %lf %lf", &r.iFeitas, &r.iFalhas, &r.fMaior, &r.fSoma) != 4)
            ++total.iFalhas;
        total.iFeitas += r.iFeitas;
        total.iFalhas += r.iFalhas;
        total.fMaior = std::max(total.fMaior, r.fMaior);
        total.fSoma += r.fSoma;
    }
    std::vector<REG_XVDMC> achadas;
    HRESULT hr = cliente.Conecta({.sEmpresa = sEmpresa});
    if (SUCCEEDED(hr)) hr = cliente.BuscaPonteiros({}, &achadas);
    if (FAILED(hr)) DizFalha("BuscaPonteiros", hr);
    // A recording whose answer was lost counts as a failure, and may be there.
    const int iAchadas = static_cast<int>(achadas.size());
    const int iPerdidas = std::max(0, total.iFeitas - iAchadas);
    const int iDobradas = std::max(0, iAchadas - total.iFeitas - total.iFalhas);
    const bool bMeta = total.fMaior <= k_fMeta;
    std::printf(
        "%s: %d rounds by %d processes, %d failed, %d lost, %d doubled; slowest %.2f s, mean %.3f s%s\n",
        bServidorFica ? "server up" : "server leaves each time", total.iFeitas + total.iFalhas, k_iProcessos,
        total.iFalhas, iPerdidas, iDobradas, total.fMaior, total.fSoma / iRodadas,
        !bServidorFica ? ""
        : bMeta        ? " (goal 0.3 s: reached)"
                       : " (goal 0.3 s: not reached)");
    const bool bRapida = bMeta || !bServidorFica || iRodadas < k_iRodadasQueMedem;
    return SUCCEEDED(hr) && bRapida && total.iFalhas + iPerdidas + iDobradas == 0;
}

}  // namespace XVCarga
