// CXVIndice: what asks the records for their keys.
#pragma once

// Keys are often structured, with dates in the high bits and counters in the middle ones. Every bit of the
// key must have a say in the slot, or such keys would crowd into few of them.
inline XVUInt64 CXVIndice::Espalha(XVUInt64 ui) {
    ui ^= ui >> 33;
    ui *= 0xFF51AFD7ED558CCDULL;
    ui ^= ui >> 33;
    ui *= 0xC4CEB9FE1A85EC53ULL;
    return ui ^ (ui >> 33);
}

template <class TChave>
std::size_t CXVIndice::Localiza(XVUInt64 uiChave, TChave& chave) const {
    std::size_t i = Inicio(uiChave);
    while (m_lugares[i] != 0 && chave(m_lugares[i]) != uiChave) i = Seguinte(i);
    return i;
}

template <class TChave>
XVUInt CXVIndice::GetPrimeira(XVUInt64 uiChave, TChave chave) const {
    if (m_uiUsados == 0) return 0;
    const XVUInt uiUltima = m_lugares[Localiza(uiChave, chave)];
    return uiUltima == 0 || !m_bPermiteRepetida ? uiUltima : m_listaProxima[uiUltima];
}

template <class TChave>
void CXVIndice::Reserva(std::size_t uiQuantidade, XVUInt uiUltimaPosicao, std::size_t uiRegistros,
                        TChave chave) {
    ReservaElos(std::size_t{uiUltimaPosicao} + 1);
    if (Lugares(m_uiUsados + uiQuantidade) <= m_uiLugares) return;
    // The records are asked once, in their order, and not in that of the slots.
    std::vector<XVUInt64> aChaves(uiRegistros);
    for (std::size_t i = 0; i < uiRegistros; ++i) aChaves[i] = chave(static_cast<XVUInt>(i + 1));
    static_cast<void>(Constroi(aChaves, uiQuantidade));  // what was entered before can be entered again
}

template <class TChave>
void CXVIndice::Inclui(XVUInt64 uiChave, XVUInt uiPosicao, TChave chave) {
    const std::size_t uiLugar = Localiza(uiChave, chave);
    if (m_lugares[uiLugar] == 0) ++m_uiUsados;
    Encadeia(uiLugar, uiPosicao);
}

template <class TChave>
void CXVIndice::Remove(XVUInt64 uiChave, XVUInt uiPosicao, TChave chave) {
    if (m_uiUsados == 0) return;
    const std::size_t uiLugar = Localiza(uiChave, chave);
    const XVUInt uiUltima = m_lugares[uiLugar];
    if (uiUltima == 0) return;
    const XVUInt uiAnterior = m_bPermiteRepetida ? Anterior(uiUltima, uiPosicao) : uiPosicao;
    if (uiAnterior == uiPosicao) {
        if (uiUltima == uiPosicao) LiberaLugar(uiLugar, chave);
    } else if (uiAnterior != 0) {
        m_listaProxima[uiAnterior] = m_listaProxima[uiPosicao];
        if (uiUltima == uiPosicao) m_lugares[uiLugar] = uiAnterior;
    }
}

// Closes the gap: positions that were pushed past the freed slot move back to where a look-up finds them.
template <class TChave>
void CXVIndice::LiberaLugar(std::size_t uiLivre, TChave& chave) {
    for (std::size_t i = Seguinte(uiLivre); m_lugares[i] != 0; i = Seguinte(i)) {
        const std::size_t uiDistancia = (i - Inicio(chave(m_lugares[i]))) & m_uiMascara;
        if (uiDistancia < ((i - uiLivre) & m_uiMascara)) continue;
        m_lugares[uiLivre] = m_lugares[i];
        uiLivre = i;
    }
    m_lugares[uiLivre] = 0;
    --m_uiUsados;
}
