#include "core/xvdatabase/XVFaixas.h"

#include <iterator>
#include <utility>

void CXVFaixas::Mescla(XVUInt64 uiOffset, std::string_view sBytes) {
    if (sBytes.empty()) return;
    const XVUInt64 uiFim = uiOffset + sBytes.size();
    auto it = m_mapa.lower_bound(uiOffset);
    if (it != m_mapa.begin() && std::prev(it)->first + std::prev(it)->second.size() > uiOffset) --it;
    while (it != m_mapa.end() && it->first < uiFim) {
        const XVUInt64 uiInicioVelho = it->first;
        const std::string sVelho = std::move(it->second);
        it = m_mapa.erase(it);
        if (uiInicioVelho < uiOffset) m_mapa[uiInicioVelho] = sVelho.substr(0, uiOffset - uiInicioVelho);
        if (uiInicioVelho + sVelho.size() > uiFim)
            it = m_mapa.emplace(uiFim, sVelho.substr(uiFim - uiInicioVelho)).first;
    }
    m_mapa[uiOffset] = sBytes;
}
