// The boundary of recording: what writes a record runs behind it. It marks that this thread is writing one,
// so that a failure on the way is not recorded in turn, and keeps the thread's last system error.
#pragma once

#include "platform/XVUltimoErroSistema.h"

class CXVGuardaRegistry {
  public:
    CXVGuardaRegistry() noexcept : m_bObtida(!s_bGravando) { s_bGravando = true; }
    ~CXVGuardaRegistry() {
        if (m_bObtida) s_bGravando = false;
    }
    CXVGuardaRegistry(const CXVGuardaRegistry&) = delete;
    CXVGuardaRegistry& operator=(const CXVGuardaRegistry&) = delete;

    // False inside another guard of the same thread.
    bool Obtida() const { return m_bObtida; }

  private:
    static thread_local bool s_bGravando;
    CXVPreservaUltimoErro m_ultimoErro;
    bool m_bObtida;
};

// Runs gravacao unless this thread is inside another one. Recording never fails outward: an exception, which
// is a lack of memory, costs the record and nothing else.
template <class TGravacao>
void XVGravaSemFalhar(TGravacao gravacao) noexcept {
    const CXVGuardaRegistry guarda;
    if (!guarda.Obtida()) return;
    try {
        gravacao();
    } catch (...) {  // see above
    }
}
