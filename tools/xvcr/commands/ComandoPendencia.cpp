// pendencia: the pending items of a record become pending integrations.
#include <memory>

#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVGravadasNaTroca.h"
#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/commands/XVOpcoesIntegracao.h"

namespace {

struct SPendencia {
    REG_XVDMC regDmcOrigem;
    CXVOpcoesIntegracao opcoes;
};

}  // namespace

void XVAdicionaPendencia(CLI::App& rRaiz, CXVContexto& rContexto) {
    auto pPendencia = std::make_shared<SPendencia>();
    CLI::App* pComando = XVAdicionaComando(
        rRaiz, "pendencia",
        "Grava como pendentes as integrações que o sistema externo aponta para um registro",
        "  xvcr pendencia --origem 20261121-7-2 --tipo CadastroProduto --transacao Inclusao \\\n"
        "       --sistema SimulacaoSistemaTerceiro");
    XVOpcao(*pComando, "--origem", "DMC", "Registro ou integração de origem",
            [pPendencia](std::string_view s) {
                std::string sErro = XVLeituraValor::Le(s, &pPendencia->regDmcOrigem);
                const bool bNulo = sErro.empty() && pPendencia->regDmcOrigem.EhNulo();
                return bNulo ? "o DMC nulo não é de registro algum" : sErro;
            })
        ->required();
    pPendencia->opcoes.Adiciona(*pComando, EUsoDosCampos::ePendencia);
    XVDefineAcao(pComando, rContexto, [pPendencia, &rContexto] {
        CXVDadosCR_IntegracaoMiddleware dados;
        pPendencia->opcoes.Aplica(dados);
        XVCliente::CXVCliente& rCliente = rContexto.Abre(EUsoDaBase::eGravacao);
        const HRESULT hr = rCliente.GravaPendenciaIntegracao(pPendencia->regDmcOrigem, dados);
        XVMostraGravadas(rContexto, rCliente, hr, "nenhuma integração gravada",
                         "repetir gravaria outra vez o que já está gravado");
    });
}
