// The exception class of the compiler's COM support, seen without its headers.
#pragma once

#include "platform/XVTipos.h"

namespace XVErroCom {

// Whether the exception in flight is a _com_error, and then its HRESULT; where the system has no such
// class, never. Precondition: called inside a catch handler.
bool EmVoo(HRESULT* phr) noexcept;

}  // namespace XVErroCom
