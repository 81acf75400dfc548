// The single record of a database's version file.
#pragma once

#include <string_view>

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
