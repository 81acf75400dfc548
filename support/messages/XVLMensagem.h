// Exports of the messages library, which programs load by name ("XVLMensagem.dll"): C functions, so that
// any compiler's program can call them. Thread rule: any thread.
#pragma once

#include "platform/XVTipos.h"

inline constexpr const char* k_pszBibliotecaMensagens = "XVLMensagem.dll";

// Copies the sentence of the code, UTF-8 with terminator, into pszTexto, which has room for ulTamanho
// bytes, and returns its length without terminator. A sentence that does not fit is cut before the
// character that would cross the end. Unknown code: 0 and an empty text. A null pszTexto or ulTamanho 0
// asks for the length alone.
using PFuncaoXVGetDescricaoHRESULT = XVUInt (*)(HRESULT hr, char* pszTexto, XVUInt ulTamanho);
inline constexpr const char* k_pszXVGetDescricaoHRESULT = "XVGetDescricaoHRESULT";

// 1 when the facility number is one of the suite's own, else 0.
using PFuncaoEhFacilityMT = int (*)(XVUInt ulFacility);
inline constexpr const char* k_pszEhFacilityMT = "EhFacilityMT";
