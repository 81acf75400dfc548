// An integration on its way to a caller of the interface: its texts lie already in the buffers that the
// caller will own. As a target of a reading it stands beside CXVDadosCR_IntegracaoMiddleware, whose texts are
// strings, for integrations that something else is done with first.
//
// Thread rule: none but the owner's.
#pragma once

#include "contract/XVCR_RegistrosPS.h"
#include "contract/XVDadosCR.h"
#include "platform/XVBufferSaida.h"

struct SIntegracaoSaida {
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};  // but its texts
    CXVBufferSaida sRegistroJSON;
    CXVBufferSaida sMensagemIntegracao;
    CXVBufferSaida sJSONRetornoIntegracao;

    // Passes everything on.
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS Entrega() {
        EntregaTexto(sRegistroJSON, &reg.regRegistroJSON);
        EntregaTexto(sMensagemIntegracao, &reg.regMensagemIntegracao);
        EntregaTexto(sJSONRetornoIntegracao, &reg.regJSONRetornoIntegracao);
        return reg;
    }

  private:
    // A stored text is shorter than 4 GiB.
    static void EntregaTexto(CXVBufferSaida& rTexto, _REG_DF_TEXTOPS* pReg) {
        pReg->ulQtdBytes = static_cast<XVUInt>(rTexto.GetTamanho());
        pReg->pTexto = static_cast<XVByte*>(rTexto.Entrega());
    }
};

// The fields beside the texts, which have the same names in both.
inline CXVDadosCR_IntegracaoMiddleware& XVCampos(CXVDadosCR_IntegracaoMiddleware& rDados) {
    return rDados;
}
inline tagREG_CR_INTEGRACAO_MIDDLEWAREPS& XVCampos(SIntegracaoSaida& rSaida) {
    return rSaida.reg;
}
