// The server process from start to end.
#pragma once

#include "platform/XVTipos.h"

// How a run of the server ended; pszPasso names the step that failed, in Portuguese, empty on success.
struct SFimServidor {
    HRESULT hr = S_OK;
    const char* pszPasso = "";
};

// Serves until the last client has left, the end is asked for or, when bAtivado, nobody comes.
SFimServidor XVExecutaServidor(bool bAtivado);
