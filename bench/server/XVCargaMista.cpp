// Many calls of mixed methods on one component, and the server's memory at every tenth of the way: that of
// the second half must not grow past what its data explains. Sizes are bytes, printed in KB of 1,024 bytes.
#include <cstdio>

#include "bench/server/XVCarga.h"
#include "tests/com/XVAmbienteCom.h"

namespace XVCarga {

namespace {

// Every integration stays in the server's memory with its index entries: what one may take.
constexpr std::size_t k_uiMemoriaPorIntegracao = 1024;
// Data of one call, in bytes: of ten calls one brings a text, 12 bytes in the table of its file and the text
// itself in the file, which is held in memory.
constexpr std::size_t k_uiMemoriaPorChamada = 3;
// What is not data and no growth either, however many calls: MemoriaServidor takes for each thread what this
// process's threads bring (984 to 1,052 KB), which for one thread that comes meanwhile may be off by so much.
constexpr std::size_t k_uiFolga = 68 * 1024;
// Of fewer calls heap and threads have not come to their size by the middle: their memory is shown, not
// judged.
constexpr int k_iChamadasQueJulgam = 10000;
constexpr int k_iChamadasPorPasso = 10;

// One step of ten calls; only the first one adds an integration, once in a hundred steps.
HRESULT Passo(XVCliente::CXVCliente& rCliente, int iPasso, REG_XVDMC* pDmc, int* piIntegracoes) {
    auto dados = XVAmbienteCom::IntegracaoPendente("{\"passo\":" + std::to_string(iPasso) + "}");
    HRESULT hr = 0;
    if (iPasso % 100 == 0) {
        *pDmc = {};
        ++*piIntegracoes;
    }
    hr = rCliente.GravaIntegracao(pDmc, dados);
    CXVDadosCR_IntegracaoMiddleware lida;
    for (int i = 0; i < 3 && hr >= 0; ++i) hr = rCliente.LeIntegracao(*pDmc, 7, &lida);
    std::vector<CXVDadosCR_IntegracaoMiddleware> lista;
    if (hr >= 0) hr = rCliente.LeIntegracoes({*pDmc, *pDmc}, 7, &lista);
    std::vector<REG_XVDMC> achados;
    if (hr >= 0)
        hr = rCliente.BuscaPonteiros({.listaStatusIntegracao = {1}, .listaTipoTransacao = {1}}, &achados);
    CXVDadosCR_ChaveRegistroTelvoParaTerceiro chave{.uiChaveRegistroSistemaTerceiro = 5,
                                                    .regDmcRegistroTelvo = *pDmc};
    if (hr >= 0) hr = rCliente.GravaChaveRegistro(chave);
    if (hr >= 0) hr = rCliente.BuscaChaveRegistro(chave, &chave);
    // A refused call must leave nothing behind either.
    if (hr >= 0 && rCliente.LeIntegracao({12345}, 7, &lida) >= 0) hr = -1;
    XVCliente::SUltimoErro erro;
    if (hr >= 0) hr = rCliente.GetUltimoErro(&erro);
    return hr;
}

// The server's memory over the second half.
struct SSegundaMetade {
    int iChamadas = 0;
    std::size_t uiInicio = 0;
    std::size_t uiDados = 0;  // of new integrations

    std::size_t Permitido() const {
        return uiInicio + uiDados + k_uiFolga + static_cast<std::size_t>(iChamadas) * k_uiMemoriaPorChamada;
    }
    double PorChamada(std::size_t uiMemoria) const {
        return (static_cast<double>(uiMemoria) - static_cast<double>(uiInicio)) / iChamadas;
    }
};

// Says whether the memory was level; true also where it is not judged.
bool Julga(const SSegundaMetade& rMetade, int iChamadas, std::size_t uiMemoria) {
    if (iChamadas < k_iChamadasQueJulgam) return std::puts("memory: too few calls to judge it"), true;
    const bool bCresceu = uiMemoria > rMetade.Permitido();
    std::printf("memory: %+.2f bytes a call in the second half, at most %.2f for data and threads: %s\n",
                rMetade.PorChamada(uiMemoria), rMetade.PorChamada(rMetade.Permitido()),
                bCresceu ? "grew" : "level");
    return !bCresceu;
}

}  // namespace

bool Mista(int iChamadas) {
    XVCliente::CXVCliente cliente;
    HRESULT hr = cliente.Conecta({.sEmpresa = XVAmbienteCom::NovaEmpresa(), .usUsuario = 7});
    const int iPassos = iChamadas / k_iChamadasPorPasso;
    SSegundaMetade metade;
    int iIntegracoes = 0;
    REG_XVDMC regDmc;
    const CCronometro cronometro;
    int i = 0;
    for (; i < iPassos && hr >= 0; ++i) {
        const int iAntes = iIntegracoes;
        hr = Passo(cliente, i, &regDmc, &iIntegracoes);
        metade.uiDados += static_cast<std::size_t>(iIntegracoes - iAntes) * k_uiMemoriaPorIntegracao;
        if (i % (iPassos / 10 + 1) == 0 || i + 1 == iPassos)
            std::printf("%8d calls  %8zu KB  %6d integrations\n", i * k_iChamadasPorPasso,
                        MemoriaServidor() / 1024, iIntegracoes);
        if (i == iPassos / 2)
            metade = {.iChamadas = (iPassos - 1 - i) * k_iChamadasPorPasso, .uiInicio = MemoriaServidor()};
    }
    if (FAILED(hr)) DizFalha("mixed calls", hr);
    const std::size_t uiMemoria = MemoriaServidor();
    const bool bSegurou = SUCCEEDED(hr) && Julga(metade, iChamadas, uiMemoria);
    std::printf("mixed: %d calls in %.0f s, %d integrations, server memory %zu KB: %s\n",
                i * k_iChamadasPorPasso, cronometro.Segundos(), iIntegracoes, uiMemoria / 1024,
                bSegurou ? "held" : "failed");
    return bSegurou;
}

}  // namespace XVCarga
