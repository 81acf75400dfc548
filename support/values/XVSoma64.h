// The checksum of journal entries: 64 bits over any number of bytes, fast enough to go over every byte
// that is recorded. It finds torn, missing and flipped bytes; it is no protection against forgery.
//
// Eight lanes take one little-endian word of 8 bytes each in turn (lane i starts at i * k_uiPasso + 1):
// lane = (lane ^ word) * k_uiFator, then lane ^= lane >> 32. A last group of fewer than 64 bytes is filled
// with zeros. The lanes, and last the number of bytes, are folded into one word by the same step.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace XVSomaInterno {
inline constexpr std::uint64_t k_uiFator = 0x9FB21C651E98DF25ULL;
inline constexpr std::uint64_t k_uiPasso = 0x9E3779B97F4A7C15ULL;
inline constexpr std::size_t k_uiFaixas = 8;

inline std::uint64_t Mistura(std::uint64_t uiFaixa, std::uint64_t uiPalavra) {
    uiFaixa = (uiFaixa ^ uiPalavra) * k_uiFator;
    return uiFaixa ^ (uiFaixa >> 32);
}

inline void Grupo(std::uint64_t (&aFaixas)[k_uiFaixas], const unsigned char* p) {
    for (std::size_t i = 0; i < k_uiFaixas; ++i) {
        std::uint64_t uiPalavra = 0;
        std::memcpy(&uiPalavra, p + i * sizeof(uiPalavra), sizeof(uiPalavra));
        aFaixas[i] = Mistura(aFaixas[i], uiPalavra);
    }
}
}  // namespace XVSomaInterno

inline std::uint64_t XVSoma64(const void* pDados, std::size_t uiTamanho) {
    using namespace XVSomaInterno;
    constexpr std::size_t k_uiGrupo = k_uiFaixas * sizeof(std::uint64_t);
    std::uint64_t aFaixas[k_uiFaixas];
    for (std::size_t i = 0; i < k_uiFaixas; ++i) aFaixas[i] = i * k_uiPasso + 1;
    const auto* p = static_cast<const unsigned char*>(pDados);
    std::size_t uiResto = uiTamanho;
    for (; uiResto >= k_uiGrupo; uiResto -= k_uiGrupo, p += k_uiGrupo) Grupo(aFaixas, p);
    if (uiResto > 0) {
        unsigned char aUltimo[k_uiGrupo]{};
        std::memcpy(aUltimo, p, uiResto);
        Grupo(aFaixas, aUltimo);
    }
    std::uint64_t uiSoma = 0;
    for (const std::uint64_t uiFaixa : aFaixas) uiSoma = Mistura(uiSoma, uiFaixa);
    return Mistura(uiSoma, uiTamanho);
}
