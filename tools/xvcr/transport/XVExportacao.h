// All of a store, day by day and in each day by position, then the key map and the date-times.
//
// What is handed out was recorded when the walk began; each integration is as it stood at one moment of it.
#pragma once

#include <functional>
#include <map>
#include <span>
#include <vector>

#include "middleware/BaseMiddleware.h"

class CXVExportacao {
  public:
    // rBase, open for viewing, must outlive this object.
    explicit CXVExportacao(CBaseMiddleware& rBase) : m_rBase(rBase) {}

    // Takes note of what is there. The days from uiDe to uiAte (yyyymmdd).
    HRESULT Prepara(XVUInt64 uiDe, XVUInt64 uiAte);
    std::vector<XVUInt64> GetDias() const;
    XVUInt64 GetQuantidade() const { return m_uiQuantidade; }

    // Hands out all of a day. What cannot be read is told to m_fnNaoLida, which must be set, and
    // handed out as a vacant place.
    using FRecebe = std::function<void(const SIntegracaoTransportada&)>;
    void Percorre(XVUInt64 uiDia, const FRecebe& fnRecebe);

    std::function<void(REG_XVDMC, HRESULT)> m_fnNaoLida;

  private:
    struct SDia {
        XVUInt ulRegistros = 0;
        std::vector<REG_XVDMC> listaIndice;  // what the index knows of the day, by position
    };
    HRESULT ContaDias(XVUInt64 uiDe, XVUInt64 uiAte);
    HRESULT DistribuiIndice(XVUInt64 uiDe, XVUInt64 uiAte);
    HRESULT ConfereFim(XVUInt64 uiDia, SDia* pDia);
    static std::vector<REG_XVDMC> MontaChaves(XVUInt64 uiDia, const SDia& rDia);
    void EntregaUmaAUma(std::span<const REG_XVDMC> aDmcs, const FRecebe& fnRecebe);

    CBaseMiddleware& m_rBase;
    std::map<XVUInt64, SDia> m_mapaDias;
    XVUInt64 m_uiQuantidade = 0;
    XVUInt m_ulEntregues = 0;  // of the day
};
