// A client by the library, away from the tree: records integrations until a file exists, through whatever
// becomes of the server meanwhile. It does nothing about a failure but name it, because waiting is the
// library's part. Each acknowledged one is a line on the output, its key and its number, which "alheio
// confere" reads back; each failure one on the error output, its number and its code. Usage:
// xv_cliente_biblioteca <company> <file>
#include <cstdio>
#include <filesystem>

#include "client/XVCliente.h"

namespace {

// So often the component is given up and made anew: a creation meets an update otherwise than a call does.
constexpr int k_iPorConexao = 50;
constexpr int k_iMaisFalhas = 20;

HRESULT Grava(XVCliente::CXVCliente& rCliente, int iNumero, REG_XVDMC* pDmc) {
    return rCliente.GravaIntegracao(pDmc, {.sRegistroJSON = "{\"n\":" + std::to_string(iNumero) + "}",
                                           .eTipoIntegracao = eXVSMiddleware_BuscaPedidos,
                                           .eStatusIntegracao = eXVSMiddleware_Pendente,
                                           .eSistemaIntegracao = SimulacaoSistemaTerceiro,
                                           .eTipoTransacao = eXVSMiddleware_Inclusao});
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    const XVCliente::CApartamento apartamento;
    XVCliente::CXVCliente cliente;
    int iFalhas = 0;
    for (int i = 0; iFalhas < k_iMaisFalhas && !std::filesystem::exists(argv[2]); ++i) {
        REG_XVDMC regDmc;
        HRESULT hr = i % k_iPorConexao == 0 ? cliente.Conecta({.sEmpresa = argv[1], .usUsuario = 7}) : S_OK;
        if (SUCCEEDED(hr)) hr = Grava(cliente, i, &regDmc);
        if (FAILED(hr)) {
            ++iFalhas;
            std::fprintf(stderr, "%d: 0x%08X\n", i, static_cast<unsigned>(hr));
            continue;
        }
        std::printf("%llu %d\n", static_cast<unsigned long long>(regDmc.uiValor), i);
        std::fflush(stdout);
    }
    return iFalhas < k_iMaisFalhas ? 0 : 1;
}
