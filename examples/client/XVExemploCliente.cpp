// Records an integration through the component's server, gives it a status and reads it back.
// Usage: xv_exemplo_cliente <company>
#include <cstdio>

#include "client/XVCliente.h"

namespace {

// Ends the program's work with the server's own explanation.
int Falha(XVCliente::CXVCliente& rCliente, const char* pszPasso, XVCliente::HResult hr) {
    XVCliente::SUltimoErro erro;
    const bool bExplicado = rCliente.GetUltimoErro(&erro) >= 0 && erro.hrErro == hr;
    std::fprintf(stderr, "%s: 0x%08lX %s\n", pszPasso, static_cast<unsigned long>(hr),
                 bExplicado ? erro.sMensagem.c_str() : "");
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    const XVCliente::CApartamento apartamento;
    XVCliente::CXVCliente cliente;
    XVCliente::HResult hr = cliente.Conecta({.sEmpresa = argc > 1 ? argv[1] : "EXEMPLO", .usUsuario = 7});
    if (hr < 0) return Falha(cliente, "Conecta", hr);

    XVCliente::SIntegracao integracao;
    integracao.sRegistroJSON = R"({"pedido": 1001, "cliente": "Padaria São João"})";
    integracao.eTipoIntegracao = 9;     // orders
    integracao.eStatusIntegracao = 1;   // pending
    integracao.eSistemaIntegracao = 2;  // the built-in simulation
    integracao.eTipoTransacao = 1;      // inclusion
    std::uint64_t uiDmc = 0;
    if (hr = cliente.GravaIntegracao(&uiDmc, integracao); hr < 0)
        return Falha(cliente, "GravaIntegracao", hr);

    hr = cliente.GravaStatusIntegracao({.uiDmc = uiDmc,
                                        .sMensagemIntegracao = "aceito",
                                        .sJSONRetornoIntegracao = "{}",
                                        .uiChaveIntegracaoSistemaTerceiro = 77,
                                        .eStatusIntegracao = 3,
                                        .eSistemaIntegracao = 2});
    if (hr < 0) return Falha(cliente, "GravaStatusIntegracao", hr);

    XVCliente::SIntegracao lida;
    if (hr = cliente.LeIntegracao(uiDmc, 7, &lida); hr < 0) return Falha(cliente, "LeIntegracao", hr);
    std::printf("%llu %s %s\n", static_cast<unsigned long long>(uiDmc), lida.sRegistroJSON.c_str(),
                lida.sMensagemIntegracao.c_str());
}
