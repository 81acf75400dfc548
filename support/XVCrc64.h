// CRC-64 of file headers, of the initialisation record and of index keys: ECMA-182 polynomial
// 0x42F0E1EBA9EA3693, reflected, initial value 0, no final XOR. Check value over "123456789":
// 0x2B9C7EE4E2780C8A. Passing the CRC of one field as initial value of the next gives the CRC of the
// concatenated bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace XVCrcInterno {
// Slicing-by-8 tables: entry [k][b] is byte b followed by k zero bytes.
consteval std::array<std::array<std::uint64_t, 256>, 8> GeraTabelas() {
    std::array<std::array<std::uint64_t, 256>, 8> aTabelas{};
    for (std::uint64_t b = 0; b < 256; ++b) {
        std::uint64_t uiCrc = b;
        for (int i = 0; i < 8; ++i) uiCrc = (uiCrc >> 1) ^ ((uiCrc & 1) != 0 ? 0xC96C5795D7870F42ULL : 0ULL);
        aTabelas[0][b] = uiCrc;
    }
    for (std::size_t k = 1; k < 8; ++k)
        for (std::size_t b = 0; b < 256; ++b)
            aTabelas[k][b] = (aTabelas[k - 1][b] >> 8) ^ aTabelas[0][aTabelas[k - 1][b] & 0xFF];
    return aTabelas;
}
inline constexpr auto k_aTabelas = GeraTabelas();
}  // namespace XVCrcInterno

inline std::uint64_t XVCrc64(const void* pDados, std::size_t uiTamanho, std::uint64_t uiInicial = 0) {
    const auto* p = static_cast<const unsigned char*>(pDados);
    const auto& t = XVCrcInterno::k_aTabelas;
    std::uint64_t uiCrc = uiInicial;
    for (; uiTamanho >= 8; uiTamanho -= 8, p += 8) {
        std::uint64_t uiBloco = uiCrc;
        for (unsigned i = 0; i < 8; ++i) uiBloco ^= static_cast<std::uint64_t>(p[i]) << (8 * i);
        uiCrc = 0;
        for (unsigned i = 0; i < 8; ++i) uiCrc ^= t[7 - i][(uiBloco >> (8 * i)) & 0xFF];
    }
    for (; uiTamanho > 0; --uiTamanho, ++p) uiCrc = (uiCrc >> 8) ^ t[0][(uiCrc ^ *p) & 0xFF];
    return uiCrc;
}
