// The checksum of journal entries: 64 bits over any number of bytes, fast enough to go over every byte
// that is recorded. It finds torn, missing and flipped bytes; it is no protection against forgery.
//
// Eight lanes take one little-endian word of 8 bytes each in turn (lane i starts at i * k_uiPasso + 1):
// lane = (lane ^ word) * k_uiFator, then lane ^= lane >> 32. A last group of fewer than 64 bytes is filled
// with zeros. The lanes, and last the number of bytes, are folded into one word by the same step.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace XVSomaInterno {
inline constexpr std::uint64_t k_uiFator = 0x9FB21C651E98DF25ULL;
inline constexpr std::uint64_t k_uiPasso = 0x9E3779B97F4A7C15ULL;
inline constexpr std::size_t k_uiFaixas = 8;

inline std::uint64_t Mistura(std::uint64_t uiFaixa, std::uint64_t uiPalavra) {
    uiFaixa = (uiFaixa ^ uiPalavra) * k_uiFator;
    return uiFaixa ^ (uiFaixa >> 32);
}

using CFaixas = std::array<std::uint64_t, k_uiFaixas>;

// Runs faz for every lane by a number that is known when compiling, so that the lanes stay in registers.
template <class TFaz>
inline void CadaFaixa(TFaz faz) {
    [&]<std::size_t... i>(std::index_sequence<i...>) {
        (faz(i), ...);
    }
    (std::make_index_sequence<k_uiFaixas>());
}

inline void Grupo(CFaixas& rFaixas, const unsigned char* p) {
    CadaFaixa([&](std::size_t i) {
        std::uint64_t uiPalavra = 0;
        std::memcpy(&uiPalavra, p + i * sizeof(uiPalavra), sizeof(uiPalavra));
        rFaixas[i] = Mistura(rFaixas[i], uiPalavra);
    });
}
}  // namespace XVSomaInterno

inline std::uint64_t XVSoma64(const void* pDados, std::size_t uiTamanho) {
    using namespace XVSomaInterno;
    constexpr std::size_t k_uiGrupo = k_uiFaixas * sizeof(std::uint64_t);
    CFaixas aFaixas;
    CadaFaixa([&](std::size_t i) { aFaixas[i] = i * k_uiPasso + 1; });
    const auto* p = static_cast<const unsigned char*>(pDados);
    std::size_t uiResto = uiTamanho;
    for (; uiResto >= k_uiGrupo; uiResto -= k_uiGrupo, p += k_uiGrupo) Grupo(aFaixas, p);
    if (uiResto > 0) {
        unsigned char aUltimo[k_uiGrupo]{};
        std::memcpy(aUltimo, p, uiResto);
        Grupo(aFaixas, aUltimo);
    }
    std::uint64_t uiSoma = 0;
    CadaFaixa([&](std::size_t i) { uiSoma = Mistura(uiSoma, aFaixas[i]); });
    return Mistura(uiSoma, uiTamanho);
}
