// CRC-64 from its definition, bit by bit and without the product's tables: reflected polynomial
// 0xC96C5795D7870F42, from 0, no final inversion.
#pragma once

#include <string_view>

#include "platform/XVTipos.h"

inline XVUInt64 CrcBitABit(std::string_view sBytes) {
    XVUInt64 uiCrc = 0;
    for (const char c : sBytes) {
        uiCrc ^= static_cast<unsigned char>(c);
        for (int i = 0; i < 8; ++i) uiCrc = (uiCrc >> 1) ^ ((uiCrc & 1) != 0 ? 0xC96C5795D7870F42ULL : 0);
    }
    return uiCrc;
}
