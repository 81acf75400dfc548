#include "contract/XVListaAchadas.h"

#include <algorithm>
#include <limits>
#include <new>

#include "support/codes/XVCodigos.h"

void CXVListaAchadas::Muda(std::size_t uiCapacidade) {
    if (uiCapacidade > std::numeric_limits<std::size_t>::max() / sizeof(REG_XVDMC)) throw std::bad_alloc();
    std::unique_ptr<REG_XVDMC[], SLibera> p(
        static_cast<REG_XVDMC*>(XVAmbienteSO::AlocaSaida(uiCapacidade * sizeof(REG_XVDMC))));
    if (p == nullptr) throw std::bad_alloc();
    std::copy_n(m_p.get(), m_uiQuantidade, p.get());
    m_p = std::move(p);
    m_uiCapacidade = uiCapacidade;
}

void CXVListaAchadas::Reserva(std::size_t uiQuantidade) {
    if (uiQuantidade > m_uiCapacidade) Muda(uiQuantidade);
}

REG_XVDMC* CXVListaAchadas::Amplia(std::size_t uiQuantidade) {
    if (uiQuantidade > m_uiCapacidade - m_uiQuantidade)
        Muda(std::max(m_uiQuantidade + uiQuantidade, m_uiCapacidade * 2));
    m_uiQuantidade += uiQuantidade;
    return m_p.get() + (m_uiQuantidade - uiQuantidade);
}

HRESULT CXVListaAchadas::Entrega(_REG_DF_LISTA_XVDMCPS* pReg) {
    *pReg = {};
    if (empty()) return S_OK;
    if (m_uiQuantidade > std::numeric_limits<XVUInt>::max()) return E_INVALIDARG;
    constexpr std::size_t k_uiSobra = 4096;  // not worth a copy
    if (m_uiCapacidade > m_uiQuantidade + m_uiQuantidade / 4 + k_uiSobra) Muda(m_uiQuantidade);
    pReg->ulQuantidade = static_cast<XVUInt>(m_uiQuantidade);
    pReg->pLista = m_p.release();
    m_uiQuantidade = m_uiCapacidade = 0;
    return S_OK;
}
