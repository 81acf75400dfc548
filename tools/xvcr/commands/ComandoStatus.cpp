// status: status and return texts of an integration.
#include <memory>

#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVOpcoes.h"

void XVAdicionaStatus(CLI::App& rRaiz, CXVContexto& rContexto) {
    auto pDados = std::make_shared<CXVDadosCR_StatusIntegracaoMiddleware>();
    CLI::App* pComando = XVAdicionaComando(
        rRaiz, "status", "Grava o status e os textos de retorno de uma integração",
        "  xvcr status --dmc 20261121-15-1 --status Erro --mensagem \"CNPJ inválido\"\n"
        "  xvcr status --chave 9001 --sistema Mercos --status Sucesso --json-retorno @retorno.json\n"
        "A mensagem é sempre regravada; sem --mensagem, fica vazia. De duas integrações do sistema com a\n"
        "mesma chave, o status vai para a que está primeiro no índice, a incluída antes.");
    CLI::Option* pDmc =
        XVOpcaoIntegracao(*pComando, "Integração; sem ela, valem --chave e --sistema", &pDados->regDmc);
    XVOpcaoValor(*pComando, "--chave", "NÚMERO", "Chave da integração no sistema externo",
                 &pDados->uiChaveIntegracaoSistemaTerceiro)
        ->excludes(pDmc);
    XVOpcaoEnumeracao(*pComando, "--sistema", "Sistema externo", EEnumeracao::eSistemaIntegracao,
                      &pDados->eSistemaIntegracao)
        ->excludes(pDmc);
    XVOpcaoEnumeracao(*pComando, "--status", "Status novo", EEnumeracao::eStatusIntegracao,
                      &pDados->eStatusIntegracao)
        ->required();
    XVOpcaoTexto(*pComando, "--mensagem", "Mensagem de retorno", &pDados->sMensagemIntegracao);
    XVOpcaoTexto(*pComando, "--json-retorno", "JSON devolvido pelo sistema externo",
                 &pDados->sJSONRetornoIntegracao);
    XVDefineAcao(pComando, rContexto, [pDados, &rContexto] {
        if (pDados->regDmc.EhNulo() &&
            (pDados->uiChaveIntegracaoSistemaTerceiro == 0 || pDados->eSistemaIntegracao == 0))
            XVErroDeUso("a integração é dada por --dmc, ou por --chave e --sistema");
        XVConfere(rContexto.Abre(EUsoDaBase::eGravacao).GravaStatusIntegracao(*pDados));
        if (rContexto.saida.EhJson()) {
            rContexto.saida.Registro(*pDados, false);
        } else {
            rContexto.saida.Linha(
                "status gravado: " +
                XVEnumeracoesTexto::GetNomeCurto(EEnumeracao::eStatusIntegracao, pDados->eStatusIntegracao));
        }
    });
}
