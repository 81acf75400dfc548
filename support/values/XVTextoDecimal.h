// Decimal numbers put behind a text, for lines that are written with every operation.
#pragma once

#include <charconv>
#include <string>

#include "platform/XVTipos.h"

inline void XVAnexaDecimal(std::string& rTexto, XVUInt64 uiNumero) {
    char szDigitos[20];
    char* pszFim = std::to_chars(szDigitos, szDigitos + sizeof(szDigitos), uiNumero).ptr;
    rTexto.append(szDigitos, pszFim);
}

// The last uiDigitos digits, with zeros before a smaller number.
inline void XVAnexaDecimal(std::string& rTexto, unsigned uiNumero, std::size_t uiDigitos) {
    rTexto.append(uiDigitos, '0');
    for (auto it = rTexto.rbegin(); uiDigitos > 0; --uiDigitos, ++it, uiNumero /= 10)
        *it = static_cast<char>('0' + uiNumero % 10);
}
