// A random script of operations on one store, several days and reopenings included. The same seed gives the
// same script; every content carries its owner (XVConteudoComDono.h).
#pragma once

#include <map>
#include <vector>

#include "tests/middleware/XVConteudoComDono.h"
#include "tests/middleware/XVRetratoLoja.h"

class CXVRoteiroAleatorio {
  public:
    CXVRoteiroAleatorio(XVUInt64 uiSemente, CXVRelogioFalso& rRelogio, std::size_t uiMaior = k_uiMaiorTexto);

    // Steps after the first, which opens the store.
    std::size_t GetQuantidade() const { return m_uiPassos; }
    // Opens the store and shows its empty picture.
    bool Abre();
    // One step: false when it failed, which no step does on a sound device.
    bool Passo();
    // Objects of one process share an open store: whoever looks at another device closes this one first.
    void Fecha() { m_pLoja.reset(); }
    bool EstaAberto() const { return m_pLoja != nullptr && m_pLoja->EstaInicializado(); }
    TRetratoLoja Retrata() { return XVRetrataLoja(*m_pLoja); }
    // Whose each integration is, by its key.
    const std::map<XVUInt64, unsigned>& GetDonos() const { return m_mapaDonos; }

  private:
    HRESULT Inclui();
    HRESULT Altera();
    HRESULT Status();
    HRESULT Mapeia();
    HRESULT DataHora();
    HRESULT Reabre();
    // An integration that can still be named.
    struct SSorteada {
        REG_XVDMC regDmc;
        unsigned uiDono;
    };
    SSorteada Sorteia();

    CXVSorteio m_sorteio;
    CXVRelogioFalso& m_rRelogio;
    std::size_t m_uiPassos;
    std::size_t m_uiMaior;  // bytes of a text
    TLoja m_pLoja;
    std::map<XVUInt64, unsigned> m_mapaDonos;
    std::vector<REG_XVDMC> m_listaVivas;
    REG_XVDMC m_regBanco;  // the one that holds the shared key
    unsigned m_uiDonos = 0;
    unsigned m_uiVersao = 0;
};
