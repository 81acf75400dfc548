// instantanea: the exchange of a record's pending items, at once.
#include <memory>

#include "tools/xvcr/commands/XVComandos.h"
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
    XVConfere(rContexto.Abre(EUsoDaBase::eGravacao).GravaIntegracaoInstantanea(&regDmc, dados));
    if (!regDmc.EhNulo())
        rContexto.saida.AoFalharDiz([regDmc] { return "última integração: " + regDmc.ToString(); });
    if (rContexto.saida.EhJson()) {
        if (regDmc.EhNulo()) return;
        XVJson json = XVJson::object();
        XVRegistroJson::Inclui(json, "regDmc", regDmc);
        rContexto.saida.LinhaJson(json);
    } else {
        rContexto.saida.Linha(regDmc.EhNulo() ? "nenhuma integração gravada" : regDmc.ToString());
    }
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
        "O resultado é o DMC da última integração gravada; com --dmc e nada a trocar, o próprio DMC dado.");
    XVOpcaoIntegracao(*pComando, "Integração a alterar ou excluir; sem ela, inclusão", &pInstantanea->regDmc);
    pInstantanea->opcoes.Adiciona(*pComando, false);
    XVDefineAcao(pComando, rContexto, [pInstantanea, &rContexto] { Executa(*pInstantanea, rContexto); });
}
