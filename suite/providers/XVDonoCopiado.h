// Who asks, kept for a call that may outlive the object that asked. Thread rule: any thread.
#pragma once

#include <string>

#include "support/trace/IXVDF_Profiler.h"

class CXVDonoCopiado final : public IXVDF_Profiler {
  public:
    CXVDonoCopiado() = default;  // nobody: the program itself
    explicit CXVDonoCopiado(const IXVDF_Profiler& rDono)
        : m_sEmpresa(rDono.GetEmpresa()),
          m_usUsuario(rDono.GetUsuario()),
          m_ulNumeroSessao(rDono.GetNumeroSessao()),
          m_bConsulta(rDono.EhConsulta()) {}

    std::string_view GetEmpresa() const override { return m_sEmpresa; }
    XVUShort GetUsuario() const override { return m_usUsuario; }
    XVUInt GetNumeroSessao() const override { return m_ulNumeroSessao; }
    bool EhConsulta() const override { return m_bConsulta; }

  private:
    std::string m_sEmpresa;
    XVUShort m_usUsuario = 0;
    XVUInt m_ulNumeroSessao = 0;
    bool m_bConsulta = false;
};
