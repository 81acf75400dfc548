// The log files: which one a record goes to, and appending to it.
#pragma once

#include <string>
#include <string_view>

#include "support/trace/XVProfilerConfig.h"
#include "support/trace/XVProfilerLinha.h"

namespace XVProfilerArquivo {

enum class EAnexo : std::uint8_t {
    eEscrita,
    eSemDiretorio,  // nothing was written: the directory is not there
    ePerdida,       // nothing was written
};

// Full path of the file that the record goes to; empty when the module directory is not known.
std::string GetCaminho(const SConfiguracaoTrace& rConfiguracao, const SProfilerEvento& rEvento);

// The log of the programs, where an error goes whose company has no directory yet.
std::string GetCaminhoProgramas(const SConfiguracaoTrace& rConfiguracao, const SProfilerEvento& rEvento);

// Appends one line (with its end), preceded by the header in an empty or new file, while other writers
// are kept out. A last line that an ended write left without its end receives it first. A file that somebody
// keeps locked costs the line after a bounded number of attempts. Thread rule: any thread of any process.
EAnexo Anexa(const std::string& sCaminho, std::string_view sCabecalho, std::string_view sLinha);

}  // namespace XVProfilerArquivo
