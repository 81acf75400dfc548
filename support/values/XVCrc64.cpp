// The CRC of long runs of bytes, folded 16 bytes at a time.
#include "support/values/XVCrc64.h"

#if defined(__x86_64__) || defined(_M_X64)
#include <wmmintrin.h>
#if defined(_MSC_VER)
#include <intrin.h>
#define XV_COM_MULTIPLICACAO
#else
#define XV_COM_MULTIPLICACAO __attribute__((target("pclmul")))
#endif

namespace {

bool TemMultiplicacao() {
#if defined(_MSC_VER)
    int aRegistradores[4] = {};
    __cpuid(aRegistradores, 1);
    return (aRegistradores[2] & 2) != 0;
#else
    return __builtin_cpu_supports("pclmul") != 0;
#endif
}

// x to a power, modulo the polynomial, reflected.
consteval std::uint64_t Potencia(int iExpoente) {
    std::uint64_t ui = 1ULL << 63;
    for (; iExpoente > 0; --iExpoente) ui = XVCrcInterno::VezesX(ui);
    return ui;
}

XV_COM_MULTIPLICACAO __m128i Carrega(const unsigned char* p) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

// What 16 bytes amount to when 16 more follow. The first 8 of them lie 192 bits ahead of the end, the others
// 128; the product of two reflected numbers stands one power too high, hence 191 and 127.
XV_COM_MULTIPLICACAO __m128i Dobra(__m128i bloco) {
    const __m128i fatores =
        _mm_set_epi64x(static_cast<long long>(Potencia(127)), static_cast<long long>(Potencia(191)));
    return _mm_xor_si128(_mm_clmulepi64_si128(bloco, fatores, 0x00),
                         _mm_clmulepi64_si128(bloco, fatores, 0x11));
}

XV_COM_MULTIPLICACAO std::uint64_t PorMultiplicacao(const unsigned char* p, std::size_t uiTamanho,
                                                    std::uint64_t uiInicial) {
    __m128i bloco = _mm_xor_si128(Carrega(p), _mm_cvtsi64_si128(static_cast<long long>(uiInicial)));
    std::size_t uiLidos = sizeof(bloco);
    for (; uiTamanho - uiLidos >= sizeof(bloco); uiLidos += sizeof(bloco))
        bloco = _mm_xor_si128(Dobra(bloco), Carrega(p + uiLidos));
    const std::uint64_t uiCrc = XVCrcInterno::PorTabelas(&bloco, sizeof(bloco), 0);
    return XVCrcInterno::PorTabelas(p + uiLidos, uiTamanho - uiLidos, uiCrc);
}

}  // namespace

std::uint64_t XVCrcInterno::DeLongo(const void* pDados, std::size_t uiTamanho, std::uint64_t uiInicial) {
    static const bool s_bTemMultiplicacao = TemMultiplicacao();
    return s_bTemMultiplicacao
               ? PorMultiplicacao(static_cast<const unsigned char*>(pDados), uiTamanho, uiInicial)
               : PorTabelas(pDados, uiTamanho, uiInicial);
}

#else

std::uint64_t XVCrcInterno::DeLongo(const void* pDados, std::size_t uiTamanho, std::uint64_t uiInicial) {
    return PorTabelas(pDados, uiTamanho, uiInicial);
}

#endif
