// The marks that are placed on a store's directory while something in it is changed by one process alone.
//
// The lock of a mark ends with its process, but where the system does not take the file away together with
// the process, one that was killed leaves an empty file behind. It means nothing and is in nobody's way; the
// next writer takes it away, so that what stands in a directory is what somebody holds.
#pragma once

#include <string>

#include "support/XVAmbiente.h"

enum class IXVArqMarcaEnum : unsigned { ControleCriacaoArquivosInMemory = 1, Conversao = 2 };

namespace XVMarcas {

std::string Nome(EModulo eModulo, IXVArqMarcaEnum eMarca);

// Takes away the marks that nobody holds, that of the general log included. Called by the one who has the
// store open for writing. A mark that cannot be taken away stays: it stops nothing.
void RetiraSemDono(EModulo eModulo, const std::string& sDiretorio);

}  // namespace XVMarcas
