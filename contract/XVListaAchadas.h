// The DMCs that a search finds, in the memory in which the caller of the interface gets them: what was found
// is copied for nobody.
//
// Thread rule: one thread.
#pragma once

#include <memory>
#include <span>

#include "contract/XVCR_RegistrosPS.h"
#include "platform/XVAmbienteSO.h"
#include "support/values/XVDmc.h"

class CXVListaAchadas {
  public:
    // Room for so many in all. Throws std::bad_alloc and leaves the list as it was.
    void Reserva(std::size_t uiQuantidade);
    // Adds uiQuantidade for the caller to fill; Encurta takes those back from the end that were not needed.
    REG_XVDMC* Amplia(std::size_t uiQuantidade);
    void Encurta(std::size_t uiQuantidade) { m_uiQuantidade -= uiQuantidade; }
    void Inclui(REG_XVDMC regDmc) { *Amplia(1) = regDmc; }
    void Limpa() { m_uiQuantidade = 0; }

    std::span<REG_XVDMC> GetDmcs() const { return {m_p.get(), m_uiQuantidade}; }
    std::size_t size() const { return m_uiQuantidade; }
    bool empty() const { return m_uiQuantidade == 0; }

    // Hands the memory over, without what it has too much; an empty list is null and 0. E_INVALIDARG: more
    // than the record counts.
    HRESULT Entrega(_REG_DF_LISTA_XVDMCPS* pReg);

  private:
    struct SLibera {
        void operator()(REG_XVDMC* p) const noexcept { XVAmbienteSO::LiberaSaida(p); }
    };
    void Muda(std::size_t uiCapacidade);

    std::unique_ptr<REG_XVDMC[], SLibera> m_p;
    std::size_t m_uiQuantidade = 0;
    std::size_t m_uiCapacidade = 0;
};
