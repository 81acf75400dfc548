// Export of the library that treats invalid parameters, loaded by name ("XVMens.dll") and optional: a C
// function, so that any compiler's library can offer it. Texts are UTF-8 and live for the call only.
#pragma once

#include "platform/XVTipos.h"

inline constexpr const char* k_pszBibliotecaTratamento = "XVMens.dll";

// hrComponente: E_XVCR_PARAMETRO_INVALIDO_RUNTIME; hrErrno: what the call will answer; lMaximo and
// lZero: 0x7FFFFFFF and 0; pszServidor: name of the default server, may be empty; pszFonte and iLinha:
// source unit and line of the interface method; bVerdadeiro: 1; pszModulo: path of the running program;
// pszTexto: "Expression = ...\tFunction = ...\tFile = ...\tLine = ...".
using PFuncaoXVTrataErro = void (*)(HRESULT hrComponente, HRESULT hrErrno, std::int32_t lMaximo,
                                    const char* pszServidor, const char* pszFonte, int iLinha,
                                    int bVerdadeiro, std::int32_t lZero, const char* pszModulo,
                                    const char* pszTexto);
inline constexpr const char* k_pszXVTrataErroExported = "XVTrataErroExported";
