#include "server/XVPilhaThreads.h"

#include <windows.h>

#include <atomic>

namespace {

constexpr ULONG k_ulReserva = 32 << 10;

std::atomic<bool> g_bReserva = false;

void ReservaDaThread() {
    ULONG ulReserva = k_ulReserva;
    ::SetThreadStackGuarantee(&ulReserva);
}

// The system calls it at the begin and the end of every thread.
void NTAPI NaThread(void*, DWORD ulMotivo, void*) {
    if (ulMotivo == DLL_THREAD_ATTACH && g_bReserva.load()) ReservaDaThread();
}

}  // namespace

// The list of such functions that the program's file carries for the system.
#if defined(_MSC_VER)
#pragma comment(linker, "/INCLUDE:_tls_used")
#pragma comment(linker, "/INCLUDE:g_pfnNaThread")
#pragma const_seg(".CRT$XLM")
extern "C" const PIMAGE_TLS_CALLBACK g_pfnNaThread = &NaThread;
#pragma const_seg()
#else
extern "C" {
__attribute__((section(".CRT$XLM"), used)) PIMAGE_TLS_CALLBACK g_pfnNaThread = &NaThread;
}
#endif

void XVReservaPilha() {
    g_bReserva = true;
    ReservaDaThread();
}
