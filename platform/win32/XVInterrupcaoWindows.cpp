#include <windows.h>

#include <atomic>
#include <mutex>

#include "platform/XVInterrupcao.h"
#include "platform/win32/XVAlarmeWindows.h"

namespace {

constexpr int k_iSaidaInterrompida = 130;
constexpr int k_iSaidaEncerrada = 143;

std::atomic<int> g_iSaida = 0;  // of the request; 0: none
std::atomic<bool> g_bDesperta = false;
std::mutex g_mutexLeitor;
HANDLE g_hLeitor = nullptr;  // the thread that waits for input

BOOL WINAPI Recebe(DWORD dwPedido) {
    const bool bTecla = dwPedido == CTRL_C_EVENT || dwPedido == CTRL_BREAK_EVENT;
    int iNenhuma = 0;
    if (!g_iSaida.compare_exchange_strong(iNenhuma, bTecla ? k_iSaidaInterrompida : k_iSaidaEncerrada))
        return FALSE;
    XVInterrupcao::Desperta();
    // The system ends the process when this returns; until then it gives main some seconds.
    if (!bTecla) Sleep(INFINITE);
    return TRUE;
}

}  // namespace

CXVLeituraDespertavel::CXVLeituraDespertavel() {
    const std::lock_guard trava(g_mutexLeitor);
    if (g_bDesperta) return;
    m_hThread = OpenThread(THREAD_TERMINATE, FALSE, GetCurrentThreadId());
    g_hLeitor = m_hThread;
}

CXVLeituraDespertavel::~CXVLeituraDespertavel() {
    if (m_hThread == nullptr) return;
    const std::lock_guard trava(g_mutexLeitor);
    g_hLeitor = nullptr;
    CloseHandle(m_hThread);
}

bool XVFoiDespertada() {
    return g_bDesperta;
}

namespace XVInterrupcao {

bool Observa() {
    g_iSaida = 0;
    g_bDesperta = false;
    static const bool s_bInstalado = SetConsoleCtrlHandler(Recebe, TRUE) != FALSE;
    return s_bInstalado;
}

bool Pedida() {
    return g_iSaida.load(std::memory_order_relaxed) != 0;
}

// A reading that is about to begin is not cancelled by one call, so it is called until the reader is gone.
void Desperta() {
    g_bDesperta = true;
    for (;; Sleep(1)) {
        const std::lock_guard trava(g_mutexLeitor);
        if (g_hLeitor == nullptr) return;
        CancelSynchronousIo(g_hLeitor);
    }
}

int Encerra(int iSaida) {
    const int iPedida = g_iSaida;
    return iPedida != 0 ? iPedida : iSaida;
}

}  // namespace XVInterrupcao
