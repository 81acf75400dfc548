// Company, user and session without any life of their own.
#pragma once

#include <string>

#include "support/trace/IXVDF_Profiler.h"

class CXVDonoFixo : public IXVDF_Profiler {
  public:
    explicit CXVDonoFixo(std::string sEmpresa, XVUShort usUsuario = 7, XVUInt ulSessao = 99,
                         bool bConsulta = false)
        : m_sEmpresa(std::move(sEmpresa)),
          m_usUsuario(usUsuario),
          m_ulSessao(ulSessao),
          m_bConsulta(bConsulta) {}
    std::string_view GetEmpresa() const override { return m_sEmpresa; }
    XVUShort GetUsuario() const override { return m_usUsuario; }
    XVUInt GetNumeroSessao() const override { return m_ulSessao; }
    bool EhConsulta() const override { return m_bConsulta; }

  private:
    std::string m_sEmpresa;
    XVUShort m_usUsuario;
    XVUInt m_ulSessao;
    bool m_bConsulta;
};
