#include <memory>
#include <utility>

#include "platform/XVAmbienteSO.h"
#include "platform/XVPlataforma.h"
#include "support/trace/XVProfiler.h"
#include "support/trace/XVProfilerConfig.h"
#include "support/trace/XVProfilerErro.h"
#include "support/trace/XVProfilerFiltro.h"
#include "support/trace/XVProfilerGuarda.h"
#include "support/trace/XVProfilerSaida.h"

namespace {

bool PassaFiltros(const SConfiguracaoTrace& rConfiguracao, std::string_view sFuncao) {
    return XVProfilerFiltro::DeveLogarProcesso(rConfiguracao, XVProfilerLinha::GetNomeProcesso()) &&
           XVProfilerFiltro::DeveLogarXVDataBase(rConfiguracao, sFuncao);
}

std::string Valor(const SParametroTrace& rParametro) {
    return rParametro.bNumero ? std::to_string(rParametro.uiNumero) : std::string(rParametro.sTexto);
}

}  // namespace

// What the exit record repeats of the entry record.
struct ProfilerScope::SEventoEscopo {
    SEventoEscopo(const IXVDF_Profiler* pDono) : evento(ETipoEvento::eEntrada, pDono) {}
    SProfilerEvento evento;
    // What was taken at the entry: log.ini may ask for more by the exit, which then has nothing to compare.
    bool bTempo = false;
    bool bMemoria = false;
};

void ProfilerScope::Entra(const IXVDF_Profiler* pDono, const char* pszClasse, const char* pszFuncao,
                          std::initializer_list<SParametroTrace> listaParametros) noexcept {
    XVGravaSemFalhar([&] {
        const auto pConfiguracao = XVProfilerConfig::GetAtual();
        if (!pConfiguracao->bEntrada && !pConfiguracao->bSaida) return;
        std::string sFuncao = XVProfilerErro::NomeCompleto(pszClasse, pszFuncao);
        if (!PassaFiltros(*pConfiguracao, sFuncao)) return;
        auto pEscopo = std::make_unique<SEventoEscopo>(pDono);
        SProfilerEvento& rEvento = pEscopo->evento;
        rEvento.sClasseFuncao = std::move(sFuncao);
        if (pConfiguracao->bEntrada && pConfiguracao->bSaida) rEvento.sGuid = XVAmbienteSO::NovoGuid();
        for (const SParametroTrace& rParametro : listaParametros)
            rEvento.listaParametros.emplace_back(rParametro.pszNome, Valor(rParametro));
        pEscopo->bTempo = pConfiguracao->bPerformance;
        pEscopo->bMemoria = pConfiguracao->bMemory;
        if (pEscopo->bTempo) rEvento.ulTicksInicio = XVPlataforma::Relogio().GetTicks();
        if (pEscopo->bMemoria) rEvento.uiMemoriaInicio = XVAmbienteSO::GetMemoriaPrivadaProcesso();
        rEvento.ulTicksFim = rEvento.ulTicksInicio;
        rEvento.uiMemoriaFim = rEvento.uiMemoriaInicio;
        if (pConfiguracao->bEntrada) XVProfilerSaida::Escreve(*pConfiguracao, rEvento);
        if (pConfiguracao->bSaida) m_pEvento = pEscopo.release();
    });
}

void ProfilerScope::Sai() noexcept {
    const std::unique_ptr<SEventoEscopo> pEscopo(std::exchange(m_pEvento, nullptr));
    XVGravaSemFalhar([&] {
        const auto pConfiguracao = XVProfilerConfig::GetAtual();
        SProfilerEvento& rEvento = pEscopo->evento;
        if (!pConfiguracao->bSaida || !PassaFiltros(*pConfiguracao, rEvento.sClasseFuncao)) return;
        rEvento.eTipo = ETipoEvento::eSaida;
        rEvento.dataHora = XVPlataforma::Relogio().AgoraLocal();
        if (pConfiguracao->bPerformance && pEscopo->bTempo)
            rEvento.ulTicksFim = XVPlataforma::Relogio().GetTicks();
        if (pConfiguracao->bMemory && pEscopo->bMemoria)
            rEvento.uiMemoriaFim = XVAmbienteSO::GetMemoriaPrivadaProcesso();
        XVProfilerSaida::Escreve(*pConfiguracao, rEvento);
    });
}
