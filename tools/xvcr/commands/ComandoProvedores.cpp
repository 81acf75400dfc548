// provedores: the external systems that this installation can talk to, and the libraries that it cannot use.
#include "suite/providers/XVProvedorIntegracao.h"
#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/output/XVTabela.h"

namespace {

void Executa(CXVSaida& rSaida) {
    CXVTabela tabela({{"Sistema"}, {"Biblioteca"}, {"Situação"}});
    for (const SSituacaoProvedor& rSituacao : XVProvedores::Situacao()) {
        const bool bCarregado = rSituacao.sMotivo.empty();
        if (rSaida.EhJson()) {
            XVJson json = XVJson::object();
            XVRegistroJson::Inclui(json, "eSistemaIntegracao", EEnumeracao::eSistemaIntegracao,
                                   rSituacao.eSistema);
            XVRegistroJson::Inclui(json, "biblioteca", rSituacao.sBiblioteca);
            json["carregado"] = bCarregado;
            if (!bCarregado) XVRegistroJson::Inclui(json, "motivo", rSituacao.sMotivo);
            rSaida.LinhaJson(json);
        } else {
            tabela.Inclui({XVRegistroJson::ParaPessoa(EEnumeracao::eSistemaIntegracao, rSituacao.eSistema),
                           rSituacao.sBiblioteca.empty() ? "(neste programa)" : rSituacao.sBiblioteca,
                           bCarregado ? "carregado" : "recusado: " + rSituacao.sMotivo});
        }
    }
    if (!rSaida.EhJson()) rSaida.Escreve(tabela.Monta());
}

}  // namespace

void XVAdicionaProvedores(CLI::App& rRaiz, CXVContexto& rContexto) {
    CLI::App* pComando = XVAdicionaComando(
        rRaiz, "provedores", "Lista os provedores de sistemas externos: carregados, recusados e por quê",
        "  xvcr provedores\n"
        "São os que ficam ao lado deste programa; o servidor usa os que ficam ao lado dele.");
    XVDefineAcao(pComando, rContexto, [&rContexto] { Executa(rContexto.saida); });
}
