// Which processes and which functions leave entry, exit and object-creation records.
#pragma once

#include <string_view>

#include "support/trace/XVProfilerConfig.h"

namespace XVProfilerFiltro {

// sProcesso in lower case.
bool DeveLogarProcesso(const SConfiguracaoTrace& rConfiguracao, std::string_view sProcesso);

// The storage engine, called for every record read or written, is silent unless it is asked for.
bool DeveLogarXVDataBase(const SConfiguracaoTrace& rConfiguracao, std::string_view sFuncao);

}  // namespace XVProfilerFiltro
