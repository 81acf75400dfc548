// Whether a store without version file is of version 0, which never had one, or lost it.
#pragma once

#include "middleware/verificacao/XVLeituraLoja.h"
#include "support/trace/IXVDF_Profiler.h"

// As a conversion judges it, which is asked to log nothing. False as well where the directory is not the one
// that the configuration names for the owner's company: nothing then judges its files.
bool XVEhVersaoZero(CXVLeituraLoja& rLeitura, const std::string& sDiretorio, const IXVDF_Profiler& rDono);
