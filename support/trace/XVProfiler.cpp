#include "support/trace/XVProfiler.h"

#include <cstdarg>
#include <cstdio>

#include "platform/XVAmbienteSO.h"
#include "support/trace/XVProfilerConfig.h"
#include "support/trace/XVProfilerErro.h"
#include "support/trace/XVProfilerFiltro.h"
#include "support/trace/XVProfilerGuarda.h"
#include "support/trace/XVProfilerSaida.h"

constinit thread_local bool CXVGuardaRegistry::s_bGravando = false;

namespace {

std::string Formata(const char* pszFormato, std::va_list argumentos) {
    std::va_list copia;
    va_copy(copia, argumentos);
    char szCurto[512];
    const int iTamanho = std::vsnprintf(szCurto, sizeof szCurto, pszFormato, copia);
    va_end(copia);
    if (iTamanho < 0) return {};
    const auto uiTamanho = static_cast<std::size_t>(iTamanho);
    if (uiTamanho < sizeof szCurto) return std::string(szCurto, uiTamanho);
    std::string sTexto(uiTamanho, '\0');
    std::vsnprintf(sTexto.data(), uiTamanho + 1, pszFormato, argumentos);
    return sTexto;
}

std::string Hexadecimal(HRESULT hr) {
    char szTexto[16];
    std::snprintf(szTexto, sizeof szTexto, "0x%08X", static_cast<unsigned>(hr));
    return szTexto;
}

}  // namespace

namespace XVProfiler {

namespace Interno {

void VerificaRecarga() noexcept {
    if (!XVProfilerConfig::EstaVencida()) return;
    XVGravaSemFalhar([&] { XVProfilerConfig::GetAtual(); });
}

}  // namespace Interno

void RecarregaConfiguracao() noexcept {
    XVGravaSemFalhar([&] { XVProfilerConfig::Recarrega(); });
}

XVUInt64 GetLinhasPerdidas() {
    return XVProfilerSaida::GetPerdidos();
}

void RecordError(const IXVDF_Profiler* pDono, const char* pszFuncao, SFonteTrace fonte, int iLinha,
                 const char* pszFormato, ...) noexcept {
    std::va_list argumentos;
    va_start(argumentos, pszFormato);
    XVGravaSemFalhar([&] {
        XVProfilerErro::Grava({pDono, pszFuncao, fonte, iLinha, 0, {}}, Formata(pszFormato, argumentos));
    });
    va_end(argumentos);
}

void RecordCoCreate(const IXVDF_Profiler* pDono, const char* pszFuncao, std::string_view sProgID,
                    std::string_view sModulo, HRESULT hrResultado) noexcept {
    XVGravaSemFalhar([&] {
        const auto pConfiguracao = XVProfilerConfig::GetAtual();
        if (!pConfiguracao->bCoCreateInstance ||
            !XVProfilerFiltro::DeveLogarProcesso(*pConfiguracao, XVProfilerLinha::GetNomeProcesso()))
            return;
        SProfilerEvento evento(ETipoEvento::eCriacaoObjeto, pDono);
        evento.sClasseFuncao = pszFuncao;
        evento.sGuid = XVAmbienteSO::NovoGuid();
        evento.listaParametros = {{"ProgID", std::string(sProgID)},
                                  {"Modulo", std::string(sModulo)},
                                  {"Resultado", Hexadecimal(hrResultado)}};
        XVProfilerSaida::Escreve(*pConfiguracao, evento);
    });
}

}  // namespace XVProfiler
