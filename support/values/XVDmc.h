// Key of one record of the suite: kind, pointer (1-based position) and date in 64 bits.
#pragma once

#include <string>
#include <string_view>

#include "support/values/XVData.h"

// Bits 0-1 kind, bits 2-13 zero, bits 14-45 pointer, bits 46-63 date. Equality and index keys use all
// 64 bits; null means pointer 0 and no date, whatever the kind.
struct REG_XVDMC {
    XVUInt64 uiValor = 0;

    static constexpr unsigned k_uiTipoIntegracao = 1;  // the kind of a new integration

    static constexpr REG_XVDMC Cria(unsigned uiTipo, XVUInt ulPonteiro, REG_XVDMA dma) {
        return {static_cast<XVUInt64>(dma.GetValor()) << 46 | static_cast<XVUInt64>(ulPonteiro) << 14 |
                (uiTipo & 3U)};
    }
    constexpr unsigned GetTipo() const { return static_cast<unsigned>(uiValor & 3U); }
    constexpr XVUInt GetPonteiro() const { return static_cast<XVUInt>(uiValor >> 14); }
    constexpr REG_XVDMA GetDma() const { return REG_XVDMA(static_cast<XVUInt>(uiValor >> 46)); }
    constexpr bool EhNulo() const { return (uiValor >> 14) == 0; }
    // Null, or: bits 2-13 zero, a pointer above 0 and either no date (master records have none) or a day of
    // the calendar.
    bool EhValido() const;
    // Valid and with a date: what may name an integration.
    bool EhDeIntegracao() const { return EhValido() && !EhNulo() && !GetDma().EhNula(); }
    // "20261121-15-1" (date, pointer, kind), the text of logs; "0" for null.
    std::string ToString() const;
    void AnexaA(std::string& rTexto) const;  // the same, behind a text
    // Accepts the text form and the decimal 64-bit value. False: *pDmc unchanged.
    static bool DeString(std::string_view sTexto, REG_XVDMC* pDmc);
    constexpr bool operator==(const REG_XVDMC&) const = default;
};
static_assert(sizeof(REG_XVDMC) == 8);
