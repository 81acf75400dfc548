// Names of the Windows SDK's headers for facilities, Win32 error codes and whole HRESULTs: constant data
// sorted by value, made by scripts/generate-hresult-names.
#pragma once

#include <span>

#include "platform/XVTipos.h"

struct SNomeCodigo {
    XVUInt ulCodigo;
    const char* pszNome;
};

namespace XVNomesHResult {

extern const std::span<const SNomeCodigo> k_listaFacility;
extern const std::span<const SNomeCodigo> k_listaWin32;
extern const std::span<const SNomeCodigo> k_listaHResult;

// Binary search; null for a value that is not in the list.
const char* Busca(std::span<const SNomeCodigo> lista, XVUInt ulCodigo);

}  // namespace XVNomesHResult
