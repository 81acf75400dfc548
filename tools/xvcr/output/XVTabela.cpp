#include "tools/xvcr/output/XVTabela.h"

#include <algorithm>
#include <numeric>

#include "tools/xvcr/text/XVTextoTela.h"

namespace {

constexpr std::size_t k_uiEntreColunas = 2;

}  // namespace

void CXVTabela::Inclui(std::vector<std::string> listaCelulas) {
    listaCelulas.resize(m_listaColunas.size());
    for (std::string& rCelula : listaCelulas) rCelula = XVTextoTela::Escapa(rCelula, false);
    m_listaLinhas.push_back(std::move(listaCelulas));
}

std::string CXVTabela::MontaLinha(const std::vector<std::string>& listaCelulas, bool bCor) const {
    std::string sLinha;
    for (const std::size_t c : m_listaMostradas) {
        const SColuna& rColuna = m_listaColunas[c];
        const std::string sCelula =
            rColuna.uiMinimo == 0 ? listaCelulas[c] : XVTextoTela::Corta(listaCelulas[c], m_listaLarguras[c]);
        const std::string sEspacos(m_listaLarguras[c] - XVTextoTela::GetLargura(sCelula), ' ');
        const bool bDireita = rColuna.eAlinhamento == EAlinhamento::eDireita;
        const bool bUltima = c == m_listaMostradas.back();
        const std::string_view sCor =
            bCor && rColuna.pfCor != nullptr ? rColuna.pfCor(listaCelulas[c]) : std::string_view();
        if (bDireita) sLinha += sEspacos;
        if (!sCor.empty()) sLinha.append("\x1b[").append(sCor).append("m");
        sLinha += sCelula;
        if (!sCor.empty()) sLinha += "\x1b[0m";
        if (!bDireita && !bUltima) sLinha += sEspacos;
        sLinha += bUltima ? std::string("\n") : std::string(k_uiEntreColunas, ' ');
    }
    return sLinha;
}

void CXVTabela::Mede() {
    m_listaLarguras.resize(m_listaColunas.size());
    for (std::size_t c = 0; c < m_listaColunas.size(); ++c) {
        // A column that was shortened stays as it is.
        if (!m_listaMostradas.empty() && m_uiLimite != 0 && m_listaColunas[c].uiMinimo != 0) continue;
        std::size_t& ruiLargura = m_listaLarguras[c];
        ruiLargura = std::max(ruiLargura, XVTextoTela::GetLargura(m_listaColunas[c].sTitulo));
        for (const auto& rLinha : m_listaLinhas)
            ruiLargura = std::max(ruiLargura, XVTextoTela::GetLargura(rLinha[c]));
    }
}

// The width of the shown columns with what is between them.
std::size_t CXVTabela::Soma() const {
    std::size_t uiSoma = k_uiEntreColunas * (m_listaMostradas.size() - 1);
    for (const std::size_t c : m_listaMostradas) uiSoma += m_listaLarguras[c];
    return uiSoma;
}

// Leaves columns out until the others, shortened as far as they may be, find room.
void CXVTabela::EscolheColunas() {
    m_listaMostradas.resize(m_listaColunas.size());
    std::iota(m_listaMostradas.begin(), m_listaMostradas.end(), std::size_t{0});
    const auto menos = [&](std::size_t c) {
        const std::size_t uiMinimo = m_listaColunas[c].uiMinimo;
        return uiMinimo == 0 || uiMinimo > m_listaLarguras[c] ? 0 : m_listaLarguras[c] - uiMinimo;
    };
    const auto bMenosImporta = [&](std::size_t a, std::size_t b) {
        return m_listaColunas[a].uiDispensa < m_listaColunas[b].uiDispensa;
    };
    while (m_uiLimite != 0) {
        std::size_t uiMenor = Soma();
        for (const std::size_t c : m_listaMostradas) uiMenor -= menos(c);
        if (uiMenor <= m_uiLimite) return;
        const auto p = std::max_element(m_listaMostradas.begin(), m_listaMostradas.end(), bMenosImporta);
        if (m_listaColunas[*p].uiDispensa == 0) return;
        m_listaMostradas.erase(p);
    }
}

// Takes what is too much from the widest of the columns that may be shortened, one place after the other.
void CXVTabela::Encurta() {
    for (std::size_t uiSoma = Soma(); m_uiLimite != 0 && uiSoma > m_uiLimite; --uiSoma) {
        std::size_t* puiMaior = nullptr;
        for (const std::size_t c : m_listaMostradas) {
            const std::size_t uiMinimo = m_listaColunas[c].uiMinimo;
            std::size_t& ruiLargura = m_listaLarguras[c];
            if (uiMinimo != 0 && ruiLargura > uiMinimo && (puiMaior == nullptr || ruiLargura > *puiMaior))
                puiMaior = &ruiLargura;
        }
        if (puiMaior == nullptr) return;
        --*puiMaior;
    }
}

std::string CXVTabela::Monta() {
    const bool bPrimeira = m_listaMostradas.empty();
    Mede();
    std::string sParte;
    if (bPrimeira) {
        EscolheColunas();
        Encurta();
        std::vector<std::string> listaTitulos;
        std::vector<std::string> listaTracos;
        for (std::size_t c = 0; c < m_listaColunas.size(); ++c) {
            listaTitulos.push_back(m_listaColunas[c].sTitulo);
            listaTracos.emplace_back(m_listaLarguras[c], '-');
        }
        sParte = MontaLinha(listaTitulos, false) + MontaLinha(listaTracos, false);
    }
    for (const auto& rLinha : m_listaLinhas) sParte += MontaLinha(rLinha, m_bCor);
    m_listaLinhas.clear();
    return sParte;
}
