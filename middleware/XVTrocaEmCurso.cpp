#include "middleware/XVTrocaEmCurso.h"

#include <cinttypes>
#include <cstdio>

#include "support/codes/XVCodigos.h"
#include "support/trace/XVProfiler.h"

namespace {

constexpr std::size_t k_uiReserva = 32768;  // bytes; several times what one line of the error log takes

}  // namespace

CXVTrocaEmCurso::CXVTrocaEmCurso(const IXVDF_Profiler* pDono, const CXVDadosCR_IntegracaoMiddleware& rDados,
                                 REG_XVDMC regDmc)
    : m_pDono(pDono),
      m_rDados(rDados),
      m_sOrigem(rDados.regDmcMovimentoOrigem.ToString()),
      m_sDmc(regDmc.ToString()),
      m_pReserva(new char[k_uiReserva]) {}

CXVTrocaEmCurso::~CXVTrocaEmCurso() {
    if (m_eEstado == EEstado::eConcluida) return;
    m_pReserva.reset();
    char szCodigo[32];
    const char* pszMotivo = m_pszMotivo;
    if (FAILED(m_hr)) {
        std::snprintf(szCodigo, sizeof(szCodigo), "resultado 0x%08X", static_cast<unsigned>(m_hr));
        pszMotivo = szCodigo;
    }
    XVProfiler::RecordError(
        m_pDono, "CBaseMiddleware::GravaIntegracaoInstantanea", "BaseMiddleware", __LINE__,
        "Troca com o sistema externo %s e não gravada: sistema %u, chave %" PRIu64
        ", origem %s, integração %s, transação %u, situação %u, %s",
        m_eEstado == EEstado::eRespondida ? "feita" : "talvez feita",
        static_cast<unsigned>(m_rDados.eSistemaIntegracao), m_rDados.uiChaveIntegracaoSistemaTerceiro,
        m_sOrigem.c_str(), m_sDmc.c_str(), static_cast<unsigned>(m_rDados.eTipoTransacao),
        static_cast<unsigned>(m_rDados.eStatusIntegracao), pszMotivo);
}

HRESULT CXVTrocaEmCurso::Responde(HRESULT hr) {
    m_hr = hr;
    if (hr == E_NOTIMPL || hr == E_XVCR_PROVEDOR_SUSPENSO)
        m_eEstado = EEstado::eConcluida;
    else if (SUCCEEDED(hr))
        m_eEstado = EEstado::eRespondida;
    return hr;
}

HRESULT CXVTrocaEmCurso::Grava(HRESULT hr) {
    m_hr = hr;
    if (SUCCEEDED(hr)) m_eEstado = EEstado::eConcluida;
    return hr;
}
