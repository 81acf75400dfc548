// Result code of a failed operation of the seam, for the suite's own small files.
#pragma once

#include "platform/XVErroArquivo.h"

// S_OK for success; causes without a code of their own give eXVGenericError.
HRESULT XVCodigoArquivo(const CXVErroArquivo& rErro);
