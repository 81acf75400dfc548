// Foreign lines as the bulk input of the command-line program: each is refused or recorded, what was recorded
// is read back at once, and after a reopening every integration is there and readable.
#include "fuzz/XVBancadaFuzz.h"
#include "tools/xvcr/commands/XVCarga.h"

namespace {

const XVCliente::SIdentificacao k_identificacao{.sEmpresa = "E1", .usUsuario = 1, .ulNumeroSessao = 2};

std::vector<REG_XVDMC> Todas(XVCliente::CXVCliente& rCliente) {
    std::vector<REG_XVDMC> lista;
    XV_EXIGE(SUCCEEDED(rCliente.BuscaPonteiros({}, &lista)));
    for (const REG_XVDMC regDmc : lista) {
        CXVDadosCR_IntegracaoMiddleware dados;
        XV_EXIGE(SUCCEEDED(rCliente.LeIntegracao(regDmc, k_ullLeTextos, &dados)));
    }
    return lista;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pDados, std::size_t uiTamanho) {
    const std::string_view sTudo(reinterpret_cast<const char*>(pDados), uiTamanho);
    CXVBancadaFuzz bancada;
    std::vector<REG_XVDMC> antes;
    {
        XVCliente::CXVCliente cliente;
        XV_EXIGE(SUCCEEDED(cliente.ConectaLocal(k_identificacao, {})));
        CXVCarga carga(cliente, uiTamanho % 2 != 0);
        for (std::size_t uiInicio = 0; uiInicio < sTudo.size();) {
            const std::size_t uiFim = std::min(sTudo.find('\n', uiInicio), sTudo.size());
            SLinhaCarga linha;
            XVPreparaLinha(sTudo.substr(uiInicio, uiFim - uiInicio), &linha);
            carga.Executa(&linha);
            const SResultadoLinha& resultado = linha.resultado;
            if (resultado.sErro.empty() && resultado.eOperacao == SResultadoLinha::EOperacao::eIntegracao) {
                CXVDadosCR_IntegracaoMiddleware dados;
                XV_EXIGE(SUCCEEDED(cliente.LeIntegracao(resultado.regDmc, k_ullLeTextos, &dados)));
            }
            uiInicio = uiFim + 1;
        }
        antes = Todas(cliente);
        XV_EXIGE(SUCCEEDED(cliente.Desconecta()));
    }
    XVCliente::CXVCliente cliente;
    XV_EXIGE(SUCCEEDED(cliente.ConectaLocal(k_identificacao, {})));
    XV_EXIGE(Todas(cliente) == antes);
    XV_EXIGE(SUCCEEDED(cliente.Desconecta()));
    XV_EXIGE(bancada.GetDisco().GetQuantidadeAberta() == 0);
    return 0;
}
