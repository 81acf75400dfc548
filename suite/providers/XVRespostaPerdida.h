// The answer of a provider library that is not used. What it says of an exchange (the key that the external
// system issued) stands nowhere else, so it leaves one line of the error log.
//
// Thread rule: one object is used by one thread. All that is handed over must outlive it.
#pragma once

#include <cinttypes>
#include <string>

#include "contract/XVDadosCR.h"
#include "suite/providers/XVProvedorPlugin.h"
#include "support/trace/XVProfiler.h"

class CXVRespostaPerdida {
  public:
    // Built before the library is called: everything that the line needs is ready when it answers.
    CXVRespostaPerdida(const IXVDF_Profiler& rDono, const CXVDadosCR_IntegracaoMiddleware& rPedido,
                       const XVProvedorDados& rResposta)
        : m_rDono(rDono),
          m_rPedido(rPedido),
          m_rResposta(rResposta),
          m_sOrigem(rPedido.regDmcMovimentoOrigem.ToString()) {}
    ~CXVRespostaPerdida() {
        if (m_pszMotivo == nullptr) return;
        XVProfiler::RecordError(&m_rDono, "CXVProvedorAdaptador::Executa",
                                "suite/providers/XVProvedorAdaptador", __LINE__,
                                "Resposta do provedor do sistema %u não aproveitada (%s): chave %" PRIu64
                                ", origem %s, situação %u",
                                static_cast<unsigned>(m_rPedido.eSistemaIntegracao), m_pszMotivo,
                                m_rResposta.uiChaveIntegracaoSistemaTerceiro, m_sOrigem.c_str(),
                                static_cast<unsigned>(m_rResposta.eStatusIntegracao));
    }
    CXVRespostaPerdida(const CXVRespostaPerdida&) = delete;
    CXVRespostaPerdida& operator=(const CXVRespostaPerdida&) = delete;

    // A refused answer; hr is handed back.
    HRESULT Recusada(const char* pszMotivo, HRESULT hr) {
        m_pszMotivo = pszMotivo;
        return hr;
    }
    // The library said that the exchange failed; the line is written only when a new key says otherwise.
    HRESULT Falhou(HRESULT hr) {
        const bool bChaveNova =
            m_rResposta.uiChaveIntegracaoSistemaTerceiro != m_rPedido.uiChaveIntegracaoSistemaTerceiro;
        m_pszMotivo = bChaveNova ? "falha com chave" : nullptr;
        return hr;
    }
    // There is no answer; rResposta may still be written into by the library. hr is handed back.
    HRESULT SemResposta(HRESULT hr) {
        m_pszMotivo = nullptr;
        return hr;
    }
    void Aproveitada() { m_pszMotivo = nullptr; }

  private:
    const IXVDF_Profiler& m_rDono;
    const CXVDadosCR_IntegracaoMiddleware& m_rPedido;
    const XVProvedorDados& m_rResposta;
    std::string m_sOrigem;
    const char* m_pszMotivo = "interrompida";  // until the answer is judged and taken over
};
