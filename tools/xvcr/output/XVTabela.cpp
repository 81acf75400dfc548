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

std::string CXVTabela::MontaLinha(const std::vector<std::string>& listaCelulas) const {
    std::string sLinha;
    for (std::size_t c = 0; c < listaCelulas.size(); ++c) {
        const std::string sEspacos(m_listaLarguras[c] - XVTextoTela::GetLargura(listaCelulas[c]), ' ');
        const bool bDireita = m_listaColunas[c].eAlinhamento == EAlinhamento::eDireita;
        const bool bUltima = c + 1 == listaCelulas.size();
        if (bDireita) sLinha += sEspacos;
        sLinha += listaCelulas[c];
        if (!bDireita && !bUltima) sLinha += sEspacos;
        sLinha += bUltima ? std::string("\n") : std::string(k_uiEntreColunas, ' ');
    }
    return sLinha;
}

std::string CXVTabela::Monta() {
    const bool bPrimeira = m_listaLarguras.empty();
    m_listaLarguras.resize(m_listaColunas.size());
    std::vector<std::string> listaTitulos;
    std::vector<std::string> listaTracos;
    for (std::size_t c = 0; c < m_listaColunas.size(); ++c) {
        std::size_t& ruiLargura = m_listaLarguras[c];
        listaTitulos.push_back(m_listaColunas[c].sTitulo);
        ruiLargura = std::max(ruiLargura, XVTextoTela::GetLargura(m_listaColunas[c].sTitulo));
        for (const auto& rLinha : m_listaLinhas)
            ruiLargura = std::max(ruiLargura, XVTextoTela::GetLargura(rLinha[c]));
        listaTracos.emplace_back(ruiLargura, '-');
    }
    std::string sParte = bPrimeira ? MontaLinha(listaTitulos) + MontaLinha(listaTracos) : std::string();
    for (const auto& rLinha : m_listaLinhas) sParte += MontaLinha(rLinha);
    m_listaLinhas.clear();
    return sParte;
}
