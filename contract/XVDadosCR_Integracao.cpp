#include "contract/XVCR_BuffersPS.h"
#include "contract/XVDadosCR.h"

namespace {

// The fields besides the texts, one by one in either direction.
template <class TDestino, class TOrigem>
void CopiaCampos(TDestino& rDestino, const TOrigem& rOrigem) {
    rDestino.regDmc = rOrigem.regDmc;
    rDestino.regDmcIntegracaoOrigem = rOrigem.regDmcIntegracaoOrigem;
    rDestino.regDmcMovimentoOrigem = rOrigem.regDmcMovimentoOrigem;
    rDestino.regDataHoraInclusao = rOrigem.regDataHoraInclusao;
    rDestino.regDataHoraAlteracaoStatus = rOrigem.regDataHoraAlteracaoStatus;
    rDestino.uiChaveIntegracaoSistemaTerceiro = rOrigem.uiChaveIntegracaoSistemaTerceiro;
    rDestino.uiChaveRegistroSistemaTerceiro = rOrigem.uiChaveRegistroSistemaTerceiro;
    rDestino.uiBaseDadosTerceiro = rOrigem.uiBaseDadosTerceiro;
    rDestino.eTipoIntegracao = rOrigem.eTipoIntegracao;
    rDestino.eStatusIntegracao = rOrigem.eStatusIntegracao;
    rDestino.eSistemaIntegracao = rOrigem.eSistemaIntegracao;
    rDestino.eTipoTransacao = rOrigem.eTipoTransacao;
    rDestino.ulPonteiroFilial = rOrigem.ulPonteiroFilial;
    rDestino.ulPonteiroUsuarioInclusao = rOrigem.ulPonteiroUsuarioInclusao;
    rDestino.ulPonteiroUsuarioCancelamento = rOrigem.ulPonteiroUsuarioCancelamento;
    rDestino.ulPonteiroAuxiliar = rOrigem.ulPonteiroAuxiliar;
    rDestino.cReconsultarIdTerceiros = rOrigem.cReconsultarIdTerceiros;
    rDestino.ucTipoPonteiroAuxiliar = rOrigem.ucTipoPonteiroAuxiliar;
}

}  // namespace

HRESULT CXVDadosCR_IntegracaoMiddleware::CopiarDe(const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& reg) {
    if (!CXVStringPS::EhValido(reg.regRegistroJSON) || !CXVStringPS::EhValido(reg.regMensagemIntegracao) ||
        !CXVStringPS::EhValido(reg.regJSONRetornoIntegracao))
        return E_INVALIDARG;
    // The record may hold views into this very object: copy all texts before replacing any.
    std::string sJSON(CXVStringPS::RegToString(reg.regRegistroJSON));
    std::string sMensagem(CXVStringPS::RegToString(reg.regMensagemIntegracao));
    std::string sJSONRetorno(CXVStringPS::RegToString(reg.regJSONRetornoIntegracao));
    sRegistroJSON = std::move(sJSON);
    sMensagemIntegracao = std::move(sMensagem);
    sJSONRetornoIntegracao = std::move(sJSONRetorno);
    CopiaCampos(*this, reg);
    return S_OK;
}

HRESULT CXVDadosCR_IntegracaoMiddleware::CopiarParaPS(tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg) const {
    if (pReg == nullptr) return E_POINTER;
    *pReg = {};
    CopiaCampos(*pReg, *this);
    HRESULT hr = CXVStringPS::StringToReg(sRegistroJSON, &pReg->regRegistroJSON);
    if (SUCCEEDED(hr)) hr = CXVStringPS::StringToReg(sMensagemIntegracao, &pReg->regMensagemIntegracao);
    if (SUCCEEDED(hr)) hr = CXVStringPS::StringToReg(sJSONRetornoIntegracao, &pReg->regJSONRetornoIntegracao);
    if (FAILED(hr)) XVLiberaBuffers(pReg);
    return hr;
}

tagREG_CR_INTEGRACAO_MIDDLEWAREPS CXVDadosCR_IntegracaoMiddleware::ComoRegistro() const {
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    CopiaCampos(reg, *this);
    reg.regRegistroJSON = CXVStringPS::Vista(sRegistroJSON);
    reg.regMensagemIntegracao = CXVStringPS::Vista(sMensagemIntegracao);
    reg.regJSONRetornoIntegracao = CXVStringPS::Vista(sJSONRetornoIntegracao);
    return reg;
}

tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS CXVDadosCR_StatusIntegracaoMiddleware::ComoRegistro() const {
    return {.regDmc = regDmc,
            .regMensagemIntegracao = CXVStringPS::Vista(sMensagemIntegracao),
            .regJSONRetornoIntegracao = CXVStringPS::Vista(sJSONRetornoIntegracao),
            .uiChaveIntegracaoSistemaTerceiro = uiChaveIntegracaoSistemaTerceiro,
            .eStatusIntegracao = eStatusIntegracao,
            .eSistemaIntegracao = eSistemaIntegracao,
            .cFiller = {}};
}
