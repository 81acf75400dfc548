// The process-wide instances of the seam. The operating system's own are in force from the start;
// tests exchange them, before the threads that use them start, and put them back.
#pragma once

#include "platform/XVRegistry.h"
#include "platform/XVRelogio.h"
#include "platform/XVSistemaArquivos.h"

namespace XVPlataforma {

IXVSistemaArquivos& SistemaArquivos();
IXVRelogio& Relogio();
IXVRegistry& Registry();

// The operating system's own instances, whatever is in force.
IXVSistemaArquivos& SistemaArquivosNativo();
IXVRelogio& RelogioNativo();
IXVRegistry& RegistryNativo();

// Puts p in force (null: the native one) and returns what was in force before.
IXVSistemaArquivos* TrocaSistemaArquivos(IXVSistemaArquivos* p);
IXVRelogio* TrocaRelogio(IXVRelogio* p);
IXVRegistry* TrocaRegistry(IXVRegistry* p);

}  // namespace XVPlataforma
