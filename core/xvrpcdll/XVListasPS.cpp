#include "core/xvrpcdll/XVListasPS.h"

#include <cstring>
#include <limits>

#include "contract/XVCR_BuffersPS.h"
#include "platform/XVAmbienteSO.h"

HRESULT XVListaDeBytes(const _REG_CR_LISTA_BYTESPS* pReg, std::span<const XVByte>* pLista) {
    *pLista = {};
    if (pReg == nullptr) return E_POINTER;
    if (pReg->ulQtdBytes == 0) return S_OK;
    if (pReg->pListaBytes == nullptr) return E_INVALIDARG;
    *pLista = {pReg->pListaBytes, pReg->ulQtdBytes};
    return S_OK;
}

HRESULT XVListaDeDmc(const _REG_DF_LISTA_XVDMCPS* pReg) {
    if (pReg == nullptr) return E_POINTER;
    if (pReg->ulQuantidade == 0) return S_OK;
    // The answer has one record for every key: the size of no answer overflows in the component, a program of
    // 64 bits.
    static_assert(sizeof(void*) == 4 ||
                  std::numeric_limits<XVUInt>::max() <=
                      std::numeric_limits<std::ptrdiff_t>::max() / sizeof(tagREG_CR_INTEGRACAO_MIDDLEWAREPS));
    return pReg->pLista == nullptr ? E_INVALIDARG : S_OK;
}

HRESULT XVListaDeBytesToReg(std::span<const XVByte> lista, _REG_CR_LISTA_BYTESPS* pReg) {
    *pReg = {};
    if (lista.empty()) return S_OK;
    if (lista.size() > std::numeric_limits<XVUInt>::max()) return E_INVALIDARG;
    void* pBuffer = XVAmbienteSO::AlocaSaida(lista.size());
    if (pBuffer == nullptr) return E_OUTOFMEMORY;
    std::memcpy(pBuffer, lista.data(), lista.size());
    pReg->pListaBytes = static_cast<XVByte*>(pBuffer);
    pReg->ulQtdBytes = static_cast<XVUInt>(lista.size());
    return S_OK;
}

void XVLiberaIntegracoes(XVUInt* pulQuantidade, tagREG_CR_INTEGRACAO_MIDDLEWAREPS** ppRegIntegracao) {
    if (*ppRegIntegracao != nullptr) {
        for (XVUInt i = 0; i < *pulQuantidade; ++i) XVLiberaBuffers(&(*ppRegIntegracao)[i]);
        XVAmbienteSO::LiberaSaida(*ppRegIntegracao);
    }
    *ppRegIntegracao = nullptr;
    *pulQuantidade = 0;
}
