// Who is asking: the company, user and session that every object of the system carries for its
// headers and trace records. The first three operations stand in this order.
#pragma once

#include <string_view>

#include "platform/XVTipos.h"

class IXVDF_Profiler {
  public:
    virtual ~IXVDF_Profiler() = default;
    virtual std::string_view GetEmpresa() const = 0;  // company code; valid while the object lives
    virtual XVUShort GetUsuario() const = 0;          // user code; 65535 is the conversion
    virtual XVUInt GetNumeroSessao() const = 0;       // session number
    // Whether the object only looks at the company's directory, where it must not write anything then.
    virtual bool EhConsulta() const { return false; }
};
