// The single record of a database's version file.
#pragma once

#include <string_view>

#include "core/xvdatabase/XVCabecalho.h"
#include "support/trace/XVCheck.h"

#pragma pack(push, 1)
struct REG_CR_MIDDLEWARE_VERSAO {
    XVUShort usVersao;
    XVByte aZero[14];
};
#pragma pack(pop)
static_assert(sizeof(REG_CR_MIDDLEWARE_VERSAO) == 16);

template <>
inline constexpr std::string_view k_sNomeRegistro<REG_CR_MIDDLEWARE_VERSAO> = "REG_CR_MIDDLEWARE_VERSAO";

// Whether the version of the record changed by itself: the header, which has a checksum, names a later one.
// Version 1 there says nothing, for every file begins with it. A version above the header's is what a program
// leaves that writes the record alone.
inline bool XVVersaoNaoConfere(const REG_CR_MIDDLEWARE_VERSAO& reg, XVUShort usVersaoArquivo) {
    return usVersaoArquivo > k_usVersaoArquivoInicial && reg.usVersao < usVersaoArquivo;
}
