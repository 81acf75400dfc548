// A treatment library that writes down its last call.
#include <cstdio>

#include "support/faults/XVMens.h"

namespace {
char g_szChamada[4096] = "";
}

extern "C" {

void XVTrataErroExported(HRESULT hrComponente, HRESULT hrErrno, std::int32_t lMaximo, const char* pszServidor,
                         const char* pszFonte, int iLinha, int bVerdadeiro, std::int32_t lZero,
                         const char* pszModulo, const char* pszTexto) {
    std::snprintf(g_szChamada, sizeof g_szChamada, "%08X|%08X|%08X|%s|%s|%d|%d|%d|%s|%s",
                  static_cast<unsigned>(hrComponente), static_cast<unsigned>(hrErrno),
                  static_cast<unsigned>(lMaximo), pszServidor, pszFonte, iLinha, bVerdadeiro,
                  static_cast<int>(lZero), pszModulo, pszTexto);
}

const char* XVMensUltimaChamada() {
    return g_szChamada;
}

}  // extern "C"
