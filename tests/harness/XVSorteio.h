// Draws from a seed: the same seed gives the same draws on every system and with every library.
#pragma once

#include <cstdlib>
#include <random>
#include <string>

#include "platform/XVTipos.h"

class CXVSorteio {
  public:
    explicit CXVSorteio(XVUInt64 uiSemente) : m_gerador(uiSemente) {}

    // 0 to uiQuantidade - 1; uiQuantidade above 0. The bias of the remainder is of no matter here.
    std::size_t Ate(std::size_t uiQuantidade) { return static_cast<std::size_t>(m_gerador() % uiQuantidade); }
    // True in uiVezes of uiDe cases.
    bool Acontece(std::size_t uiVezes, std::size_t uiDe) { return Ate(uiDe) < uiVezes; }

  private:
    std::mt19937_64 m_gerador;
};

// A number that a longer run of a test is given by the environment, a seed as a rule.
inline XVUInt64 XVDoAmbiente(const char* pszNome, XVUInt64 uiPadrao) {
    const char* pszValor = std::getenv(pszNome);
    return pszValor == nullptr ? uiPadrao : std::strtoull(pszValor, nullptr, 10);
}
