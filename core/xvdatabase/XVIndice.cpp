#include "core/xvdatabase/XVIndice.h"

bool CXVIndice::Constroi(std::span<const XVUInt64> aChaves, std::size_t uiMais) {
    // How far ahead slots and then the keys in them are fetched: the table is much larger than the caches.
    constexpr std::size_t k_uiAdiante = 24;
    const std::size_t uiLugares = Lugares(aChaves.size() + uiMais);
    TXVBlocoMemoria<XVUInt> lugares(uiLugares);
    ReservaElos(aChaves.size() + uiMais + 1);
    std::fill_n(lugares.get(), uiLugares, 0);
    m_lugares = std::move(lugares);
    m_uiLugares = uiLugares;
    m_uiMascara = uiLugares - 1;
    m_uiUsados = 0;
    const auto chave = [&aChaves](XVUInt uiPosicao) { return aChaves[uiPosicao - 1]; };
    XVUInt64 uiMaior = 0;
    for (std::size_t i = 0; i < aChaves.size(); ++i) {
        if (i + 2 * k_uiAdiante < aChaves.size()) {
            XVAntecipa(&m_lugares[Inicio(aChaves[i + 2 * k_uiAdiante])]);
            XVAntecipa(aChaves.data() + m_lugares[Inicio(aChaves[i + k_uiAdiante])]);
        }
        if (aChaves[i] == 0) continue;
        // A key above all before it, as dates and counters bring them, is equal to none of them.
        const bool bNova = aChaves[i] > uiMaior;
        const std::size_t uiLugar = bNova ? LocalizaLivre(aChaves[i]) : Localiza(aChaves[i], chave);
        if (bNova) uiMaior = aChaves[i];
        if (m_lugares[uiLugar] == 0) {
            ++m_uiUsados;
        } else if (!m_bPermiteRepetida) {
            Limpa();
            return false;
        }
        Encadeia(uiLugar, static_cast<XVUInt>(i + 1));
    }
    return true;
}

std::size_t CXVIndice::LocalizaLivre(XVUInt64 uiChave) const {
    std::size_t i = Inicio(uiChave);
    while (m_lugares[i] != 0) i = Seguinte(i);
    return i;
}

void CXVIndice::Limpa() {
    m_lugares = {};
    m_listaProxima = {};
    m_uiLugares = m_uiMascara = m_uiUsados = 0;
}

// In one step with what is likely to come, or each position would move all links.
void CXVIndice::ReservaElos(std::size_t uiPosicoes) {
    if (!m_bPermiteRepetida || m_listaProxima.size() >= uiPosicoes) return;
    if (m_listaProxima.capacity() < uiPosicoes)
        m_listaProxima.reserve(std::max(uiPosicoes, m_listaProxima.capacity() * 2));
    m_listaProxima.resize(uiPosicoes);
}

// Enters a position into the ring of the key that a slot stands for, in ascending order.
void CXVIndice::Encadeia(std::size_t uiLugar, XVUInt uiPosicao) {
    XVUInt& rUltima = m_lugares[uiLugar];
    if (m_bPermiteRepetida) {
        if (rUltima == 0) {
            m_listaProxima[uiPosicao] = uiPosicao;
        } else {
            XVUInt uiAnterior = rUltima;
            if (uiPosicao < rUltima)
                while (m_listaProxima[uiAnterior] < uiPosicao) uiAnterior = m_listaProxima[uiAnterior];
            m_listaProxima[uiPosicao] = m_listaProxima[uiAnterior];
            m_listaProxima[uiAnterior] = uiPosicao;
        }
    }
    rUltima = std::max(rUltima, uiPosicao);
}

// The position before the given one in its ring, itself where it is alone; 0: it is not in the ring.
XVUInt CXVIndice::Anterior(XVUInt uiUltima, XVUInt uiPosicao) const {
    XVUInt uiAnterior = uiUltima;
    while (m_listaProxima[uiAnterior] != uiPosicao) {
        uiAnterior = m_listaProxima[uiAnterior];
        if (uiAnterior == uiUltima) return 0;
    }
    return uiAnterior;
}
