#include "platform/XVUltimoErroSistema.h"

#include <windows.h>

#include <cerrno>

CXVPreservaUltimoErro::CXVPreservaUltimoErro() noexcept
    : m_iErrno(errno), m_ulErroSistema(::GetLastError()) {}

CXVPreservaUltimoErro::~CXVPreservaUltimoErro() {
    errno = m_iErrno;
    ::SetLastError(m_ulErroSistema);
}
