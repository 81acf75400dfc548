// The golden stores of versions 0 to 4 and what their records are at version 5: bytes that were written
// without anything of the product (golden/generate.py). Every field holds another value, none of them 0.
#pragma once

#include <map>
#include <string>

#include "tests/middleware/XVBytesBase.h"

using TArquivos = std::map<std::string, std::string>;  // name in the data directory -> bytes

// The days' files of every store.
inline constexpr const char* k_apszDias[] = {"CRINTEGMID20230605.dat", "CRINTEGMID20230606.dat",
                                             "CRINTEGMID20230607.dat"};

// The store as programs of this version left it. bCabecalho: with headers, as all but the oldest wrote them.
TArquivos XVBaseDourada(unsigned uiVersao, bool bCabecalho);

// Payloads, without header, that the files of such a store have after its conversion: all that any step
// writes.
TArquivos XVDadosConvertidos(unsigned uiVersao);
