// Gives a buffer of a provider library back when the scope ends. Thread rule: one object is used by one
// thread; table and buffer must outlive it.
#pragma once

#include <cstring>
#include <limits>
#include <string>

#include "platform/XVTipos.h"
#include "suite/providers/XVProvedorPlugin.h"

class CXVBufferDoPlugin {
  public:
    CXVBufferDoPlugin(const XVProvedorTabela& rTabela, const XVProvedorBuffer& rBuffer)
        : m_rTabela(rTabela), m_rBuffer(rBuffer) {}
    ~CXVBufferDoPlugin() {
        if (m_rBuffer.pBytes != nullptr) m_rTabela.pfnLibera(m_rTabela.pContexto, m_rBuffer.pBytes);
    }
    CXVBufferDoPlugin(const CXVBufferDoPlugin&) = delete;
    CXVBufferDoPlugin& operator=(const CXVBufferDoPlugin&) = delete;

    bool EhValido(bool bTexto) const {
        if (m_rBuffer.bPreenchido == 0) return m_rBuffer.pBytes == nullptr && m_rBuffer.uiTamanho == 0;
        if (m_rBuffer.uiTamanho == 0) return true;
        if (m_rBuffer.pBytes == nullptr || m_rBuffer.uiTamanho > std::numeric_limits<XVUInt>::max())
            return false;
        return !bTexto ||
               std::memchr(m_rBuffer.pBytes, 0, static_cast<std::size_t>(m_rBuffer.uiTamanho)) == nullptr;
    }
    // Only for a valid buffer; one that was not filled leaves the text as it is.
    void Aplica(std::string& sTexto) const {
        if (m_rBuffer.bPreenchido == 0) return;
        if (m_rBuffer.uiTamanho == 0)
            sTexto.clear();
        else
            sTexto.assign(static_cast<const char*>(m_rBuffer.pBytes),
                          static_cast<std::size_t>(m_rBuffer.uiTamanho));
    }

  private:
    const XVProvedorTabela& m_rTabela;
    const XVProvedorBuffer& m_rBuffer;
};
