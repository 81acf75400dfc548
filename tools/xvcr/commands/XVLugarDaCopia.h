// Where a copy of a store may lie: never in the store, nor the store in it, whatever the paths are called.
#pragma once

#include <string>
#include <vector>

#include "platform/XVTipos.h"

// sDestino: as the user names it; aPastas: those in it that would be written to. A place that will not do is
// thrown as CXVErro, and nothing was made or changed.
void XVExigeLugarDaCopia(const std::string& sDestino, const std::string& sOrigem,
                         const std::vector<std::string>& aPastas);

// XVDescreveFalha, and in its place that sDestino cannot be made, where that is what hr means.
std::string XVDescreveFalhaNoDestino(HRESULT hr, const std::string& sDestino);
