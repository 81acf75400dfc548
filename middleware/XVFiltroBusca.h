// What a search asks for, made ready to be asked for every record of a store.
//
// Thread rule: Interpreta once, then any thread.
#pragma once

#include <limits>
#include <span>
#include <vector>

#include "contract/XVDadosCR.h"
#include "middleware/XVRegistrosMiddleware.h"

// The values that a list of a filter admits. A caller may name a million of them: asking costs one shift for
// the values that the system's enumerations have, and a search in a sorted list for all others.
class CXVValoresAdmitidos {
  public:
    CXVValoresAdmitidos() = default;
    explicit CXVValoresAdmitidos(std::span<const XVUInt> aLista);

    // An empty list restricts nothing.
    bool RestringeAlgo() const { return m_bRestringe; }
    bool Admite(XVUInt eValor) const {
        if (!m_bRestringe) return true;
        return eValor < k_ulNaMascara ? (m_uiMascara >> eValor & 1) != 0 : AdmiteMaior(eValor);
    }

  private:
    static constexpr XVUInt k_ulNaMascara = 64;

    bool AdmiteMaior(XVUInt eValor) const;

    bool m_bRestringe = false;
    XVUInt64 m_uiMascara = 0;            // bit i: value i
    std::vector<XVUInt> m_listaMaiores;  // ascending
};

class CXVFiltroBusca {
  public:
    // The lists stay the caller's, and must outlive the filter: a search for one key costs less than copying
    // them. The result codes are those of CXVDadosCR_FiltroIntegracaoMiddleware::Valida.
    HRESULT Interpreta(const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS& reg);

    // A lower bound of the key beside systems asks for that one key in each of them, through the index.
    bool EhPorChaveSistema() const { return GetChaveInicial() != 0 && m_sistemas.RestringeAlgo(); }
    XVUInt64 GetChaveInicial() const { return m_reg.uiChaveIntegracaoSistemaTerceiroInicial; }
    std::span<const XVUInt> GetListaSistemaIntegracao() const {
        return {m_reg.pListaSistemaIntegracao, m_reg.ulQuantidadeSistemaIntegracao};
    }
    bool AdmiteSistema(XVUInt eSistema) const { return m_sistemas.Admite(eSistema); }

    // Level 1 is what the index record tells, level 2 what only the integration's own record does.
    bool PassaNivel1(const REG_CR_INDEX_INTEGRACAO_V1& reg) const {
        return AdmiteStatusESistema(reg.eStatusIntegracao, reg.eSistemaIntegracao) &&
               AdmiteChave(reg.uiChaveIntegracaoSistemaTerceiro);
    }
    bool AdmiteStatusESistema(XVUInt eStatus, XVUInt eSistema) const {
        return m_status.Admite(eStatus) && m_sistemas.Admite(eSistema);
    }
    bool LimitaChave() const {
        return GetChaveInicial() != 0 || m_uiChaveFinal != std::numeric_limits<XVUInt64>::max();
    }
    bool AdmiteChave(XVUInt64 uiChave) const {
        return uiChave >= GetChaveInicial() && uiChave <= m_uiChaveFinal;
    }
    bool TemNivel2() const { return m_bTemNivel2; }
    bool PassaNivel2(const REG_CR_INTEGRACAO_MIDDLEWARE_V2& reg) const;
    // Its parts, for who has the values apart.
    bool AdmiteTipo(XVUInt eTipo) const { return m_tipos.Admite(eTipo); }
    bool AdmiteTransacao(XVUInt eTransacao) const { return m_transacoes.Admite(eTransacao); }
    bool LimitaDatas() const { return m_bLimitaDatas; }
    bool PassaDatas(REG_XVDMAHMSUTC regInclusao, REG_XVDMAHMSUTC regAlteracaoStatus) const;

  private:
    tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS m_reg{};
    CXVValoresAdmitidos m_status, m_sistemas, m_tipos, m_transacoes;
    XVUInt64 m_uiChaveFinal = 0;  // a bound of 0 is none: the highest key
    bool m_bLimitaDatas = false;
    bool m_bTemNivel2 = false;
};
