// The machine of the tests: the server registered, a module directory of its own in the registry, and
// nothing left of either afterwards.
#pragma once

#include <windows.h>

#include <string>

#include "platform/XVTipos.h"
#include "tests/client/XVPortaTeste.h"

namespace XVAmbienteCom {

// Registers the server and points the suite's registry at a fresh directory; once, for the whole program.
bool Prepara();
void Desfaz();

const std::string& DiretorioModulo();
using XVPortaTeste::DiretorioEmpresa;
using XVPortaTeste::IntegracaoPendente;
using XVPortaTeste::NovaEmpresa;

// A value under the suite's root key, taken back by Apaga. Seen by servers that start afterwards.
void GravaValor(const wchar_t* pszValor, DWORD ulNumero);
void ApagaValor(const wchar_t* pszValor);

// After a server was killed: some systems keep offering it until their COM service is started anew.
void EsqueceServidorMorto();

inline HRESULT Codigo(XVUInt ulCodigo) {
    return XVHResult(ulCodigo);
}

}  // namespace XVAmbienteCom
