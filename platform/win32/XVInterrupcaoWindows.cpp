#include <windows.h>

#include <atomic>

#include "platform/XVInterrupcao.h"

namespace {

std::atomic<bool> g_bPedida = false;

// Runs on a thread of the system.
BOOL WINAPI Anota(DWORD /*ulEvento*/) {
    return g_bPedida.exchange(true) ? FALSE : TRUE;
}

}  // namespace

namespace XVInterrupcao {

void Observa() {
    ::SetConsoleCtrlHandler(Anota, TRUE);
}

bool FoiPedida() {
    return g_bPedida;
}

}  // namespace XVInterrupcao
