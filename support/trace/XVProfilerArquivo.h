// The log files: which one a record goes to, and appending to it.
#pragma once

#include <string>
#include <string_view>

#include "support/trace/XVProfilerConfig.h"
#include "support/trace/XVProfilerLinha.h"

namespace XVProfilerArquivo {

// Full path of the file that the record goes to; empty when the module directory is not known.
std::string GetCaminho(const SConfiguracaoTrace& rConfiguracao, const SProfilerEvento& rEvento);

// Appends one line (with its end), preceded by the header in an empty or new file, while other writers
// are kept out. False: nothing was written. Thread rule: any thread of any process.
bool Anexa(const std::string& sCaminho, std::string_view sCabecalho, std::string_view sLinha);

}  // namespace XVProfilerArquivo
