#include "tests/middleware/XVAlocacoes.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include <malloc.h>

namespace {

std::atomic<long> g_iRestantes{0};
std::atomic<bool> g_bRecusada{false};
std::atomic<std::size_t> g_uiVivos{0};
std::atomic<std::size_t> g_uiPico{0};

// Blocks are malloc's own, without anything in front: a library that is loaded by name has its own operators
// on Windows, and frees what was taken here.
std::size_t BytesDoBloco(void* p) {
#ifdef _WIN32
    return _msize(p);
#else
    return malloc_usable_size(p);
#endif
}

bool ChegouAVez() {
    if (g_iRestantes.load(std::memory_order_relaxed) == 0 || --g_iRestantes != 0) return false;
    g_bRecusada = true;
    return true;
}

}  // namespace

void XVAlocacoes::Recusa(long iNumero) {
    g_bRecusada = false;
    g_iRestantes = iNumero;
}
bool XVAlocacoes::FoiRecusada() {
    return g_bRecusada;
}
std::size_t XVAlocacoes::GetBytesVivos() {
    return g_uiVivos;
}
std::size_t XVAlocacoes::GetPico() {
    return g_uiPico;
}
std::size_t XVAlocacoes::ZeraPico() {
    return g_uiPico = g_uiVivos.load();
}

XVAlocacoes::CSuspensa::CSuspensa() : m_iRestantes(g_iRestantes.exchange(0)) {}
XVAlocacoes::CSuspensa::~CSuspensa() {
    g_iRestantes = m_iRestantes;
}

void* operator new(std::size_t uiTamanho) {
    void* p = ChegouAVez() ? nullptr : std::malloc(uiTamanho == 0 ? 1 : uiTamanho);
    if (p == nullptr) throw std::bad_alloc();
    const std::size_t uiVivos = g_uiVivos += BytesDoBloco(p);
    std::size_t uiPico = g_uiPico;
    while (uiVivos > uiPico && !g_uiPico.compare_exchange_weak(uiPico, uiVivos)) {
    }
    return p;
}
void* operator new(std::size_t uiTamanho, const std::nothrow_t&) noexcept {
    try {
        return operator new(uiTamanho);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void operator delete(void* p) noexcept {
    if (p == nullptr) return;
    g_uiVivos -= BytesDoBloco(p);
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
    operator delete(p);
}
