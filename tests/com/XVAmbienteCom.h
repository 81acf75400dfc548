// The machine of the tests: the server registered, a module directory of its own in the registry, and
// nothing left of either afterwards.
#pragma once

#include <windows.h>

#include "tests/client/XVPortaTeste.h"

namespace XVAmbienteCom {

// Registers the server and points the suite's registry at a fresh directory; once, for the whole program.
bool Prepara();
void Desfaz();

const std::string& DiretorioModulo();
using XVPortaTeste::DiretorioEmpresa;
using XVPortaTeste::IntegracaoPendente;
using XVPortaTeste::NovaEmpresa;

// After a server was killed: some systems keep offering it until their COM service is started anew.
void EsqueceServidorMorto();

}  // namespace XVAmbienteCom
