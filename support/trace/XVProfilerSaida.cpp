#include "support/trace/XVProfilerSaida.h"

#include <atomic>

namespace {

constinit std::atomic<XVUInt64> g_uiPerdidos = 0;
constinit std::atomic<XVUInt64> g_uiNaoContados = 0;  // of them, those that no written record tells of

bool Anexa(const SConfiguracaoTrace& rConfiguracao, const SProfilerEvento& rEvento) {
    using XVProfilerArquivo::EAnexo;
    const std::string& rCabecalho = XVProfilerLinha::GetCabecalho(rEvento.eTipo);
    const std::string sLinha = XVProfilerLinha::MontaLinha(rEvento);
    const std::string sCaminho = XVProfilerArquivo::GetCaminho(rConfiguracao, rEvento);
    EAnexo eAnexo = XVProfilerArquivo::Anexa(sCaminho, rCabecalho, sLinha);
    if (eAnexo == EAnexo::eSemDiretorio && rEvento.eTipo == ETipoEvento::eErro) {
        const std::string sProgramas = XVProfilerArquivo::GetCaminhoProgramas(rConfiguracao, rEvento);
        if (sProgramas != sCaminho) eAnexo = XVProfilerArquivo::Anexa(sProgramas, rCabecalho, sLinha);
    }
    return eAnexo == EAnexo::eEscrita;
}

}  // namespace

namespace XVProfilerSaida {

void Escreve(const SConfiguracaoTrace& rConfiguracao, SProfilerEvento& rEvento) {
    rEvento.uiPerdidosAntes = g_uiNaoContados.exchange(0, std::memory_order_relaxed);
    if (Anexa(rConfiguracao, rEvento)) return;
    g_uiPerdidos.fetch_add(1, std::memory_order_relaxed);
    g_uiNaoContados.fetch_add(rEvento.uiPerdidosAntes + 1, std::memory_order_relaxed);
}

XVUInt64 GetPerdidos() {
    return g_uiPerdidos.load(std::memory_order_relaxed);
}

}  // namespace XVProfilerSaida
