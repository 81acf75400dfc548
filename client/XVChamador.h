// Who calls, for the headers and logs that are written outside of a component.
#pragma once

#include "client/XVCliente.h"
#include "support/trace/IXVDF_Profiler.h"

class CXVChamador final : public IXVDF_Profiler {
  public:
    // rIdentificacao must outlive this object.
    explicit CXVChamador(const XVCliente::SIdentificacao& rIdentificacao)
        : m_rIdentificacao(rIdentificacao) {}
    std::string_view GetEmpresa() const override { return m_rIdentificacao.sEmpresa; }
    XVUShort GetUsuario() const override { return m_rIdentificacao.usUsuario; }
    XVUInt GetNumeroSessao() const override { return m_rIdentificacao.ulNumeroSessao; }

  private:
    const XVCliente::SIdentificacao& m_rIdentificacao;
};
