// Keeps the thread's last system error (errno, and GetLastError where there is one) over the object's
// life: what runs in between leaves no trace in it.
#pragma once

#include "platform/XVTipos.h"

class CXVPreservaUltimoErro {
  public:
    CXVPreservaUltimoErro() noexcept;
    ~CXVPreservaUltimoErro();
    CXVPreservaUltimoErro(const CXVPreservaUltimoErro&) = delete;
    CXVPreservaUltimoErro& operator=(const CXVPreservaUltimoErro&) = delete;

  private:
    int m_iErrno;
    [[maybe_unused]] XVUInt m_ulErroSistema = 0;  // where there is one beside errno
};
