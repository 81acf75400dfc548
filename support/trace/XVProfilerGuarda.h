// Marks that this thread is writing a record, so that a failure on the way is not recorded in turn, and
// keeps the thread's last system error meanwhile.
#pragma once

#include "platform/XVUltimoErroSistema.h"

class CXVGuardaRegistro {
  public:
    CXVGuardaRegistro() noexcept : m_bObtida(!s_bGravando) { s_bGravando = true; }
    ~CXVGuardaRegistro() {
        if (m_bObtida) s_bGravando = false;
    }
    CXVGuardaRegistro(const CXVGuardaRegistro&) = delete;
    CXVGuardaRegistro& operator=(const CXVGuardaRegistro&) = delete;

    // False inside another guard of the same thread.
    bool Obtida() const { return m_bObtida; }

  private:
    static thread_local bool s_bGravando;
    CXVPreservaUltimoErro m_ultimoErro;
    bool m_bObtida;
};
