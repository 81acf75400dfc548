// Puts a finished record into its log file and counts what could not be written.
#pragma once

#include "support/trace/XVProfilerArquivo.h"

namespace XVProfilerSaida {

void Escreve(const SConfiguracaoTrace& rConfiguracao, const SProfilerEvento& rEvento);
XVUInt64 GetPerdidos();

}  // namespace XVProfilerSaida
