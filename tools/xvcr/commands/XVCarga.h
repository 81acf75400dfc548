// Bulk input: one line of JSON to one operation of the store.
#pragma once

#include <string>

#include "client/XVCliente.h"

struct SResultadoLinha {
    enum class EOperacao { eIntegracao, eStatus };
    EOperacao eOperacao = EOperacao::eIntegracao;
    HRESULT hr = 0;
    REG_XVDMC regDmc;    // the integration, where it is known
    std::string sCampo;  // the field at fault, empty when it is no field
    std::string sErro;   // empty: recorded
};

class CXVCarga {
  public:
    explicit CXVCarga(XVCliente::CXVCliente& rCliente) : m_rCliente(rCliente) {}

    // "operacao" (absent: "integracao") chooses the record that the other names belong to.
    SResultadoLinha Executa(const std::string& sLinha);

  private:
    XVCliente::CXVCliente& m_rCliente;
};
