#include "core/xvdatabase/XVIndice.h"

#include <algorithm>
#include <bit>

namespace {

constexpr std::size_t k_uiMinimoEntradas = 64;

// Keys are often structured, with dates in the high bits and counters in the middle ones. Every bit of the
// key must have a say in the slot, or such keys would crowd into few of them.
constexpr XVUInt64 Espalha(XVUInt64 ui) {
    ui ^= ui >> 33;
    ui *= 0xFF51AFD7ED558CCDULL;
    ui ^= ui >> 33;
    ui *= 0xC4CEB9FE1A85EC53ULL;
    return ui ^ (ui >> 33);
}

}  // namespace

std::size_t CXVIndice::Inicio(XVUInt64 uiChave) const {
    return static_cast<std::size_t>(Espalha(uiChave)) & (m_listaEntradas.size() - 1);
}

// The key's slot, or the free slot where it would go. At least one slot is always free.
std::size_t CXVIndice::Localiza(XVUInt64 uiChave) const {
    std::size_t i = Inicio(uiChave);
    while (m_listaEntradas[i].uiPrimeira != 0 && m_listaEntradas[i].uiChave != uiChave)
        i = (i + 1) & (m_listaEntradas.size() - 1);
    return i;
}

void CXVIndice::Redimensiona(std::size_t uiEntradas) {
    std::vector<SEntrada> listaAntigas(uiEntradas);
    listaAntigas.swap(m_listaEntradas);
    for (const SEntrada& entrada : listaAntigas)
        if (entrada.uiPrimeira != 0) m_listaEntradas[Localiza(entrada.uiChave)] = entrada;
}

void CXVIndice::Reserva(std::size_t uiQuantidade, XVUInt uiUltimaPosicao) {
    const std::size_t uiPosicoes = static_cast<std::size_t>(uiUltimaPosicao) + 1;
    if (m_listaProxima.size() < uiPosicoes) {
        if (m_listaProxima.capacity() < uiPosicoes)
            m_listaProxima.reserve(std::max(uiPosicoes, m_listaProxima.capacity() * 2));
        m_listaProxima.resize(uiPosicoes);
    }
    const std::size_t uiMinimo = (m_uiUsadas + uiQuantidade) * 4 / 3 + 1;
    if (m_listaEntradas.size() < uiMinimo)
        Redimensiona(std::bit_ceil(std::max(uiMinimo, k_uiMinimoEntradas)));
}

void CXVIndice::Inclui(XVUInt64 uiChave, XVUInt uiPosicao) {
    SEntrada& rEntrada = m_listaEntradas[Localiza(uiChave)];
    if (rEntrada.uiPrimeira == 0) {
        rEntrada = {uiChave, uiPosicao, uiPosicao};
        m_listaProxima[uiPosicao] = 0;
        ++m_uiUsadas;
    } else if (uiPosicao > rEntrada.uiUltima) {  // the usual case: records are appended
        m_listaProxima[rEntrada.uiUltima] = uiPosicao;
        m_listaProxima[uiPosicao] = 0;
        rEntrada.uiUltima = uiPosicao;
    } else if (uiPosicao < rEntrada.uiPrimeira) {
        m_listaProxima[uiPosicao] = rEntrada.uiPrimeira;
        rEntrada.uiPrimeira = uiPosicao;
    } else {
        XVUInt uiAnterior = rEntrada.uiPrimeira;
        while (m_listaProxima[uiAnterior] < uiPosicao) uiAnterior = m_listaProxima[uiAnterior];
        m_listaProxima[uiPosicao] = m_listaProxima[uiAnterior];
        m_listaProxima[uiAnterior] = uiPosicao;
    }
}

void CXVIndice::Remove(XVUInt64 uiChave, XVUInt uiPosicao) {
    if (m_listaEntradas.empty()) return;
    const std::size_t uiEntrada = Localiza(uiChave);
    SEntrada& rEntrada = m_listaEntradas[uiEntrada];
    if (rEntrada.uiPrimeira == 0) return;
    if (rEntrada.uiPrimeira == uiPosicao) {
        if (rEntrada.uiUltima == uiPosicao)
            LiberaEntrada(uiEntrada);
        else
            rEntrada.uiPrimeira = m_listaProxima[uiPosicao];
        return;
    }
    XVUInt uiAnterior = rEntrada.uiPrimeira;
    while (uiAnterior != 0 && m_listaProxima[uiAnterior] != uiPosicao)
        uiAnterior = m_listaProxima[uiAnterior];
    if (uiAnterior == 0) return;
    m_listaProxima[uiAnterior] = m_listaProxima[uiPosicao];
    if (rEntrada.uiUltima == uiPosicao) rEntrada.uiUltima = uiAnterior;
}

// Closes the gap: entries that were pushed past the freed slot move back to where a look-up finds them.
void CXVIndice::LiberaEntrada(std::size_t uiLivre) {
    const std::size_t uiMascara = m_listaEntradas.size() - 1;
    for (std::size_t i = (uiLivre + 1) & uiMascara; m_listaEntradas[i].uiPrimeira != 0;
         i = (i + 1) & uiMascara) {
        const std::size_t uiDistancia = (i - Inicio(m_listaEntradas[i].uiChave)) & uiMascara;
        if (uiDistancia < ((i - uiLivre) & uiMascara)) continue;
        m_listaEntradas[uiLivre] = m_listaEntradas[i];
        uiLivre = i;
    }
    m_listaEntradas[uiLivre] = {};
    --m_uiUsadas;
}

void CXVIndice::Limpa() {
    m_listaEntradas = {};
    m_listaProxima = {};
    m_uiUsadas = 0;
}

XVUInt CXVIndice::GetPrimeira(XVUInt64 uiChave) const {
    return m_listaEntradas.empty() ? 0 : m_listaEntradas[Localiza(uiChave)].uiPrimeira;
}
