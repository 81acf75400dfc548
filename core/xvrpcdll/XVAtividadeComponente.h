// When a component was last called: what tells a component whose client is gone from one at work.
// Thread rule: any thread.
#pragma once

#include <atomic>

#include "platform/XVPlataforma.h"

class CXVAtividadeComponente {
  public:
    CXVAtividadeComponente() : m_ulFimUltimaChamada(XVPlataforma::Relogio().GetTicks()) {}

    // Held by a call for as long as it is inside the component.
    class CChamada {
      public:
        explicit CChamada(CXVAtividadeComponente& rAtividade) : m_rAtividade(rAtividade) {
            m_rAtividade.m_uiChamadas.fetch_add(1, std::memory_order_relaxed);
        }
        ~CChamada() {
            m_rAtividade.m_ulFimUltimaChamada.store(XVPlataforma::Relogio().GetTicks(),
                                                    std::memory_order_release);
            m_rAtividade.m_uiChamadas.fetch_sub(1, std::memory_order_release);
        }
        CChamada(const CChamada&) = delete;
        CChamada& operator=(const CChamada&) = delete;

      private:
        CXVAtividadeComponente& m_rAtividade;
    };

    // Milliseconds since the last call ended (since construction when there was none); 0 while one is inside.
    XVUInt GetOciosidade() const {
        if (m_uiChamadas.load(std::memory_order_acquire) != 0) return 0;
        // The clock is read last: a call that ended after the reading would seem idle for 49 days.
        const XVUInt ulFim = m_ulFimUltimaChamada.load(std::memory_order_acquire);
        return XVPlataforma::Relogio().GetTicks() - ulFim;
    }

  private:
    std::atomic<XVUInt> m_uiChamadas = 0;
    std::atomic<XVUInt> m_ulFimUltimaChamada;
};
