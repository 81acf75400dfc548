#include "server/XVVidaServidor.h"

#include <objbase.h>

#include <algorithm>

CXVVidaServidor& CXVVidaServidor::Get() {
    static CXVVidaServidor s_vida;
    return s_vida;
}

CXVVidaServidor::CXVVidaServidor()
    : m_hSemClientes(::CreateEventW(nullptr, FALSE, FALSE, nullptr)),
      m_hFim(::CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}

// The process reference calls stop activations in the instant the count falls to 0.
void CXVVidaServidor::Entra() {
    ::CoAddRefServerProcess();
    m_bTeveClientes = true;
    ++m_lClientes;
}

void CXVVidaServidor::Sai() {
    ::CoReleaseServerProcess();
    if (--m_lClientes == 0) ::SetEvent(m_hSemClientes);
}

void CXVVidaServidor::Inclui(CXVCR_Middleware* pComponente) {
    const std::lock_guard trava(m_Mutex);
    m_listaComponentes.push_back(pComponente);
}

void CXVVidaServidor::Retira(CXVCR_Middleware* pComponente) {
    const std::lock_guard trava(m_Mutex);
    std::erase(m_listaComponentes, pComponente);
}

std::vector<CXVCR_Middleware*> CXVVidaServidor::TomaOciosos(XVUInt ulLimite) {
    const XVUInt ulAgora = XVPlataforma::Relogio().GetTicks();
    std::vector<CXVCR_Middleware*> lista;
    const std::lock_guard trava(m_Mutex);
    lista.reserve(m_listaComponentes.size());
    for (CXVCR_Middleware* pComponente : m_listaComponentes)
        if (pComponente->GetAtividade().GetOciosidade(ulAgora) >= ulLimite && pComponente->TentaAddRef())
            lista.push_back(pComponente);
    return lista;
}

std::size_t CXVVidaServidor::DesconectaOciosos(XVUInt ulLimite) {
    const std::vector<CXVCR_Middleware*> lista = TomaOciosos(ulLimite);
    for (CXVCR_Middleware* pComponente : lista) {
        ::CoDisconnectObject(static_cast<IUnknown*>(pComponente), 0);
        pComponente->Release();
    }
    return lista.size();
}
