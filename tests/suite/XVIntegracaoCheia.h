// An integration with a value of its own in every field.
#pragma once

#include "contract/XVDadosCR.h"

inline REG_XVDMC XVOrigemTeste(XVUInt ulPonteiro) {
    return REG_XVDMC::Cria(2, ulPonteiro, REG_XVDMA::Cria(2024, 3, 15));
}

inline REG_XVDMAHMSUTC XVDataHoraTeste(XVUInt ulSegundos) {
    return REG_XVDMAHMSUTC::Cria(REG_XVDMA::Cria(2024, 2, 29), ulSegundos);
}

inline CXVDadosCR_IntegracaoMiddleware XVIntegracaoCheia() {
    return {.sRegistroJSON = "{\"a\":\"ção\r\n\"}\n",
            .sMensagemIntegracao = "mensagem velha",
            .sJSONRetornoIntegracao = "retorno velho",
            .regDmc = XVOrigemTeste(1001),
            .regDmcIntegracaoOrigem = XVOrigemTeste(1002),
            .regDmcMovimentoOrigem = XVOrigemTeste(1),
            .regDataHoraInclusao = XVDataHoraTeste(21),
            .regDataHoraAlteracaoStatus = XVDataHoraTeste(22),
            .uiChaveIntegracaoSistemaTerceiro = 51,
            .uiChaveRegistroSistemaTerceiro = 55,
            .uiBaseDadosTerceiro = 31,
            .eTipoIntegracao = eXVSMiddleware_BuscaPedidos,
            .eStatusIntegracao = eXVSMiddleware_Sucesso,
            .eSistemaIntegracao = SimulacaoSistemaTerceiro,
            .eTipoTransacao = eXVSMiddleware_Alteracao,
            .ulPonteiroFilial = 32,
            .ulPonteiroUsuarioInclusao = 33,
            .ulPonteiroUsuarioCancelamento = 34,
            .ulPonteiroAuxiliar = 35,
            .cReconsultarIdTerceiros = 1,
            .ucTipoPonteiroAuxiliar = 36};
}
