// Bulk input: one line of JSON to one operation of the store.
#pragma once

#include <string>

#include "tools/xvcr/IXVOperacoes.h"

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
    explicit CXVCarga(IXVOperacoes& rOperacoes) : m_rOperacoes(rOperacoes) {}

    // "operacao" (absent: "integracao") chooses the record that the other names belong to.
    SResultadoLinha Executa(const std::string& sLinha);

  private:
    IXVOperacoes& m_rOperacoes;
};
