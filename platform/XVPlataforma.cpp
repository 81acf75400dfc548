#include "platform/XVPlataforma.h"

#include <atomic>

namespace XVPlataforma {
namespace {

// Null until first use, so that no order of static initialisation matters.
template <class TInterface>
struct TVigente {
    std::atomic<TInterface*> m_pVigente{nullptr};

    TInterface& Get(TInterface& (*pfnNativo)()) {
        TInterface* p = m_pVigente.load(std::memory_order_acquire);
        if (p != nullptr) [[likely]] {
            return *p;
        }
        TInterface& rNativo = pfnNativo();
        TInterface* pAtual = nullptr;
        return m_pVigente.compare_exchange_strong(pAtual, &rNativo) ? rNativo : *pAtual;
    }

    TInterface* Troca(TInterface* p, TInterface& (*pfnNativo)()) {
        TInterface* pAnterior = m_pVigente.exchange(p != nullptr ? p : &pfnNativo());
        return pAnterior != nullptr ? pAnterior : &pfnNativo();
    }
};

constinit TVigente<IXVSistemaArquivos> g_sistemaArquivos;
constinit TVigente<IXVRelogio> g_relogio;
constinit TVigente<IXVRegistry> g_registry;

}  // namespace

IXVSistemaArquivos& SistemaArquivos() {
    return g_sistemaArquivos.Get(SistemaArquivosNativo);
}
IXVRelogio& Relogio() {
    return g_relogio.Get(RelogioNativo);
}
IXVRegistry& Registry() {
    return g_registry.Get(RegistryNativo);
}

IXVSistemaArquivos* TrocaSistemaArquivos(IXVSistemaArquivos* p) {
    return g_sistemaArquivos.Troca(p, SistemaArquivosNativo);
}
IXVRelogio* TrocaRelogio(IXVRelogio* p) {
    return g_relogio.Troca(p, RelogioNativo);
}
IXVRegistry* TrocaRegistry(IXVRegistry* p) {
    return g_registry.Troca(p, RegistryNativo);
}

}  // namespace XVPlataforma
