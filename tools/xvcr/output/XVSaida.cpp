#include "tools/xvcr/output/XVSaida.h"

#include <algorithm>
#include <cstdio>

#include "tools/xvcr/text/XVErros.h"
#include "tools/xvcr/text/XVTextoTela.h"

void CXVSaida::Falha() {
    m_bFalhou = true;
    XVFalha("não foi possível escrever o resultado na saída padrão" + XVSeDiscoCheio() +
            (m_fnFeito ? "; " + m_fnFeito() : std::string()));
}

void CXVSaida::Escreve(std::string_view sTexto) {
    if (std::fwrite(sTexto.data(), 1, sTexto.size(), stdout) != sTexto.size()) Falha();
}

void CXVSaida::Linha(std::string_view sTexto) {
    Escreve(sTexto);
    Escreve("\n");
}

void CXVSaida::LinhaJson(const XVJson& rJson) {
    Linha(rJson.dump());
}

void CXVSaida::Pares(const XVRegistroJson::XVListaPares& listaPares) {
    std::size_t uiLargura = 0;
    for (const auto& [sNome, sValor] : listaPares)
        uiLargura = std::max(uiLargura, XVTextoTela::GetLargura(sNome));
    for (const auto& [sNome, sValor] : listaPares) {
        const bool bVariasLinhas = sValor.find('\n') != std::string::npos;
        const std::string sEspacos(uiLargura - XVTextoTela::GetLargura(sNome) + 2, ' ');
        Linha(bVariasLinhas ? sNome + ":\n" + sValor
                            : sNome + ':' + (sValor.empty() ? "" : sEspacos + sValor));
    }
}

void CXVSaida::Termina() {
    if (std::fflush(stdout) != 0) Falha();
}
