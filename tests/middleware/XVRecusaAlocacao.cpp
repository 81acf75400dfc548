#include "tests/middleware/XVRecusaAlocacao.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long> g_iRestantes{0};
std::atomic<bool> g_bOcorreu{false};

bool Recusa() {
    if (g_iRestantes.load(std::memory_order_relaxed) == 0 || --g_iRestantes != 0) return false;
    g_bOcorreu = true;
    return true;
}

}  // namespace

void XVRecusaAlocacao::Programa(long iNumero) {
    g_bOcorreu = false;
    g_iRestantes = iNumero;
}
bool XVRecusaAlocacao::Ocorreu() {
    return g_bOcorreu;
}

XVRecusaAlocacao::CSuspensa::CSuspensa() : m_iRestantes(g_iRestantes.exchange(0)) {}
XVRecusaAlocacao::CSuspensa::~CSuspensa() {
    g_iRestantes = m_iRestantes;
}

void* operator new(std::size_t uiTamanho) {
    void* p = Recusa() ? nullptr : std::malloc(uiTamanho == 0 ? 1 : uiTamanho);
    if (p == nullptr) throw std::bad_alloc();
    return p;
}
void operator delete(void* p) noexcept {
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}
