// Records an integration, gives it a status and reads it back: through the component's server or, where a
// module directory is named, with the component in this process.
// Usage: xv_exemplo_cliente <company> [<module directory>]
#include <cstdio>

#include "client/XVCliente.h"

namespace {

// Ends the program's work with the component's own explanation, or with what the code means.
int Falha(XVCliente::CXVCliente& rCliente, const char* pszPasso, HRESULT hr) {
    XVCliente::SUltimoErro erro;
    const bool bExplicado = SUCCEEDED(rCliente.GetUltimoErro(&erro)) && erro.hrErro == hr;
    const std::string sTexto =
        bExplicado ? XVCliente::CodigoEmTexto(hr) + ' ' + erro.sMensagem : XVCliente::DescreveCodigo(hr);
    std::fprintf(stderr, "%s: %s\n", pszPasso, sTexto.c_str());
    return 1;
}

int Executa(XVCliente::CXVCliente& rCliente) {
    const CXVDadosCR_IntegracaoMiddleware integracao{
        .sRegistroJSON = R"({"pedido": 1001, "cliente": "Padaria São João"})",
        .eTipoIntegracao = eXVSMiddleware_BuscaPedidos,
        .eStatusIntegracao = eXVSMiddleware_Pendente,
        .eSistemaIntegracao = SimulacaoSistemaTerceiro,
        .eTipoTransacao = eXVSMiddleware_Inclusao};
    REG_XVDMC regDmc;
    HRESULT hr = rCliente.GravaIntegracao(&regDmc, integracao);
    if (FAILED(hr)) return Falha(rCliente, "GravaIntegracao", hr);

    hr = rCliente.GravaStatusIntegracao({.regDmc = regDmc,
                                         .sMensagemIntegracao = "aceito",
                                         .sJSONRetornoIntegracao = "{}",
                                         .uiChaveIntegracaoSistemaTerceiro = 77,
                                         .eStatusIntegracao = eXVSMiddleware_Sucesso,
                                         .eSistemaIntegracao = SimulacaoSistemaTerceiro});
    if (FAILED(hr)) return Falha(rCliente, "GravaStatusIntegracao", hr);

    CXVDadosCR_IntegracaoMiddleware lida;
    hr = rCliente.LeIntegracao(regDmc, k_ullLeTextos, &lida);
    if (FAILED(hr)) return Falha(rCliente, "LeIntegracao", hr);
    std::printf(
        "%s %s %s: %s %s\n", lida.regDmc.ToString().c_str(), lida.regDataHoraInclusao.ToISO8601().c_str(),
        XVEnumeracoesTexto::GetNomeCurto(EEnumeracao::eStatusIntegracao, lida.eStatusIntegracao).c_str(),
        lida.sMensagemIntegracao.c_str(), lida.sRegistroJSON.c_str());
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const XVCliente::CApartamento apartamento;
    XVCliente::CXVCliente cliente;
    const XVCliente::SIdentificacao identificacao{.sEmpresa = argc > 1 ? argv[1] : "EXEMPLO", .usUsuario = 7};
    HRESULT hr = argc > 2 ? cliente.ConectaLocal(identificacao, {.sDiretorio = argv[2]})
                          : cliente.Conecta(identificacao);
    if (FAILED(hr)) return Falha(cliente, "Conecta", hr);
    if (const int iSaida = Executa(cliente); iSaida != 0) return iSaida;
    hr = cliente.Desconecta();
    return FAILED(hr) ? Falha(cliente, "Desconecta", hr) : 0;
}
