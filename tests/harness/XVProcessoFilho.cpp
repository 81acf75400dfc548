#include "tests/harness/XVProcessoFilho.h"

#include <utility>

std::string CXVProcessoFilho::LeLinha() {
    std::size_t uiFim = m_sPendente.find('\n');
    while (uiFim == std::string::npos) {
        const std::string sPedaco = LePedaco();
        if (sPedaco.empty()) {
            return std::exchange(m_sPendente, {});
        }
        m_sPendente += sPedaco;
        uiFim = m_sPendente.find('\n');
    }
    std::string sLinha = m_sPendente.substr(0, uiFim);
    m_sPendente.erase(0, uiFim + 1);
    if (!sLinha.empty() && sLinha.back() == '\r') {
        sLinha.pop_back();
    }
    return sLinha;
}
