// Packed dates and date-times of the system's records.
#pragma once

#include <compare>
#include <string>
#include <string_view>

#include "platform/XVRelogio.h"
#include "platform/XVTipos.h"

// A date in 18 bits: (year - 1848) << 9 | month << 5 | day; 0 is no date.
class REG_XVDMA {
  public:
    constexpr REG_XVDMA() = default;
    constexpr explicit REG_XVDMA(XVUInt ulValor) : m_ulValor(ulValor) {}
    static constexpr REG_XVDMA Cria(unsigned uiAno, unsigned uiMes, unsigned uiDia) {
        return REG_XVDMA(((uiAno - 1848U) << 9) | (uiMes << 5) | uiDia);
    }
    constexpr XVUInt GetValor() const { return m_ulValor; }
    constexpr unsigned GetAno() const { return (m_ulValor >> 9) + 1848U; }
    constexpr unsigned GetMes() const { return (m_ulValor >> 5) & 0xFU; }
    constexpr unsigned GetDia() const { return m_ulValor & 0x1FU; }
    constexpr bool EhNula() const { return m_ulValor == 0; }
    // A day of the calendar, within 18 bits.
    bool EhValida() const;
    // yyyymmdd; 0 for no date.
    constexpr XVUInt64 ToChave() const {
        return EhNula() ? 0 : GetAno() * 10000ULL + GetMes() * 100ULL + GetDia();
    }
    constexpr auto operator<=>(const REG_XVDMA&) const = default;

  private:
    XVUInt m_ulValor = 0;
};

// A date-time in UTC in 8 bytes: low dword seconds since midnight, high dword the 18-bit date; 0 is none.
struct REG_XVDMAHMSUTC {
    XVUInt64 uiValor = 0;

    static constexpr REG_XVDMAHMSUTC Cria(REG_XVDMA dma, XVUInt ulSegundos) {
        return {static_cast<XVUInt64>(dma.GetValor()) << 32 | ulSegundos};
    }
    static REG_XVDMAHMSUTC De(const SDataHora& rDataHora);
    static REG_XVDMAHMSUTC Agora();  // the UTC clock
    constexpr REG_XVDMA GetDma() const { return REG_XVDMA(static_cast<XVUInt>(uiValor >> 32)); }
    constexpr XVUInt GetSegundos() const { return static_cast<XVUInt>(uiValor); }
    constexpr bool EhNula() const { return uiValor == 0; }
    // None, or a day of the calendar with fewer than 86400 seconds.
    bool EhValida() const;
    // "2026-11-21T13:05:09Z"; empty for none.
    std::string ToISO8601() const;
    // Accepts "2026-11-21", "2026-11-21T13:05" and "2026-11-21T13:05:09", each with or without "Z". False:
    // unchanged.
    static bool DeISO8601(std::string_view sTexto, REG_XVDMAHMSUTC* pDataHora);
    bool operator==(const REG_XVDMAHMSUTC&) const = default;
};
static_assert(sizeof(REG_XVDMAHMSUTC) == 8);
