#include "platform/XVUltimoErroSistema.h"

#include <cerrno>

CXVPreservaUltimoErro::CXVPreservaUltimoErro() noexcept : m_iErrno(errno) {}

CXVPreservaUltimoErro::~CXVPreservaUltimoErro() {
    errno = m_iErrno;
}
