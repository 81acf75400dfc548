// HRESULTs of the C runtime's errno values: consecutive codes from E_XV_ERRNO_PRIMEIRO in ascending order
// of the Windows runtime's numbers. Where errno is numbered otherwise, a value is taken by its name.
#pragma once

#include "platform/XVTipos.h"

// Of a number of the Windows runtime; E_XV_ERRNO_DESCONHECIDO where it has none.
HRESULT XVHResultDeErrnoWindows(int iErrno);

// Of a number of the runtime in use.
HRESULT XVHResultDeErrno(int iErrno);

// Of the calling thread's errno.
HRESULT XVHResultDoErrnoAtual();
