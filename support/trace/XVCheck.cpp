#include "support/trace/XVCheck.h"

#include <cstdio>

#include "support/trace/XVDescricaoHResult.h"
#include "support/trace/XVProfilerErro.h"
#include "support/trace/XVProfilerGuarda.h"
#include "support/trace/XVProfilerLinha.h"

namespace {

std::string MontaMensagem(HRESULT hr, const char* pszExpressao) {
    const SDescricaoHResult descricao = XVDescricaoHResult::Decodifica(hr);
    const auto formata = [&](char* pszDestino, std::size_t uiTamanho) {
        return std::snprintf(
            pszDestino, uiTamanho,
            "%s\t%s = %#X %s\tSEVERITY = %d %s\tFACILITY = %d %s\tCODE = %d %s\tDescrição = %s",
            ("hr = " + XVProfilerLinha::Saneia(pszExpressao)).c_str(), "hr", static_cast<unsigned>(hr),
            XVProfilerLinha::Saneia(descricao.sMensagem).c_str(), descricao.iSeverity, descricao.pszSeverity,
            descricao.iFacility, descricao.pszFacility, descricao.iCode, descricao.pszCode,
            descricao.pszNome);
    };
    const int iTamanho = formata(nullptr, 0);
    if (iTamanho < 0) return {};
    std::string sMensagem(static_cast<std::size_t>(iTamanho), '\0');
    formata(sMensagem.data(), sMensagem.size() + 1);
    return sMensagem;
}

// Precondition: hr is a failure.
void Registra(HRESULT hr, const SPontoFalha& rPonto, const IXVDF_Profiler* pDono) noexcept {
    XVGravaSemFalhar([&] {
        XVProfilerErro::Grava({pDono, XVProfilerErro::NomeCompleto(rPonto.pszClasse, rPonto.pszFuncao),
                               rPonto.fonte, rPonto.iLinha, hr, rPonto.pszExpressao},
                              MontaMensagem(hr, rPonto.pszExpressao));
    });
}

}  // namespace

HRESULT XVRegistraFalha(HRESULT hr, const SPontoFalha& rPonto, const IXVDF_Profiler* pDono) noexcept {
    if (FAILED(hr)) Registra(hr, rPonto, pDono);
    return hr;
}

HRESULT CheckHr(HRESULT hr, const char* pszExpressao, const char* pszFuncao, SFonteTrace fonte, int iLinha,
                const IXVDF_Profiler* pDono) noexcept {
    return XVRegistraFalha(hr, {pszExpressao, "", pszFuncao, fonte, iLinha}, pDono);
}
