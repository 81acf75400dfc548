#include "server/XVVidaServidor.h"

#include <objbase.h>

#include <algorithm>

#include "server/XVPedidoFim.h"
#include "server/XVTemposFim.h"

CXVVidaServidor& CXVVidaServidor::Get() {
    static CXVVidaServidor s_vida;
    return s_vida;
}

CXVVidaServidor::CXVVidaServidor()
    : m_hSemClientes(::CreateEventW(nullptr, FALSE, FALSE, nullptr)), m_hFim(XVCriaPedidoFim()) {}

void CXVVidaServidor::SeguraProcesso() {
    ::CoAddRefServerProcess();
}

void CXVVidaServidor::LargaProcesso() {
    ::CoReleaseServerProcess();
}

void CXVVidaServidor::Entra() {
    const std::lock_guard trava(m_Mutex);
    ::CoAddRefServerProcess();
    m_bTeveClientes = true;
    ++m_lComponentes;
}

void CXVVidaServidor::Sai() {
    const std::lock_guard trava(m_Mutex);
    ::CoReleaseServerProcess();
    --m_lComponentes;
    if (!TemClientes()) ::SetEvent(m_hSemClientes);
}

// Locks are no references of COM's: the process does not stay for one that was abandoned.
HRESULT CXVVidaServidor::Trava(bool bTrava) {
    const std::lock_guard trava(m_Mutex);
    m_ulUltimaTrava = XVPlataforma::Relogio().GetTicks();
    if (bTrava) {
        m_bTeveClientes = true;
        ++m_lTravas;
        return S_OK;
    }
    if (m_lTravas.load() == 0) return E_UNEXPECTED;
    --m_lTravas;
    if (!TemClientes()) ::SetEvent(m_hSemClientes);
    return S_OK;
}

bool CXVVidaServidor::TemTravaVigente() const {
    if (m_lTravas.load() == 0) return false;
    const XVUInt ulLimite = m_ulInatividade.load();
    const XVUInt ulUltima = m_ulUltimaTrava.load();  // read before the clock: it never lies ahead of it
    return ulLimite == 0 || XVPlataforma::Relogio().GetTicks() - ulUltima < ulLimite;
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

void CXVVidaServidor::Desconecta(XVUInt ulLimite) {
    for (CXVCR_Middleware* pComponente : TomaOciosos(ulLimite)) {
        ::CoDisconnectObject(static_cast<IUnknown*>(pComponente), 0);
        pComponente->Release();
    }
}

void CXVVidaServidor::DesconectaOciosos() {
    if (const XVUInt ulLimite = m_ulInatividade.load(); ulLimite != 0) Desconecta(ulLimite);
}

void CXVVidaServidor::Encerra() {
    constexpr XVUInt k_ulOciosidadeNoFim = 1000;
    const XVUInt ulInicio = XVPlataforma::Relogio().GetTicks();
    // All components are cut off once only: one with a call inside stays in the list until the call ends, and
    // must not be cut off a second time.
    if (!m_bEncerrando.exchange(true)) Desconecta(0);
    // Components that end from here on close their stores themselves.
    m_lojas.FechaTodas();
    while (m_lComponentes.load() > 0 &&
           XVPlataforma::Relogio().GetTicks() - ulInicio < k_ulEsperaChamadasEmCurso) {
        ::WaitForSingleObject(m_hSemClientes, 100);
        // A component that was still being created a moment ago had no client then, and has one now.
        Desconecta(k_ulOciosidadeNoFim);
    }
}
