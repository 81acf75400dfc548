// Which integrations the exchange operations of a component recorded since the last of them began. Their
// answers name one at most, and after a failure the caller still has to know what must not be sent again.
//
// Thread rule: any thread.
#pragma once

#include <mutex>
#include <vector>

#include "support/values/XVDmc.h"

class CXVUltimasGravadas {
  public:
    // Nothing so far; uiMaximo may follow.
    void Comeca(std::size_t uiMaximo) {
        const std::lock_guard trava(m_mutex);
        m_lista.clear();
        m_lista.reserve(uiMaximo);
    }
    void Inclui(REG_XVDMC regDmc) {
        const std::lock_guard trava(m_mutex);
        m_lista.push_back(regDmc);
    }
    std::vector<REG_XVDMC> Get() const {
        const std::lock_guard trava(m_mutex);
        return m_lista;
    }

  private:
    mutable std::mutex m_mutex;
    std::vector<REG_XVDMC> m_lista;
};
