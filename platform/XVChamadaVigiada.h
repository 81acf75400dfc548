// A call whose faults are told before the system sees them: whoever runs the calls of other processes (the
// runtime of remote calls) would turn a wild write into an answer and go on.
//
// Thread rule: XVVigiaFalhas once, before the first call; XVExecutaVigiada any thread.
#pragma once

// Is handed the system's description of a fault that nothing inside of the call took (on Windows its
// EXCEPTION_POINTERS), on the faulting thread. It ends the process.
using PXVFalha = void (*)(void* pDescricao);

// Until this is called, and where the system has no such descriptions, faults are left to the system.
void XVVigiaFalhas(PXVFalha pfnFalha);

// Runs pfnChamada(pDados). C++ exceptions pass through. While the process stands still (XVDetencao) no call
// begins and none returns.
void XVExecutaVigiada(void (*pfnChamada)(void*), void* pDados);

template <class TChamada>
void XVExecutaVigiada(TChamada chamada) {
    XVExecutaVigiada([](void* pDados) { (*static_cast<TChamada*>(pDados))(); }, &chamada);
}
