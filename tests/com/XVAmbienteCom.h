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
    CValorDaRegistry(const wchar_t* pszValor, DWORD ulNumero);
    ~CValorDaRegistry();
    CValorDaRegistry(const CValorDaRegistry&) = delete;
    CValorDaRegistry& operator=(const CValorDaRegistry&) = delete;

  private:
    static constexpr const wchar_t* k_pszChave = L"SOFTWARE\\Wow6432Node\\Velmora";
    const wchar_t* m_pszValor;
    DWORD m_ulAntes = 0;
    bool m_bHavia = false;
};

// After a server was killed: some systems keep offering it until their COM service is started anew.
void EsqueceServidorMorto();

}  // namespace XVAmbienteCom
