// Bytes of a file by where they lie: what several writes, one after the other, make of it together.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "platform/XVTipos.h"

class CXVFaixas {
  public:
    // Newer bytes take the place of what older ranges say of them.
    void Mescla(XVUInt64 uiOffset, std::string_view sBytes) {
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

    // Offset and bytes, ascending, none over another.
    auto begin() const { return m_mapa.begin(); }
    auto end() const { return m_mapa.end(); }

  private:
    std::map<XVUInt64, std::string> m_mapa;
};
