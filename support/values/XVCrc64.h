// CRC-64 of file headers, of the initialisation record and of index keys: ECMA-182 polynomial
// 0x42F0E1EBA9EA3693, reflected, initial value 0, no final XOR. Check value over "123456789":
// 0x2B9C7EE4E2780C8A. Passing the CRC of one field as initial value of the next gives the CRC of the
// concatenated bytes.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace XVCrcInterno {
// Eight bytes are taken in one load, the first of them lowest.
static_assert(std::endian::native == std::endian::little);

// From this length on, folding by multiplication costs less than the tables, which it still needs at its end.
inline constexpr std::size_t k_uiMinimoLongo = 64;

// The polynomial times x, reflected: bit 63 stands for x to the power of 0.
constexpr std::uint64_t VezesX(std::uint64_t ui) {
    return (ui >> 1) ^ ((ui & 1) != 0 ? 0xC96C5795D7870F42ULL : 0ULL);
}

// Byte uiQual of ui, as the position in a table.
constexpr std::size_t Octeto(std::uint64_t ui, unsigned uiQual) {
    return static_cast<std::size_t>(ui >> (8 * uiQual) & 0xFF);
}

// Slicing-by-8 tables: entry [k][b] is byte b followed by k zero bytes.
consteval std::array<std::array<std::uint64_t, 256>, 8> GeraTabelas() {
    std::array<std::array<std::uint64_t, 256>, 8> aTabelas{};
    for (std::size_t b = 0; b < 256; ++b) {
        std::uint64_t uiCrc = b;
        for (int i = 0; i < 8; ++i) uiCrc = VezesX(uiCrc);
        aTabelas[0][b] = uiCrc;
    }
    for (std::size_t k = 1; k < 8; ++k)
        for (std::size_t b = 0; b < 256; ++b)
            aTabelas[k][b] = (aTabelas[k - 1][b] >> 8) ^ aTabelas[0][Octeto(aTabelas[k - 1][b], 0)];
    return aTabelas;
}
inline constexpr auto k_aTabelas = GeraTabelas();

inline std::uint64_t PorTabelas(const void* pDados, std::size_t uiTamanho, std::uint64_t uiInicial) {
    const auto* p = static_cast<const unsigned char*>(pDados);
    const auto& t = k_aTabelas;
    std::uint64_t uiCrc = uiInicial;
    for (; uiTamanho >= sizeof(std::uint64_t);
         uiTamanho -= sizeof(std::uint64_t), p += sizeof(std::uint64_t)) {
        std::uint64_t uiBloco = 0;
        std::memcpy(&uiBloco, p, sizeof(uiBloco));
        uiBloco ^= uiCrc;
        uiCrc = t[7][Octeto(uiBloco, 0)] ^ t[6][Octeto(uiBloco, 1)] ^ t[5][Octeto(uiBloco, 2)] ^
                t[4][Octeto(uiBloco, 3)] ^ t[3][Octeto(uiBloco, 4)] ^ t[2][Octeto(uiBloco, 5)] ^
                t[1][Octeto(uiBloco, 6)] ^ t[0][Octeto(uiBloco, 7)];
    }
    for (; uiTamanho > 0; --uiTamanho, ++p) uiCrc = (uiCrc >> 8) ^ t[0][Octeto(uiCrc ^ *p, 0)];
    return uiCrc;
}

// Of k_uiMinimoLongo bytes or more: by the processor's carry-less multiplication where it has one.
std::uint64_t DeLongo(const void* pDados, std::size_t uiTamanho, std::uint64_t uiInicial);
}  // namespace XVCrcInterno

inline std::uint64_t XVCrc64(const void* pDados, std::size_t uiTamanho, std::uint64_t uiInicial = 0) {
    return uiTamanho < XVCrcInterno::k_uiMinimoLongo ? XVCrcInterno::PorTabelas(pDados, uiTamanho, uiInicial)
                                                     : XVCrcInterno::DeLongo(pDados, uiTamanho, uiInicial);
}
