// Bulk input: one line of JSON to one operation of the store, in two steps of which only the second needs the
// store.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "client/XVCliente.h"

struct SResultadoLinha {
    enum class EOperacao : std::uint8_t { eIntegracao, eStatus };
    EOperacao eOperacao = EOperacao::eIntegracao;
    bool bExistente = false;  // its key was recorded before, and nothing was recorded now
    HRESULT hr = 0;
    REG_XVDMC regDmc;    // the integration, where it is known
    std::string sCampo;  // the field at fault, empty when it is no field
    std::string sErro;   // empty: recorded
};

struct SLinhaCarga {
    std::uint64_t uiNumero = 0;  // from 1
    std::uint64_t uiFim = 0;     // bytes of the source up to its end
    SResultadoLinha resultado;   // with an error: the line never comes to the store
    std::variant<std::monostate, CXVDadosCR_IntegracaoMiddleware, CXVDadosCR_StatusIntegracaoMiddleware>
        dados;
};

// "operacao" (absent: "integracao") chooses the record that the other names belong to. Thread rule: any
// thread.
void XVPreparaLinha(std::string_view sLinha, SLinhaCarga* pLinha);

class CXVCarga {
  public:
    // bChaveUnica: an integration whose external key the store holds already is not recorded again.
    CXVCarga(XVCliente::CXVCliente& rCliente, bool bChaveUnica)
        : m_rCliente(rCliente), m_bChaveUnica(bChaveUnica) {}

    // Records what was prepared and completes its result.
    void Executa(SLinhaCarga* pLinha);

    // Whether a failure is one that the lines after it would not meet.
    static bool EhDaLinha(const SResultadoLinha& rResultado);

  private:
    HRESULT Grava(const CXVDadosCR_IntegracaoMiddleware& rDados, SResultadoLinha* pResultado);
    HRESULT BuscaExistente(const CXVDadosCR_IntegracaoMiddleware& rDados, REG_XVDMC* pDmc);

    XVCliente::CXVCliente& m_rCliente;
    const bool m_bChaveUnica;
};
