#include "contract/XVCR_BuffersPS.h"

#include <cstring>
#include <limits>

#include "platform/XVAmbienteSO.h"

namespace {

void LiberaBuffer(void* pBuffer) {
    if (pBuffer != nullptr) XVAmbienteSO::LiberaSaida(pBuffer);
}

}  // namespace

namespace CXVStringPS {

bool EhValido(const _REG_DF_TEXTOPS& reg) {
    if (reg.ulQtdBytes == 0) return true;
    return reg.pTexto != nullptr && std::memchr(reg.pTexto, 0, reg.ulQtdBytes) == nullptr;
}

std::string_view RegToString(const _REG_DF_TEXTOPS& reg) {
    if (reg.ulQtdBytes == 0 || reg.pTexto == nullptr) return {};
    return {reinterpret_cast<const char*>(reg.pTexto), reg.ulQtdBytes};
}

_REG_DF_TEXTOPS Vista(std::string_view sTexto) {
    _REG_DF_TEXTOPS reg{};
    if (sTexto.empty()) return reg;
    const bool bCabe = sTexto.size() <= std::numeric_limits<XVUInt>::max();
    reg.ulQtdBytes = bCabe ? static_cast<XVUInt>(sTexto.size()) : std::numeric_limits<XVUInt>::max();
    // Only read through a record that goes in; the pointer is not const because outputs share the layout.
    if (bCabe) reg.pTexto = reinterpret_cast<XVByte*>(const_cast<char*>(sTexto.data()));
    return reg;
}

HRESULT StringToReg(std::string_view sTexto, _REG_DF_TEXTOPS* pReg) {
    if (pReg == nullptr) return E_POINTER;
    *pReg = {};
    if (sTexto.empty()) return S_OK;
    if (sTexto.size() > std::numeric_limits<XVUInt>::max()) return E_INVALIDARG;
    void* pBuffer = XVAmbienteSO::AlocaSaida(sTexto.size());
    if (pBuffer == nullptr) return E_OUTOFMEMORY;
    std::memcpy(pBuffer, sTexto.data(), sTexto.size());
    pReg->ulQtdBytes = static_cast<XVUInt>(sTexto.size());
    pReg->pTexto = static_cast<XVByte*>(pBuffer);
    return S_OK;
}

void Libera(_REG_DF_TEXTOPS* pReg) {
    if (pReg == nullptr) return;
    LiberaBuffer(pReg->pTexto);
    *pReg = {};
}

}  // namespace CXVStringPS

void XVLiberaBuffers(tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg) {
    if (pReg == nullptr) return;
    CXVStringPS::Libera(&pReg->regRegistroJSON);
    CXVStringPS::Libera(&pReg->regMensagemIntegracao);
    CXVStringPS::Libera(&pReg->regJSONRetornoIntegracao);
}

void XVLiberaBuffers(_REG_DF_LISTA_XVDMCPS* pReg) {
    if (pReg == nullptr) return;
    LiberaBuffer(pReg->pLista);
    *pReg = {};
}

void XVLiberaBuffers(_REG_CR_LISTA_BYTESPS* pReg) {
    if (pReg == nullptr) return;
    LiberaBuffer(pReg->pListaBytes);
    *pReg = {};
}

void XVLiberaBuffers(tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS* pReg) {
    if (pReg == nullptr) return;
    CXVStringPS::Libera(&pReg->regMensagemRetorno);
    CXVStringPS::Libera(&pReg->regJSONRetorno);
    LiberaBuffer(pReg->pDocumentoRetorno);
    pReg->pDocumentoRetorno = nullptr;
    pReg->ulTamanhoDocumentoRetorno = 0;
}

_REG_DF_LISTA_XVDMCPS XVVista(const std::vector<REG_XVDMC>& lista) {
    _REG_DF_LISTA_XVDMCPS reg{};
    const bool bCabe = lista.size() <= std::numeric_limits<XVUInt>::max();
    reg.ulQuantidade = bCabe ? static_cast<XVUInt>(lista.size()) : std::numeric_limits<XVUInt>::max();
    if (bCabe && !lista.empty()) reg.pLista = const_cast<REG_XVDMC*>(lista.data());
    return reg;
}
