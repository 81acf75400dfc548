// Records of one layout out of the pieces of a file, which end anywhere.
#pragma once

#include <algorithm>
#include <cstring>
#include <span>

#include "platform/XVTipos.h"

template <class T>
class TXVPedacosEmRegistros {
  public:
    // fn(record, altered): a record is altered when one of its pieces is.
    template <class TFn>
    void Toma(std::span<const char> aBytes, bool bAlterado, TFn fn) {
        while (!aBytes.empty()) {
            m_bAlterado = m_uiTem == 0 ? bAlterado : m_bAlterado || bAlterado;
            const std::size_t uiParte = std::min(sizeof(T) - m_uiTem, aBytes.size());
            std::memcpy(reinterpret_cast<char*>(&m_reg) + m_uiTem, aBytes.data(), uiParte);
            aBytes = aBytes.subspan(uiParte);
            m_uiTem += uiParte;
            if (m_uiTem < sizeof(T)) return;
            m_uiTem = 0;
            fn(m_reg, m_bAlterado);
        }
    }
    // Bytes of a last record that is not whole.
    XVUInt64 GetSobra() const { return m_uiTem; }

  private:
    T m_reg{};
    std::size_t m_uiTem = 0;
    bool m_bAlterado = false;
};
