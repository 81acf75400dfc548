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

// COM's own count of references to the process suspends the class in the instant it falls to 0. It moves
// together with the count of clients, under one lock, so that every suspension is followed by the event.
void CXVVidaServidor::Entra() {
    const std::lock_guard trava(m_Mutex);
    ::CoAddRefServerProcess();
    m_bTeveClientes = true;
    ++m_lClientes;
}

void CXVVidaServidor::Sai() {
    const std::lock_guard trava(m_Mutex);
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
    std::vector<CXVCR_Middleware*> lista;
    const std::lock_guard trava(m_Mutex);
    lista.reserve(m_listaComponentes.size());
    for (CXVCR_Middleware* pComponente : m_listaComponentes)
        if (pComponente->GetAtividade().GetOciosidade() >= ulLimite && pComponente->TentaAddRef())
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

void CXVVidaServidor::Encerra() {
    constexpr XVUInt k_ulEsperaChamadasEmCurso = 30000;
    constexpr XVUInt k_ulOciosidadeNoFim = 1000;
    const XVUInt ulInicio = XVPlataforma::Relogio().GetTicks();
    // All components are cut off once only: one with a call inside stays in the list until the call ends, and
    // must not be cut off a second time.
    if (!m_bEncerrando.exchange(true)) DesconectaOciosos(0);
    while (TemClientes() && XVPlataforma::Relogio().GetTicks() - ulInicio < k_ulEsperaChamadasEmCurso) {
        ::WaitForSingleObject(m_hSemClientes, 100);
        // A component that was still being created a moment ago had no client then, and has one now.
        DesconectaOciosos(k_ulOciosidadeNoFim);
    }
}
