// Bytes for a caller of the component's interface, owned until they are handed out: whoever makes an answer
// writes it where the caller will read it.
//
// Thread rule: none but the owner's.
#pragma once

#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "platform/XVAmbienteSO.h"

class CXVBufferSaida {
  public:
    CXVBufferSaida() = default;
    CXVBufferSaida(CXVBufferSaida&& rOutro) noexcept
        : m_pBuffer(std::move(rOutro.m_pBuffer)), m_uiTamanho(std::exchange(rOutro.m_uiTamanho, 0)) {}
    CXVBufferSaida& operator=(CXVBufferSaida&& rOutro) noexcept {
        m_pBuffer = std::move(rOutro.m_pBuffer);
        m_uiTamanho = std::exchange(rOutro.m_uiTamanho, 0);
        return *this;
    }

    // Room for uiTamanho bytes, in place of what was there. Throws std::bad_alloc and is empty then.
    char* Prepara(std::size_t uiTamanho) {
        Limpa();
        m_pBuffer.reset(static_cast<char*>(XVAmbienteSO::AlocaSaida(uiTamanho)));
        if (m_pBuffer == nullptr && uiTamanho != 0) throw std::bad_alloc();
        m_uiTamanho = uiTamanho;
        return m_pBuffer.get();
    }
    // Keeps of the bytes uiTamanho from uiInicio on.
    void Recorta(std::size_t uiInicio, std::size_t uiTamanho) {
        if (uiTamanho == 0) return Limpa();
        if (uiInicio != 0) std::memmove(m_pBuffer.get(), m_pBuffer.get() + uiInicio, uiTamanho);
        m_uiTamanho = uiTamanho;
    }
    void Limpa() {
        m_pBuffer.reset();
        m_uiTamanho = 0;
    }

    const char* GetDados() const { return m_pBuffer.get(); }
    std::size_t GetTamanho() const { return m_uiTamanho; }
    // Passes the bytes on; null when there are none.
    void* Entrega() {
        m_uiTamanho = 0;
        return m_pBuffer.release();
    }

  private:
    struct SLibera {
        void operator()(char* p) const noexcept { XVAmbienteSO::LiberaSaida(p); }
    };
    std::unique_ptr<char[], SLibera> m_pBuffer;
    std::size_t m_uiTamanho = 0;
};
