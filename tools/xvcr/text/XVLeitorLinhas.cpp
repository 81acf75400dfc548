#include "tools/xvcr/text/XVLeitorLinhas.h"

#include <utility>

bool CXVLeitorLinhas::Enche() {
    constexpr std::size_t k_uiBloco = 262144;
    m_sBloco.resize(k_uiBloco);
    m_sResto = std::string_view(m_sBloco.data(), m_rFonte.Le(m_sBloco.data(), k_uiBloco));
    return !m_sResto.empty();
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
        if (m_sResto.empty() && !Enche())
            return m_bIniciada && !m_bCresce ? Termina(psLinha) : EResultado::eFim;
        const std::size_t uiFim = m_sResto.find('\n');
        const bool bCompleta = uiFim != std::string_view::npos;
        const std::size_t uiBytes = bCompleta ? uiFim : m_sResto.size();
        if (uiBytes > m_uiLimite - m_sLinha.size()) {
            m_bLonga = true;
            m_sLinha.clear();
            m_sLinha.shrink_to_fit();
        }
        if (!m_bLonga) m_sLinha.append(m_sResto.substr(0, uiBytes));
        const std::size_t uiAvanco = uiBytes + (bCompleta ? 1U : 0U);
        m_sResto.remove_prefix(uiAvanco);
        m_uiBytes += uiAvanco;
        m_bIniciada = true;
        if (bCompleta) return Termina(psLinha);
    }
}
