// The columns of integration records: what the second level of a search asks, 18 bytes a record. A search
// that comes again reads no file.
//
// Thread rule: that of the file.
#pragma once

#include "core/xvdatabase/XVFile.h"
#include "middleware/XVRegistrosMiddleware.h"

template <>
struct TXVColunas<REG_CR_INTEGRACAO_MIDDLEWARE_V2> {
  public:
    using TReg = REG_CR_INTEGRACAO_MIDDLEWARE_V2;

    bool Existe() const { return m_bExiste; }
    void Faz(const TXVArrayRegistros<TReg>& aRegistros, std::size_t uiPrevistas);
    void Reserva(std::size_t uiQuantidade);
    void Muda(std::size_t i, const TReg& reg) noexcept;
    std::size_t GetMemoria() const;

    std::size_t size() const { return m_aTipos.size(); }
    // Whether a type or kind of transaction came that a byte does not hold, as only other programs write
    // them. Then the records themselves have to be asked.
    bool TemOutros() const { return m_bTemOutros; }

    // What the columns hold of neighbouring records.
    struct SParte {
        const XVByte* pucTipos;
        const XVByte* pucTransacoes;
        const REG_XVDMAHMSUTC* pInclusoes;
        const REG_XVDMAHMSUTC* pAlteracoesStatus;
        std::size_t uiQuantidade;
    };
    // From the record i on, as many as lie side by side.
    SParte GetParte(std::size_t i) const;

  private:
    static bool CabeNoByte(const TReg& reg) {
        return reg.eTipoIntegracao <= 0xFF && reg.eTipoTransacao <= 0xFF;
    }

    // All grow together, so their parts lie alike.
    TXVArrayRegistros<XVByte> m_aTipos;
    TXVArrayRegistros<XVByte> m_aTransacoes;
    TXVArrayRegistros<REG_XVDMAHMSUTC> m_aInclusoes;
    TXVArrayRegistros<REG_XVDMAHMSUTC> m_aAlteracoesStatus;
    bool m_bExiste = false;
    bool m_bTemOutros = false;
};
