// What the runtime of remote calls has to have in place before clients call at once.
//
// It binds its allocator with the first call that needs it, and makes an interface known with the first
// object that is handed out, to withdraw it with the last. Runtimes have been seen that let a second call run
// into the half of the one, and that stand still for ever when one client takes the last reference to the
// class away while another one creates. So both are done before the class is offered, and stay for as long as
// the process serves.
//
// Thread rule: the main thread, within its apartment.
#pragma once

#include <objidl.h>

class CXVRuntimeChamadas {
  public:
    CXVRuntimeChamadas() = default;
    // Gives the interfaces up. Nobody may be served any more.
    ~CXVRuntimeChamadas();
    CXVRuntimeChamadas(const CXVRuntimeChamadas&) = delete;
    CXVRuntimeChamadas& operator=(const CXVRuntimeChamadas&) = delete;

    // Once, after the process's security is set. A failure's code is the system's.
    HRESULT Prepara();

  private:
    HRESULT Mantem(REFIID riid, IUnknown* pObjeto);

    // What a client would need to reach the objects that keep the interfaces; nobody gets it.
    IStream* m_pReferencias = nullptr;
    int m_iMantidas = 0;  // in the stream, one behind the other
};
