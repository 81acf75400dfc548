// Puts an instance of the seam in force for the life of the guard, then the one before again.
#pragma once

#include "platform/XVPlataforma.h"

template <class TInterface, TInterface* (*pfnTroca)(TInterface*)>
class TXVGuardaPlataforma {
  public:
    explicit TXVGuardaPlataforma(TInterface& rNova) : m_pAnterior(pfnTroca(&rNova)) {}
    ~TXVGuardaPlataforma() { pfnTroca(m_pAnterior); }
    TXVGuardaPlataforma(const TXVGuardaPlataforma&) = delete;
    TXVGuardaPlataforma& operator=(const TXVGuardaPlataforma&) = delete;

  private:
    TInterface* m_pAnterior;
};

using CXVGuardaSistemaArquivos = TXVGuardaPlataforma<IXVSistemaArquivos, XVPlataforma::TrocaSistemaArquivos>;
using CXVGuardaRelogio = TXVGuardaPlataforma<IXVRelogio, XVPlataforma::TrocaRelogio>;
using CXVGuardaRegistry = TXVGuardaPlataforma<IXVRegistry, XVPlataforma::TrocaRegistry>;
