// What the operations of the exchange share: which pending items count, and a record as parameters.
#pragma once

#include "contract/XVDadosCR.h"

namespace XVItemTroca {

// Nothing to send, or nobody to send it to.
inline bool EhIgnorado(const CXVDadosCR_PendenciaIntegracaoSistema& rItem) {
    return rItem.sJSON.empty() || rItem.eSistemaIntegracao == Tipo_Nenhum;
}

// What a pending item says of itself; the rest of the record stays the caller's.
inline void CopiaItem(const CXVDadosCR_PendenciaIntegracaoSistema& rItem,
                      CXVDadosCR_IntegracaoMiddleware* pDados) {
    pDados->eSistemaIntegracao = rItem.eSistemaIntegracao;
    pDados->regDmcMovimentoOrigem = rItem.regDmcOrigem;
    pDados->sRegistroJSON = rItem.sJSON;
    if (rItem.ulPonteiroFilial != 0) pDados->ulPonteiroFilial = rItem.ulPonteiroFilial;
    pDados->uiBaseDadosTerceiro = rItem.uiBaseDadosTerceiro;
    pDados->uiChaveRegistroSistemaTerceiro = rItem.uiChaveRegistroSistemaTerceiro;
}

inline CXVDadosCR_ParametrosIntegracao MontaParametros(const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& regPS) {
    CXVDadosCR_ParametrosIntegracao dados;
    dados.regDmcOrigem = regPS.regDmcIntegracaoOrigem;
    dados.regDmcIntegracao = regPS.regDmc;
    dados.uiChaveRegistroSistemaTerceiro = regPS.uiChaveRegistroSistemaTerceiro;
    dados.uiBaseDadosTerceiro = regPS.uiBaseDadosTerceiro;
    dados.eTipoIntegracao = regPS.eTipoIntegracao;
    dados.eSistemaIntegracao = regPS.eSistemaIntegracao;
    dados.eTipoTransacao = regPS.eTipoTransacao;
    dados.ulPonteiroFilial = regPS.ulPonteiroFilial;
    dados.ulPonteiroAuxiliar = regPS.ulPonteiroAuxiliar;
    dados.ucTipoPonteiroAuxiliar = regPS.ucTipoPonteiroAuxiliar;
    return dados;
}

}  // namespace XVItemTroca
