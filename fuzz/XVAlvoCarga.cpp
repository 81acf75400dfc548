// Foreign lines as the bulk input of the command-line program: each is refused or recorded, what was recorded
// is read back at once, and after a reopening every integration is there and readable.
#include <cstdint>
#include <string>

#include "fuzz/XVBancadaFuzz.h"
#include "tools/xvcr/XVOperacoesLocais.h"
#include "tools/xvcr/commands/XVCarga.h"

namespace {

constexpr XVUInt64 k_uiTextos = 7;
const SAcesso k_acesso{{}, "E1", 1, 2, false};

std::vector<REG_XVDMC> Todas(IXVOperacoes& rOperacoes) {
    std::vector<REG_XVDMC> lista;
    XV_EXIGE(SUCCEEDED(rOperacoes.BuscaPonteiros({}, &lista)));
    for (const REG_XVDMC regDmc : lista) {
        SIntegracao dados;
        XV_EXIGE(SUCCEEDED(rOperacoes.LeIntegracao(regDmc, k_uiTextos, &dados)));
    }
    return lista;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pDados, std::size_t uiTamanho) {
    const std::string_view sTudo(reinterpret_cast<const char*>(pDados), uiTamanho);
    CXVBancadaFuzz bancada;
    std::vector<REG_XVDMC> antes;
    {
        CXVOperacoesLocais operacoes;
        XV_EXIGE(SUCCEEDED(operacoes.Inicializa(k_acesso)));
        CXVCarga carga(operacoes);
        for (std::size_t uiInicio = 0; uiInicio < sTudo.size();) {
            const std::size_t uiFim = std::min(sTudo.find('\n', uiInicio), sTudo.size());
            const SResultadoLinha resultado =
                carga.Executa(std::string(sTudo.substr(uiInicio, uiFim - uiInicio)));
            if (resultado.sErro.empty() && resultado.eOperacao == SResultadoLinha::EOperacao::eIntegracao) {
                SIntegracao dados;
                XV_EXIGE(SUCCEEDED(operacoes.LeIntegracao(resultado.regDmc, k_uiTextos, &dados)));
            }
            uiInicio = uiFim + 1;
        }
        antes = Todas(operacoes);
        XV_EXIGE(SUCCEEDED(operacoes.Finaliza()));
    }
    CXVOperacoesLocais operacoes;
    XV_EXIGE(SUCCEEDED(operacoes.Inicializa(k_acesso)));
    XV_EXIGE(Todas(operacoes) == antes);
    XV_EXIGE(SUCCEEDED(operacoes.Finaliza()));
    XV_EXIGE(bancada.GetDisco().GetQuantidadeAberta() == 0);
    return 0;
}
