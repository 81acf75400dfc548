#include "support/trace/XVProfilerSaida.h"

#include <atomic>

namespace {
constinit std::atomic<XVUInt64> g_uiPerdidos = 0;
}

namespace XVProfilerSaida {

void Escreve(const SConfiguracaoTrace& rConfiguracao, const SProfilerRegistro& rRegistro) {
    const bool bEscrito = XVProfilerArquivo::Anexa(XVProfilerArquivo::GetCaminho(rConfiguracao, rRegistro),
                                                   XVProfilerLinha::GetCabecalho(rRegistro.eTipo),
                                                   XVProfilerLinha::MontaLinha(rRegistro));
    if (!bEscrito) g_uiPerdidos.fetch_add(1, std::memory_order_relaxed);
}

XVUInt64 GetPerdidos() {
    return g_uiPerdidos.load(std::memory_order_relaxed);
}

}  // namespace XVProfilerSaida
