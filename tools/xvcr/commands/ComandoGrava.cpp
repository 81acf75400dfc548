// grava: a new integration, or changes to one that exists.
#include <memory>

#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/commands/XVOpcoesIntegracao.h"

namespace {

struct SGrava {
    REG_XVDMC regDmc;
    bool bSubstitui = false;
    CXVOpcoesIntegracao opcoes;
};

void Executa(const SGrava& rGrava, CXVContexto& rContexto) {
    if (!rGrava.opcoes.TemDadas() && !rGrava.bSubstitui) XVErroDeUso("nada a gravar: dê ao menos um campo");
    if (rGrava.bSubstitui && rGrava.regDmc.EhNulo()) XVErroDeUso("--substitui só vale com --dmc");
    XVCliente::CXVCliente& rCliente = rContexto.Abre(EUsoDaBase::eGravacao);
    CXVDadosCR_IntegracaoMiddleware dados;
    // An update replaces the whole record, so what was not given is taken from the record as it stands.
    if (!rGrava.regDmc.EhNulo() && !rGrava.bSubstitui)
        XVConfere(rCliente.LeIntegracao(rGrava.regDmc, k_ullLeTextos, &dados));
    rGrava.opcoes.Aplica(dados);

    REG_XVDMC regDmc = rGrava.regDmc;
    XVConfere(rCliente.GravaIntegracao(&regDmc, dados));
    rContexto.saida.AoFalharDiz([regDmc] { return "gravada: " + regDmc.ToString(); });
    if (rContexto.saida.EhJson()) {
        XVJson json = XVJson::object();
        XVRegistroJson::Inclui(json, "regDmc", regDmc);
        rContexto.saida.LinhaJson(json);
    } else {
        rContexto.saida.Linha(regDmc.ToString());
    }
}

}  // namespace

void XVAdicionaGrava(CLI::App& rRaiz, CXVContexto& rContexto) {
    auto pGrava = std::make_shared<SGrava>();
    CLI::App* pComando = XVAdicionaComando(
        rRaiz, "grava", "Grava uma integração nova ou altera uma existente",
        "  xvcr grava --tipo BuscaPedidos --sistema Mercos --status Pendente \\\n"
        "       --transacao Inclusao --json-enviado @pedido.json\n"
        "  xvcr grava --dmc 20261121-15-1 --status Sucesso --chave 9001\n"
        "O resultado é o DMC da integração. Com --dmc, os campos não dados ficam como estão.");
    XVOpcaoIntegracao(*pComando, "Integração a alterar; sem ela, uma nova é incluída", &pGrava->regDmc);
    pComando->add_flag("--substitui", pGrava->bSubstitui,
                       "Com --dmc: os campos não dados são gravados vazios em vez de mantidos");
    pGrava->opcoes.Adiciona(*pComando, EUsoDosCampos::eGravacao);
    XVDefineAcao(pComando, rContexto, [pGrava, &rContexto] { Executa(*pGrava, rContexto); });
}
