#include <cstring>
#include <limits>

#include "contract/XVCR_BuffersPS.h"
#include "contract/XVDadosCR.h"
#include "platform/XVAmbienteSO.h"

HRESULT CXVDadosCR_ConsultaSistemaTerceiro::CopiarDe(const tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS& reg) {
    if (!CXVStringPS::EhValido(reg.regChaveConsulta)) return E_INVALIDARG;
    sChaveConsulta.assign(CXVStringPS::RegToString(reg.regChaveConsulta));
    eTipoConsulta = reg.eTipoConsulta;
    ulPonteiroAuxiliar = reg.ulPonteiroAuxiliar;
    ucTipoPonteiroAuxiliar = reg.ucTipoPonteiroAuxiliar;
    return S_OK;
}

tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS CXVDadosCR_ConsultaSistemaTerceiro::ComoRegistro() const {
    return {.regChaveConsulta = CXVStringPS::Vista(sChaveConsulta),
            .eTipoConsulta = eTipoConsulta,
            .ulPonteiroAuxiliar = ulPonteiroAuxiliar,
            .cFiller = {},
            .ucTipoPonteiroAuxiliar = ucTipoPonteiroAuxiliar};
}

HRESULT CXVDadosCR_StatusConsultaSistemaTerceiro::CopiarDe(
    const tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS& reg) {
    if (!CXVStringPS::EhValido(reg.regMensagemRetorno) || !CXVStringPS::EhValido(reg.regJSONRetorno) ||
        (reg.ulTamanhoDocumentoRetorno != 0 && reg.pDocumentoRetorno == nullptr))
        return E_INVALIDARG;
    sMensagemRetorno.assign(CXVStringPS::RegToString(reg.regMensagemRetorno));
    sJSONRetorno.assign(CXVStringPS::RegToString(reg.regJSONRetorno));
    sDocumentoRetorno.clear();
    if (reg.ulTamanhoDocumentoRetorno != 0)
        sDocumentoRetorno.assign(reinterpret_cast<const char*>(reg.pDocumentoRetorno),
                                 reg.ulTamanhoDocumentoRetorno);
    eStatusConsulta = reg.eStatusConsulta;
    return S_OK;
}

HRESULT CXVDadosCR_StatusConsultaSistemaTerceiro::CopiarParaPS(
    tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS* pReg) const {
    if (pReg == nullptr) return E_POINTER;
    *pReg = {};
    if (sDocumentoRetorno.size() > std::numeric_limits<XVUInt>::max()) return E_INVALIDARG;
    pReg->eStatusConsulta = eStatusConsulta;
    HRESULT hr = CXVStringPS::StringToReg(sMensagemRetorno, &pReg->regMensagemRetorno);
    if (SUCCEEDED(hr)) hr = CXVStringPS::StringToReg(sJSONRetorno, &pReg->regJSONRetorno);
    if (SUCCEEDED(hr) && !sDocumentoRetorno.empty()) {
        pReg->pDocumentoRetorno = static_cast<XVByte*>(XVAmbienteSO::AlocaSaida(sDocumentoRetorno.size()));
        if (pReg->pDocumentoRetorno == nullptr) {
            hr = E_OUTOFMEMORY;
        } else {
            std::memcpy(pReg->pDocumentoRetorno, sDocumentoRetorno.data(), sDocumentoRetorno.size());
            pReg->ulTamanhoDocumentoRetorno = static_cast<XVUInt>(sDocumentoRetorno.size());
        }
    }
    if (FAILED(hr)) XVLiberaBuffers(pReg);
    return hr;
}
