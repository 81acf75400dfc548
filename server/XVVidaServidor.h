// Life of the server process: which components live, when the process may end, and the rule for components
// whose client went away without a word.
//
// Thread rule: any thread.
#pragma once

#include <windows.h>

#include <atomic>
#include <mutex>
#include <vector>

#include "core/xvrpcdll/XVComponenteMiddleware.h"

class CXVVidaServidor {
  public:
    static CXVVidaServidor& Get();

    // A client holds the process: a component or a lock of the class factory.
    void Entra();
    void Sai();
    bool TemClientes() const { return m_lClientes.load() > 0; }
    bool TeveClientes() const { return m_bTeveClientes.load(); }

    // Signalled when the last client left, and when the end was asked for.
    HANDLE GetEventoSemClientes() const { return m_hSemClientes; }
    HANDLE GetEventoFim() const { return m_hFim; }
    void PedeFim() { ::SetEvent(m_hFim); }

    // The list of live components. A component leaves the list as the first step of its destruction, so that
    // whoever holds the lock of the list never finds one that is half destroyed.
    void Inclui(CXVCR_Middleware* pComponente);
    void Retira(CXVCR_Middleware* pComponente);

    // Cuts off the clients of components that nobody has called for ulLimite milliseconds; 0 means all
    // components. A component that no client holds any more ends, and closes its store when it is the last
    // one there. Returns the number of components.
    std::size_t DesconectaOciosos(XVUInt ulLimite);

    // Cuts off the clients that are left and waits for calls that are still inside: their components end
    // with them and close their stores. Main thread.
    void Encerra();

  private:
    CXVVidaServidor();
    // The components that nobody has called for ulLimite milliseconds, each with a reference that the caller
    // gives back; components whose destruction has begun are left out.
    std::vector<CXVCR_Middleware*> TomaOciosos(XVUInt ulLimite);

    std::mutex m_Mutex;  // guards the list and the steps of the counts
    std::vector<CXVCR_Middleware*> m_listaComponentes;
    std::atomic<long> m_lClientes = 0;
    std::atomic<bool> m_bTeveClientes = false;
    std::atomic<bool> m_bEncerrando = false;
    HANDLE m_hSemClientes;
    HANDLE m_hFim;
};
