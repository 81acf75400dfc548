// The watch over one exchange with an external system, from the moment before the provider is called until
// the result is recorded: an exchange that was made and has no record leaves one line of the error log with
// system, key and origin, whatever ended it, an exception included.
//
// Thread rule: one object is used by one thread. Data and owner must outlive it.
#pragma once

#include <memory>
#include <string>

#include "contract/XVDadosCR.h"
#include "support/trace/IXVDF_Profiler.h"

class CXVTrocaEmCurso {
  public:
    // Everything that the line needs is made ready here, because after the exchange memory may be short.
    CXVTrocaEmCurso(const IXVDF_Profiler* pDono, const CXVDadosCR_IntegracaoMiddleware& rDados,
                    REG_XVDMC regDmc);
    ~CXVTrocaEmCurso();
    CXVTrocaEmCurso(const CXVTrocaEmCurso&) = delete;
    CXVTrocaEmCurso& operator=(const CXVTrocaEmCurso&) = delete;

    // What the provider answered; handed back unchanged. E_NOTIMPL: the system does not offer the operation;
    // E_XVCR_PROVEDOR_SUSPENSO: its provider was not called; nothing was sent then. Any other failure leaves
    // open whether the system received it.
    HRESULT Responde(HRESULT hr);
    // What recording the result gave; handed back unchanged.
    HRESULT Grava(HRESULT hr);
    // The system was asked to delete and did not say that it did. An integration is recorded as cancelled
    // only when the system says so; the line of the error log is then all that is left of the exchange.
    void ExclusaoSemConfirmacao() { m_pszMotivo = "exclusão não confirmada"; }

  private:
    enum class EEstado : std::uint8_t { eChamada, eRespondida, eConcluida };

    const IXVDF_Profiler* m_pDono;
    const CXVDadosCR_IntegracaoMiddleware& m_rDados;
    std::string m_sOrigem;
    std::string m_sDmc;
    std::unique_ptr<char[]> m_pReserva;  // given back before the line is written, for memory may be short
    const char* m_pszMotivo = "interrompida";  // as long as neither provider nor store gave a result
    HRESULT m_hr = S_OK;
    EEstado m_eEstado = EEstado::eChamada;
};
