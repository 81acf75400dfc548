// The store that a power failure left, opened, looked at and used.
#pragma once

#include <map>
#include <string>

#include "tests/middleware/XVConteudoComDono.h"
#include "tests/middleware/XVRetratoLoja.h"

// What the script knew at the moment of the failure.
struct SVerdadeQueda {
    const TRetratoLoja& antes;  // of the operation in flight
    const TRetratoLoja& depois;
    bool bReconhecida;                          // the operation was over: only `depois` will do
    const std::map<XVUInt64, unsigned>& donos;  // by integration
};

class CXVExameQueda {
  public:
    explicit CXVExameQueda(const SVerdadeQueda& rVerdade) : m_rVerdade(rVerdade) {}

    // The promise that was broken; empty: none.
    std::string ComDurabilidade();
    std::string SemDurabilidade();
    bool FoiRecusada() const { return m_bRecusada; }

  private:
    bool Pode(const TRetratoLoja& rObtido) const {
        return rObtido == m_rVerdade.depois || (!m_rVerdade.bReconhecida && rObtido == m_rVerdade.antes);
    }
    // Whose an integration is; 0: nobody's. A key that the failure took away may have been given out again.
    unsigned Dono(XVUInt64 uiDmc) const;
    std::string Compara(const char* pszQuem, const TRetratoLoja& rObtido) const;
    std::string ConferePorConsulta();
    std::string ConfereDonos(CBaseMiddleware& rLoja);
    static std::string ConfereMapaEDatas(CBaseMiddleware& rLoja);
    std::string GravaMais(CBaseMiddleware& rLoja);
    std::string ConfereReabertura(CBaseMiddleware& rLoja);
    std::string Nova(CBaseMiddleware& rLoja, unsigned uiDono);
    std::string Toca(CBaseMiddleware& rLoja);

    const SVerdadeQueda& m_rVerdade;
    std::map<XVUInt64, unsigned> m_mapaNovas;     // recorded after the failure
    std::map<XVUInt64, std::string> m_mapaLidas;  // as they were read last
    bool m_bRecusada = false;
};
