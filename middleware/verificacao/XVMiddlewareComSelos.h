// The integration store of the component: with the first integration of a day the days before are sealed,
// beside the calls that go on.
//
// Thread rule: that of CBaseMiddleware.
#pragma once

#include <mutex>

#include "middleware/BaseMiddleware.h"
#include "middleware/verificacao/XVSelagemDeDias.h"

class CXVMiddlewareComSelos : public CBaseMiddleware {
  protected:
    HRESULT OnFinaliza() override;
    void AoComecarDia(XVUInt64 uiDia) noexcept override;

  private:
    // Days looked at: those of a long weekend in which no day was begun.
    static constexpr std::size_t k_uiDias = 8;

    std::mutex m_mutexSelagem;
    CXVSelagemDeDias m_selagem;
};
