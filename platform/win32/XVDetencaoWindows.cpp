#include <windows.h>

#include <atomic>
#include <utility>

#include "platform/XVDetencao.h"

namespace {

std::atomic<bool> g_bDetido = false;
constinit thread_local bool g_bIsenta = false;

void Para() {
    while (!g_bIsenta) ::Sleep(INFINITE);
}

}  // namespace

namespace XVDetencao {

void Detem() {
    g_bDetido = true;
}

void Espera() {
    if (g_bDetido.load(std::memory_order_relaxed)) [[unlikely]]
        Para();
}

bool SetIsenta(bool bIsenta) {
    return std::exchange(g_bIsenta, bIsenta);
}

}  // namespace XVDetencao
