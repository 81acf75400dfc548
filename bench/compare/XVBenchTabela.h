// The table of the bare limit: what finding an integration by key and system costs at least.
#pragma once

#include <bit>
#include <vector>

#include "bench/compare/IXVBenchAdversario.h"
#include "middleware/XVRegistrosMiddleware.h"

// Positions by key and system: open addressing, never more than half full.
class CXVTabelaBench {
  public:
    void Reserva(std::size_t uiEntradas) { m_listaLugares.assign(std::bit_ceil(uiEntradas * 2 + 2), 0); }
    void Inclui(XVUInt64 uiChave, XVUInt eSistema, XVUInt ulPosicao) {
        std::size_t i = Primeiro(uiChave, eSistema);
        while (m_listaLugares[i] != 0) i = (i + 1) & (m_listaLugares.size() - 1);
        m_listaLugares[i] = ulPosicao;
    }
    XVUInt Procura(XVUInt64 uiChave, XVUInt eSistema,
                   const std::vector<REG_CR_INDEX_INTEGRACAO_V1>& rIndex) const {
        for (std::size_t i = Primeiro(uiChave, eSistema);; i = (i + 1) & (m_listaLugares.size() - 1)) {
            const XVUInt ulPosicao = m_listaLugares[i];
            if (ulPosicao == 0) XVTermina("the bare table holds no such key");
            const REG_CR_INDEX_INTEGRACAO_V1& reg = rIndex[ulPosicao - 1];
            if (reg.uiChaveIntegracaoSistemaTerceiro == uiChave && reg.eSistemaIntegracao == eSistema)
                return ulPosicao;
        }
    }
    std::size_t Lugares() const { return m_listaLugares.size(); }

  private:
    std::size_t Primeiro(XVUInt64 uiChave, XVUInt eSistema) const {
        const XVUInt64 ui = (uiChave ^ XVUInt64{eSistema} << 40U) * 0x9E3779B97F4A7C15U;
        return static_cast<std::size_t>(ui >> 32U) & (m_listaLugares.size() - 1);
    }
    std::vector<XVUInt> m_listaLugares;
};
