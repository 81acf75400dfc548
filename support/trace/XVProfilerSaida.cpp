#include "support/trace/XVProfilerSaida.h"

#include <atomic>

namespace {
constinit std::atomic<XVUInt64> g_uiPerdidos = 0;
}

namespace XVProfilerSaida {

void Escreve(const SConfiguracaoTrace& rConfiguracao, const SProfilerEvento& rEvento) {
    const bool bEscrito = XVProfilerArquivo::Anexa(XVProfilerArquivo::GetCaminho(rConfiguracao, rEvento),
                                                   XVProfilerLinha::GetCabecalho(rEvento.eTipo),
                                                   XVProfilerLinha::MontaLinha(rEvento));
    if (!bEscrito) g_uiPerdidos.fetch_add(1, std::memory_order_relaxed);
}

XVUInt64 GetPerdidos() {
    return g_uiPerdidos.load(std::memory_order_relaxed);
}

}  // namespace XVProfilerSaida
