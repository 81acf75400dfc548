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
struct ProfilerScope::SRegistroEscopo {
    SRegistroEscopo(const IXVDF_Profiler* pDono) : registro(ETipoRegistro::eEntrada, pDono) {}
    SProfilerRegistro registro;
};

void ProfilerScope::Entra(const IXVDF_Profiler* pDono, const char* pszClasse, const char* pszFuncao,
                          std::initializer_list<SParametroTrace> listaParametros) noexcept {
    XVGravaSemFalhar([&] {
        const auto pConfiguracao = XVProfilerConfig::GetAtual();
        if (!pConfiguracao->bEntrada && !pConfiguracao->bSaida) return;
        std::string sFuncao = XVProfilerErro::NomeCompleto(pszClasse, pszFuncao);
        if (!PassaFiltros(*pConfiguracao, sFuncao)) return;
        auto pEscopo = std::make_unique<SRegistroEscopo>(pDono);
        SProfilerRegistro& rRegistro = pEscopo->registro;
        rRegistro.sClasseFuncao = std::move(sFuncao);
        if (pConfiguracao->bEntrada && pConfiguracao->bSaida) rRegistro.sGuid = XVAmbienteSO::NovoGuid();
        for (const SParametroTrace& rParametro : listaParametros)
            rRegistro.listaParametros.emplace_back(rParametro.pszNome, Valor(rParametro));
        if (pConfiguracao->bPerformance) rRegistro.ulTicksInicio = XVPlataforma::Relogio().GetTicks();
        if (pConfiguracao->bMemory) rRegistro.uiMemoriaInicio = XVAmbienteSO::GetMemoriaPrivadaProcesso();
        rRegistro.ulTicksFim = rRegistro.ulTicksInicio;
        rRegistro.uiMemoriaFim = rRegistro.uiMemoriaInicio;
        if (pConfiguracao->bEntrada) XVProfilerSaida::Escreve(*pConfiguracao, rRegistro);
        if (pConfiguracao->bSaida) m_pRegistro = pEscopo.release();
    });
}

void ProfilerScope::Sai() noexcept {
    const std::unique_ptr<SRegistroEscopo> pEscopo(std::exchange(m_pRegistro, nullptr));
    XVGravaSemFalhar([&] {
        const auto pConfiguracao = XVProfilerConfig::GetAtual();
        SProfilerRegistro& rRegistro = pEscopo->registro;
        if (!pConfiguracao->bSaida || !PassaFiltros(*pConfiguracao, rRegistro.sClasseFuncao)) return;
        rRegistro.eTipo = ETipoRegistro::eSaida;
        rRegistro.dataHora = XVPlataforma::Relogio().AgoraLocal();
        if (pConfiguracao->bPerformance) rRegistro.ulTicksFim = XVPlataforma::Relogio().GetTicks();
        if (pConfiguracao->bMemory) rRegistro.uiMemoriaFim = XVAmbienteSO::GetMemoriaPrivadaProcesso();
        XVProfilerSaida::Escreve(*pConfiguracao, rRegistro);
    });
}
