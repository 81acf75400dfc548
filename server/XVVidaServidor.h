// Life of the server process: which components live, when the process may end, and the rule for components
// and locks whose client went away without a word.
//
// Thread rule: any thread.
#pragma once

#include <windows.h>

#include <atomic>
#include <mutex>
#include <vector>

#include "server/XVLojasMantidas.h"

class CXVVidaServidor {
  public:
    static CXVVidaServidor& Get();

    // The process itself holds one of COM's references to it, so that COM does not suspend the class when the
    // last client leaves; given up, it does (PodeTerminar of the server).
    void SeguraProcesso();
    void LargaProcesso();

    // A component holds the process.
    void Entra();
    void Sai();
    // IClassFactory::LockServer. A lock counts as long as a component would that nobody calls: a client that
    // was killed never takes its own away.
    HRESULT Trava(bool bTrava);
    bool TemClientes() const { return m_lComponentes.load() > 0 || TemTravaVigente(); }
    bool TeveClientes() const { return m_bTeveClientes.load(); }

    // Milliseconds without a call after which a component, or a lock, counts as abandoned; 0: never.
    void SetInatividade(XVUInt ulInatividade) { m_ulInatividade = ulInatividade; }

    // Signalled when the last client left, and when the end was asked for.
    HANDLE GetEventoSemClientes() const { return m_hSemClientes; }
    HANDLE GetEventoFim() const { return m_hFim; }
    void PedeFim() { ::SetEvent(m_hFim); }
    bool FimPedido() const { return ::WaitForSingleObject(m_hFim, 0) == WAIT_OBJECT_0; }

    // The list of live components. A component leaves the list as the first step of its destruction, so that
    // whoever holds the lock of the list never finds one that is half destroyed.
    void Inclui(CXVCR_Middleware* pComponente);
    void Retira(CXVCR_Middleware* pComponente);

    // Stores that stay open for a moment after their last component.
    CXVLojasMantidas& GetLojas() { return m_lojas; }

    // Cuts off the clients of abandoned components. A component that no client holds any more ends.
    void DesconectaOciosos();

    // Cuts off the clients that are left, waits for calls that are still inside (their components end with
    // them) and closes every store. Main thread.
    void Encerra();

  private:
    CXVVidaServidor();
    bool TemTravaVigente() const;
    // Cuts off those that nobody has called for ulLimite milliseconds; 0 means all components.
    void Desconecta(XVUInt ulLimite);
    // These components, each with a reference that the caller gives back; components whose destruction has
    // begun are left out.
    std::vector<CXVCR_Middleware*> TomaOciosos(XVUInt ulLimite);

    std::mutex m_Mutex;  // guards the list and the steps of the counts
    std::vector<CXVCR_Middleware*> m_listaComponentes;
    std::atomic<long> m_lComponentes = 0;
    std::atomic<long> m_lTravas = 0;
    std::atomic<XVUInt> m_ulUltimaTrava = 0;  // ticks of the last call of LockServer
    std::atomic<XVUInt> m_ulInatividade = 0;
    std::atomic<bool> m_bTeveClientes = false;
    std::atomic<bool> m_bEncerrando = false;
    CXVLojasMantidas m_lojas;
    HANDLE m_hSemClientes;
    HANDLE m_hFim;
};
