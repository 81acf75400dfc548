// The machine around the store of a process that is killed or loses its power: its module directory, its
// durability, and a clock that only the script moves. The process and the test that kills it stand on the
// same one, and so do the fuzz targets.
#pragma once

#include "tests/middleware/XVRoteiroAleatorio.h"

class CXVMaquinaMorte {
  public:
    explicit CXVMaquinaMorte(const std::string& sDiretorio, XVUInt ulDurabilidade = 0) {
        m_registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", sDiretorio);
        m_registry.SetNumero(CAmbienteXV::GetChaveRegistry(XV_DF), "Durabilidade", ulDurabilidade);
    }
    CXVRegistryFalso& GetRegistry() { return m_registry; }
    CXVRelogioFalso& GetRelogio() { return m_relogio; }
    // Some scripts have texts that make a journal of any small size go round, and operations that do not fit
    // into it.
    CXVRoteiroAleatorio Roteiro(XVUInt64 uiSemente) {
        return {uiSemente, m_relogio, uiSemente % 8 == 0 ? std::size_t{600'000} : k_uiMaiorTexto};
    }

  private:
    CXVRegistryFalso m_registry;
    CXVRelogioFalso m_relogio;
    CXVGuardaRegistry m_guardaRegistry{m_registry};
    CXVGuardaRelogio m_guardaRelogio{m_relogio};
    CXVCapturaTrace m_captura;
};
