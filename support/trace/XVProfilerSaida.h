// Puts a finished record into its log file and counts what could not be written.
#pragma once

#include "support/trace/XVProfilerArquivo.h"

namespace XVProfilerSaida {

void Escreve(const SConfiguracaoTrace& rConfiguracao, const SProfilerRegistro& rRegistro);
XVUInt64 GetPerdidos();

}  // namespace XVProfilerSaida
