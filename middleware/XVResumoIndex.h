// What the integration index keeps beside its records: one byte for status and system of each, how many
// records have each of these bytes, and whether the records lie in the order of their DMCs. A search for a
// status or a system passes over a million bytes and looks only at the records that it finds.
//
// Thread rule: that of the file.
#pragma once

#include <array>
#include <bit>

#include "core/xvdatabase/XVFile.h"
#include "middleware/XVRegistrosMiddleware.h"

template <>
struct TXVResumo<REG_CR_INDEX_INTEGRACAO_V1> {
  public:
    using TRegistros = TXVArrayRegistros<REG_CR_INDEX_INTEGRACAO_V1>;

    // The class of a record: bits 0-2 the status, 7 for every status above 6; bits 3-7 the system: 0 for
    // none, n for the bit n - 1 alone, 31 for every other value.
    static constexpr std::size_t k_uiClasses = 256;
    static constexpr XVByte GetClasse(const REG_CR_INDEX_INTEGRACAO_V1& reg) {
        const XVUInt ulStatus = std::min(reg.eStatusIntegracao, k_ulOutroStatus);
        const XVUInt eSistema = reg.eSistemaIntegracao;
        XVUInt ulSistema = k_ulOutroSistema;
        if (eSistema == 0)
            ulSistema = 0;
        else if ((eSistema & (eSistema - 1)) == 0)  // a single bit
            ulSistema = std::min(static_cast<XVUInt>(std::countr_zero(eSistema)) + 1, k_ulOutroSistema);
        return static_cast<XVByte>(ulStatus | ulSistema << 3);
    }
    // Whether the class names one status and one system, and which.
    static constexpr bool EhExata(std::size_t uiClasse) {
        return (uiClasse & 7) != k_ulOutroStatus && uiClasse >> 3 != k_ulOutroSistema;
    }
    static constexpr XVUInt GetStatus(std::size_t uiClasse) { return static_cast<XVUInt>(uiClasse & 7); }
    static constexpr XVUInt GetSistema(std::size_t uiClasse) {
        return uiClasse >> 3 == 0 ? 0 : XVUInt{1} << ((uiClasse >> 3) - 1);
    }

    void Carrega(const TRegistros& aRegistros);
    void Reserva(std::size_t uiQuantidade) { m_aClasses.Reserva(uiQuantidade); }
    void Muda(const TRegistros& aRegistros, std::size_t i, const REG_CR_INDEX_INTEGRACAO_V1& reg) noexcept;

    // The classes of a part of the records that Percorre shows as one: they lie as the records do.
    const XVByte* GetClasses(std::size_t uiPrimeiro) const { return &m_aClasses[uiPrimeiro]; }
    XVUInt GetQuantos(std::size_t uiClasse) const { return m_aulQuantos[uiClasse]; }
    // Whether no record has a lower DMC than the one before it.
    bool EmOrdem() const { return m_bEmOrdem; }

  private:
    static constexpr XVUInt k_ulOutroStatus = 7;
    static constexpr XVUInt k_ulOutroSistema = 31;

    TXVArrayRegistros<XVByte> m_aClasses;
    std::array<XVUInt, k_uiClasses> m_aulQuantos{};
    bool m_bEmOrdem = true;
};
