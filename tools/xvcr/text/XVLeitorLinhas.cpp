#include "tools/xvcr/text/XVLeitorLinhas.h"

#include <utility>

bool CXVLeitorLinhas::Enche() {
    constexpr std::size_t k_uiBloco = 65536;
    m_sBloco.resize(k_uiBloco);
    m_sBloco.resize(m_rFonte.Le(m_sBloco.data(), k_uiBloco));
    m_uiPosicao = 0;
    return !m_sBloco.empty();
}

CXVLeitorLinhas::EResultado CXVLeitorLinhas::Termina(std::string* psLinha) {
    ++m_uiNumero;
    m_bIniciada = false;
    // Two texts take turns, so that no line asks for memory; one that was much larger than most gives it
    // back.
    constexpr std::size_t k_uiMantido = 1U << 20;
    psLinha->clear();
    if (psLinha->capacity() > k_uiMantido) psLinha->shrink_to_fit();
    std::swap(*psLinha, m_sLinha);
    if (std::exchange(m_bLonga, false)) {
        psLinha->clear();
        return EResultado::eLonga;
    }
    if (psLinha->ends_with('\r')) psLinha->pop_back();
    return EResultado::eLinha;
}

CXVLeitorLinhas::EResultado CXVLeitorLinhas::Proxima(std::string* psLinha) {
    for (;;) {
        if (m_uiPosicao == m_sBloco.size() && !Enche())
            return m_bIniciada && !m_bCresce ? Termina(psLinha) : EResultado::eFim;
        const std::size_t uiFim = m_sBloco.find('\n', m_uiPosicao);
        const bool bCompleta = uiFim != std::string::npos;
        const std::size_t uiBytes = (bCompleta ? uiFim : m_sBloco.size()) - m_uiPosicao;
        if (uiBytes > m_uiLimite - m_sLinha.size()) {
            m_bLonga = true;
            m_sLinha.clear();
            m_sLinha.shrink_to_fit();
        }
        if (!m_bLonga) m_sLinha.append(m_sBloco, m_uiPosicao, uiBytes);
        const std::size_t uiAvanco = uiBytes + (bCompleta ? 1U : 0U);
        m_uiPosicao += uiAvanco;
        m_uiBytes += uiAvanco;
        m_bIniciada = true;
        if (bCompleta) return Termina(psLinha);
    }
}
