// Who calls, for the store's headers and logs.
#pragma once

#include "support/trace/IXVDF_Profiler.h"
#include "tools/xvcr/IXVOperacoes.h"

class CXVChamador : public IXVDF_Profiler {
  public:
    // rAcesso must outlive this object.
    explicit CXVChamador(const SAcesso& rAcesso) : m_rAcesso(rAcesso) {}
    std::string_view GetEmpresa() const override { return m_rAcesso.sEmpresa; }
    XVUShort GetUsuario() const override { return m_rAcesso.usUsuario; }
    XVUInt GetNumeroSessao() const override { return m_rAcesso.ulNumeroSessao; }

  private:
    const SAcesso& m_rAcesso;
};
