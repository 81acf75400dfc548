// Soak: many calls of mixed methods on one component, and the server's memory at every tenth of the way.
// Exit code 1 when a call fails or the memory of the second half grows past what its data explains.
#include <windows.h>

#include <psapi.h>

#include <cstdio>
#include <cstdlib>

#include "client/XVCliente.h"
#include "tests/com/XVAmbienteCom.h"
#include "tests/com/XVServidores.h"

namespace {

// Every integration stays in the server's memory with its index entries: what one may take.
constexpr std::size_t k_uiMemoriaPorIntegracao = 1024;
constexpr std::size_t k_uiFolga = std::size_t{3} << 19;  // of the allocator; 30 bytes a call would exceed it

std::size_t MemoriaServidor() {
    const auto lista = XVServidores::Lista();
    if (lista.empty()) return 0;
    const HANDLE hProcesso = ::OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, lista.front());
    PROCESS_MEMORY_COUNTERS contadores{};
    ::GetProcessMemoryInfo(hProcesso, &contadores, sizeof(contadores));
    ::CloseHandle(hProcesso);
    return contadores.WorkingSetSize;
}

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

int Executa(int iChamadas) {
    XVCliente::CXVCliente cliente;
    HRESULT hr = cliente.Conecta({.sEmpresa = "SOAK", .usUsuario = 7});
    const int iPassos = iChamadas / 10;
    std::size_t uiPermitido = 0;
    int iIntegracoes = 0;
    REG_XVDMC regDmc;
    for (int i = 0; i < iPassos && hr >= 0; ++i) {
        const int iAntes = iIntegracoes;
        hr = Passo(cliente, i, &regDmc, &iIntegracoes);
        uiPermitido += static_cast<std::size_t>(iIntegracoes - iAntes) * k_uiMemoriaPorIntegracao;
        if (i % (iPassos / 10 + 1) == 0 || i + 1 == iPassos)
            std::printf("%8d calls  %8zu KB  %6d integrations\n", i * 10, MemoriaServidor() / 1024,
                        iIntegracoes);
        if (i == iPassos / 2) uiPermitido = MemoriaServidor() + k_uiFolga;
    }
    const bool bCresceu = MemoriaServidor() > uiPermitido;
    if (hr < 0)
        std::printf("failed: 0x%08lX\n", static_cast<unsigned long>(hr));
    else
        std::printf(bCresceu ? "memory grew\n" : "level\n");
    return hr < 0 || bCresceu ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
    const XVCliente::CApartamento apartamento;
    if (!XVAmbienteCom::Prepara()) return 2;
    const int iCodigo = Executa(argc > 1 ? std::atoi(argv[1]) : 100000);
    XVAmbienteCom::Desfaz();
    return iCodigo;
}
