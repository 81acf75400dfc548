#include "platform/XVJanelaMemoria.h"

#include <atomic>
#include <cstring>

#include "platform/XVDetencao.h"

namespace {

constexpr CXVErroArquivo k_erroOffset(ECausaArquivo::ePosicionamentoInvalido, 0);

// Readers of other processes meet the same memory, so nothing but the processor's own instruction will do.
using TPalavra = std::atomic_ref<XVUInt64>;
static_assert(TPalavra::is_always_lock_free && TPalavra::required_alignment <= sizeof(XVUInt64));

}  // namespace

CXVErroArquivo CXVJanelaMemoria::Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) {
    if (!Cabe(uiOffset, uiTamanho, m_uiTamanho)) {
        return k_erroOffset;
    }
    XVDetencao::Espera();
    if (uiTamanho > 0) {
        std::memcpy(m_pInicio + uiOffset, pDados, uiTamanho);
    }
    return {};
}

CXVErroArquivo CXVJanelaMemoria::GravaPalavra(XVUInt64 uiOffset, XVUInt64 uiPalavra) {
    if (!CabePalavra(uiOffset, m_uiTamanho)) {
        return k_erroOffset;
    }
    XVDetencao::Espera();
    XVUInt64& rPalavra = *reinterpret_cast<XVUInt64*>(m_pInicio + uiOffset);
    TPalavra(rPalavra).store(uiPalavra, std::memory_order_release);
    // Nor is what is written after it, through this window or another, seen by anyone before it.
    std::atomic_thread_fence(std::memory_order_release);
    return {};
}
