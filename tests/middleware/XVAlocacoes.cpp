#include "tests/middleware/XVAlocacoes.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long> g_iRestantes{0};
std::atomic<bool> g_bRecusada{false};
std::atomic<std::size_t> g_uiVivos{0};
std::atomic<std::size_t> g_uiPico{0};
constexpr std::size_t k_uiPrefixo = 32;  // keeps the strictest alignment of operator new

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
    auto* p = ChegouAVez() ? nullptr : static_cast<char*>(std::malloc(uiTamanho + k_uiPrefixo));
    if (p == nullptr) throw std::bad_alloc();
    *reinterpret_cast<std::size_t*>(p) = uiTamanho;
    const std::size_t uiVivos = g_uiVivos += uiTamanho;
    std::size_t uiPico = g_uiPico;
    while (uiVivos > uiPico && !g_uiPico.compare_exchange_weak(uiPico, uiVivos)) {
    }
    return p + k_uiPrefixo;
}
void operator delete(void* p) noexcept {
    if (p == nullptr) return;
    char* pInicio = static_cast<char*>(p) - k_uiPrefixo;
    g_uiVivos -= *reinterpret_cast<std::size_t*>(pInicio);
    std::free(pInicio);
}
void operator delete(void* p, std::size_t) noexcept {
    operator delete(p);
}
