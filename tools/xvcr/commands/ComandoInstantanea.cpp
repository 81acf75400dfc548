// instantanea: the exchange of a record's pending items, at once.
#include <memory>

#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVGravadasNaTroca.h"
#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/commands/XVOpcoesIntegracao.h"

namespace {

struct SInstantanea {
    REG_XVDMC regDmc;
    CXVOpcoesIntegracao opcoes;
};

void Executa(const SInstantanea& rInstantanea, CXVContexto& rContexto) {
    CXVDadosCR_IntegracaoMiddleware dados;
    rInstantanea.opcoes.Aplica(dados);
    REG_XVDMC regDmc = rInstantanea.regDmc;
    XVCliente::CXVCliente& rCliente = rContexto.Abre(EUsoDaBase::eGravacao);
    const HRESULT hr = rCliente.GravaIntegracaoInstantanea(&regDmc, dados);
    XVMostraGravadas(
        rContexto, rCliente, hr, "nenhuma integração gravada",
        "confira no sistema externo e com \"xvcr registro\" o que já foi enviado, antes de enviar "
        "outra vez");
}

}  // namespace

void XVAdicionaInstantanea(CLI::App& rRaiz, CXVContexto& rContexto) {
    auto pInstantanea = std::make_shared<SInstantanea>();
    CLI::App* pComando = XVAdicionaComando(
        rRaiz, "instantanea", "Faz já a troca com o sistema externo e grava o resultado",
        "  xvcr instantanea --tipo CadastroProduto --transacao Inclusao --sistema SimulacaoSistemaTerceiro "
        "\\\n"
        "       --integracao-origem 20261121-7-2\n"
        "  xvcr instantanea --dmc 20261121-15-1 --tipo CadastroProduto --transacao Alteracao\n"
        "O resultado são os DMCs das integrações gravadas, um por linha, também quando um item posterior "
        "falha.");
    XVOpcaoIntegracao(*pComando, "Integração a alterar ou excluir; sem ela, inclusão", &pInstantanea->regDmc);
    pInstantanea->opcoes.Adiciona(*pComando, EUsoDosCampos::eInstantanea);
    XVDefineAcao(pComando, rContexto, [pInstantanea, &rContexto] { Executa(*pInstantanea, rContexto); });
}
