// Bytes of a file by where they lie: what several writes, one after the other, make of it together.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "platform/XVTipos.h"

class CXVFaixas {
  public:
    // Newer bytes take the place of what older ranges say of them.
    void Mescla(XVUInt64 uiOffset, std::string_view sBytes);

    // Offset and bytes, ascending, none over another.
    auto begin() const { return m_mapa.begin(); }
    auto end() const { return m_mapa.end(); }

  private:
    std::map<XVUInt64, std::string> m_mapa;
};
