#include "tools/xvcr/output/XVTabela.h"

#include <algorithm>

#include "tools/xvcr/text/XVTextoTela.h"

namespace {

constexpr std::size_t k_uiEntreColunas = 2;

}  // namespace

void CXVTabela::Inclui(std::vector<std::string> listaCelulas) {
    listaCelulas.resize(m_listaColunas.size());
    for (std::string& rCelula : listaCelulas) rCelula = XVTextoTela::Escapa(rCelula, false);
    m_listaLinhas.push_back(std::move(listaCelulas));
}

std::string CXVTabela::Monta() const {
    const std::size_t uiColunas = m_listaColunas.size();
    std::vector<std::size_t> listaLarguras(uiColunas);
    for (std::size_t c = 0; c < uiColunas; ++c) {
        listaLarguras[c] = XVTextoTela::GetLargura(m_listaColunas[c].sTitulo);
        for (const auto& rLinha : m_listaLinhas)
            listaLarguras[c] = std::max(listaLarguras[c], XVTextoTela::GetLargura(rLinha[c]));
    }

    std::string sSaida;
    const auto anexa = [&](std::size_t c, const std::string& sCelula) {
        const std::string sEspacos(listaLarguras[c] - XVTextoTela::GetLargura(sCelula), ' ');
        const bool bDireita = m_listaColunas[c].eAlinhamento == EAlinhamento::eDireita;
        const bool bUltima = c + 1 == uiColunas;
        if (bDireita) sSaida += sEspacos;
        sSaida += sCelula;
        if (!bDireita && !bUltima) sSaida += sEspacos;
        sSaida += bUltima ? std::string("\n") : std::string(k_uiEntreColunas, ' ');
    };
    for (std::size_t c = 0; c < uiColunas; ++c) anexa(c, m_listaColunas[c].sTitulo);
    for (std::size_t c = 0; c < uiColunas; ++c) anexa(c, std::string(listaLarguras[c], '-'));
    for (const auto& rLinha : m_listaLinhas)
        for (std::size_t c = 0; c < uiColunas; ++c) anexa(c, rLinha[c]);
    return sSaida;
}
