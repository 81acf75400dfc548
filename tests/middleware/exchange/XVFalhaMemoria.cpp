#include "tests/middleware/exchange/XVFalhaMemoria.h"

#include <cstdlib>
#include <new>

namespace {
unsigned g_uiFaltam = 0;  // one thread: the tests that use it start none
}

void XVFalhaMemoria::Programa(unsigned uiNumero) {
    g_uiFaltam = uiNumero;
}

bool XVFalhaMemoria::Termina() {
    const bool bVeio = g_uiFaltam == 0;
    g_uiFaltam = 0;
    return bVeio;
}

void* operator new(std::size_t uiTamanho) {
    if (g_uiFaltam != 0 && --g_uiFaltam == 0) throw std::bad_alloc();
    void* p = std::malloc(uiTamanho != 0 ? uiTamanho : 1);
    if (p == nullptr) throw std::bad_alloc();
    return p;
}
void operator delete(void* p) noexcept {
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}
