// How a registration ended.
#pragma once

#include <string>

#include "platform/XVTipos.h"

// sPasso names the step that failed, in Portuguese; empty on success.
struct SResultadoInscricao {
    HRESULT hr = S_OK;
    std::string sPasso;
};
