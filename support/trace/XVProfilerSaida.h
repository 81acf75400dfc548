// Puts a finished record into its log file and counts what could not be written.
#pragma once

#include "support/trace/XVProfilerArquivo.h"

namespace XVProfilerSaida {

// The record also tells how many before it could not be written.
void Escreve(const SConfiguracaoTrace& rConfiguracao, SProfilerEvento& rEvento);
XVUInt64 GetPerdidos();  // of this process, in all

}  // namespace XVProfilerSaida
