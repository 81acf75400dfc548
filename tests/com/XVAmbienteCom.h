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

// A value under the suite's root key, for servers that start while it lives; what was there comes back.
class CValorDaRegistry {
  public:
    static constexpr const wchar_t* k_pszChave = L"SOFTWARE\\Wow6432Node\\Velmora";

    CValorDaRegistry(const wchar_t* pszValor, DWORD ulNumero);
    ~CValorDaRegistry();
    CValorDaRegistry(const CValorDaRegistry&) = delete;
    CValorDaRegistry& operator=(const CValorDaRegistry&) = delete;

  private:
    const wchar_t* m_pszValor;
    DWORD m_ulAntes = 0;
    bool m_bHavia = false;
};

// Where a server was killed or is about to be: some systems keep offering it until their COM service is
// started anew, and the new one knows of no server that was there before. So while other clients go on
// creating, the service is restarted first and the servers end after it: one that outlived its service would
// hold the place of the server and never be found, and clients that all start the service at once do not all
// come to the same one.
void EsqueceServidorMorto();

}  // namespace XVAmbienteCom
