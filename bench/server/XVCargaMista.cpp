// Many calls of mixed methods on one component, and the server's memory at every tenth of the way: that of
// the second half must not grow past what its data explains.
#include <cstdio>

#include "bench/server/XVCarga.h"
#include "tests/com/XVAmbienteCom.h"

namespace XVCarga {

namespace {

// Every integration stays in the server's memory with its index entries: what one may take.
constexpr std::size_t k_uiMemoriaPorIntegracao = 1024;
constexpr std::size_t k_uiFolga = std::size_t{1} << 19;  // of the allocator; in 100,000 calls 10 bytes each

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

}  // namespace

bool Mista(int iChamadas) {
    XVCliente::CXVCliente cliente;
    HRESULT hr = cliente.Conecta({.sEmpresa = XVAmbienteCom::NovaEmpresa(), .usUsuario = 7});
    const int iPassos = iChamadas / 10;
    std::size_t uiPermitido = 0;
    int iIntegracoes = 0;
    REG_XVDMC regDmc;
    const CCronometro cronometro;
    int i = 0;
    for (; i < iPassos && hr >= 0; ++i) {
        const int iAntes = iIntegracoes;
        hr = Passo(cliente, i, &regDmc, &iIntegracoes);
        uiPermitido += static_cast<std::size_t>(iIntegracoes - iAntes) * k_uiMemoriaPorIntegracao;
        if (i % (iPassos / 10 + 1) == 0 || i + 1 == iPassos)
            std::printf("%8d calls  %8zu KB  %6d integrations\n", i * 10, MemoriaServidor() / 1024,
                        iIntegracoes);
        if (i == iPassos / 2) uiPermitido = MemoriaServidor() + k_uiFolga;
    }
    if (FAILED(hr)) DizFalha("mixed calls", hr);
    const bool bCresceu = MemoriaServidor() > uiPermitido;
    std::printf("mixed: %d calls in %.0f s, %d integrations, server memory %zu KB: %s\n", i * 10,
                cronometro.Segundos(), iIntegracoes, MemoriaServidor() / 1024,
                FAILED(hr) ? "failed"
                : bCresceu ? "grew"
                           : "level");
    return SUCCEEDED(hr) && !bCresceu;
}

}  // namespace XVCarga
