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

// Throws std::runtime_error with the promise that was broken.
class CXVExameQueda {
  public:
    explicit CXVExameQueda(const SVerdadeQueda& rVerdade) : m_rVerdade(rVerdade) {}

    // It opens by itself and shows what was acknowledged and whole operations only.
    void ComDurabilidade();
    // It opens, or names the file that it refuses (false); it shows nothing under a key that was recorded
    // under another, and no later operation makes it worse.
    bool SemDurabilidade();

    // What is recovered of it, whether it opens or not, is a sound store that shows nothing under a key that
    // was recorded under another; with durability, all that was acknowledged and whole operations only.
    void Recuperada(bool bDurabilidade);

  private:
    // Whose an integration is; 0: nobody's. A key that the failure took away may have been given out again.
    unsigned Dono(XVUInt64 uiDmc) const;
    void Compara(const char* pszQuem, const TRetratoLoja& rObtido) const;
    void ConfereDonos(CBaseMiddleware& rLoja);
    static void ConfereMapaEDatas(CBaseMiddleware& rLoja);
    static void ConfereReabertura(CBaseMiddleware& rLoja);
    void Nova(CBaseMiddleware& rLoja, unsigned uiDono);
    void Toca(CBaseMiddleware& rLoja);

    const SVerdadeQueda& m_rVerdade;
    std::map<XVUInt64, unsigned> m_mapaNovas;     // recorded after the failure
    std::map<XVUInt64, std::string> m_mapaLidas;  // as they were read last
};
