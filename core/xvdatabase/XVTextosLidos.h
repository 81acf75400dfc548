// Bytes of a text file that are in memory because the file is read often: pieces of the payload that follow
// each other from its beginning. A piece is loaded when as much has been read from the file since the last
// one as it is long, so loading never costs more than the readings did. Texts are only ever appended; what is
// in memory stays true as long as the file is open.
//
// Thread rule: any thread, but Limpa, which runs alone. Pieces live until Limpa, so whoever shares the file's
// lock may use what Busca gave.
#pragma once

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <new>

#include "platform/XVAmbienteSO.h"
#include "platform/XVTipos.h"

class CXVTextosLidos {
  public:
    CXVTextosLidos() = default;
    CXVTextosLidos(const CXVTextosLidos&) = delete;
    CXVTextosLidos& operator=(const CXVTextosLidos&) = delete;
    ~CXVTextosLidos() { Limpa(); }

    struct SPedaco {
        XVUInt64 uiInicio = 0;  // in the payload
        XVUInt64 uiFim = 0;
        bool bTemNul = false;  // in any text
        std::unique_ptr<char[]> pDados;
        SPedaco* pAnterior = nullptr;

        const char* GetTexto(XVUInt64 uiOffset) const { return pDados.get() + (uiOffset - uiInicio); }
    };

    // The piece in which all of these bytes lie, or null.
    const SPedaco* Busca(XVUInt64 uiOffset, XVUInt64 uiTamanho) const {
        const SPedaco* p = m_pUltimo.load(std::memory_order_acquire);
        while (p != nullptr && uiOffset < p->uiInicio) p = p->pAnterior;
        return p != nullptr && uiTamanho <= p->uiFim && uiOffset <= p->uiFim - uiTamanho ? p : nullptr;
    }
    // Whether so much was read from the file that Carrega may be worth its call.
    bool FoiMuitoLido() const { return m_uiLidos.load(std::memory_order_relaxed) >= k_uiMenorPedaco; }
    void ContaLeitura(XVUInt64 uiBytes) { m_uiLidos.fetch_add(uiBytes, std::memory_order_relaxed); }
    XVUInt64 GetFim() const {
        const SPedaco* p = m_pUltimo.load(std::memory_order_acquire);
        return p == nullptr ? 0 : p->uiFim;
    }

    // Loads what lies between the last piece and uiFim of the payload, where that pays: carrega(SPedaco&)
    // fills the piece's bytes and says whether it could. Gives the bytes that are in memory now and were not.
    template <class TCarrega>
    XVUInt64 Carrega(XVUInt64 uiFim, TCarrega carrega) {
        if (!Compensa(uiFim)) return 0;
        const std::unique_lock lock(m_mutex, std::try_to_lock);
        if (!lock.owns_lock() || !Compensa(uiFim)) return 0;
        m_uiLidos.store(0, std::memory_order_relaxed);
        // Without memory for it the texts are read from the file as before.
        std::unique_ptr<SPedaco> pPedaco(new (std::nothrow) SPedaco);
        if (pPedaco == nullptr) return 0;
        pPedaco->uiInicio = GetFim();
        pPedaco->uiFim = uiFim;
        const auto uiTamanho = static_cast<std::size_t>(uiFim - pPedaco->uiInicio);
        pPedaco->pDados.reset(new (std::nothrow) char[uiTamanho]);
        if (pPedaco->pDados == nullptr) return 0;
        XVAmbienteSO::PedePaginasGrandes(pPedaco->pDados.get(), uiTamanho);
        if (!carrega(*pPedaco)) return 0;
        pPedaco->pAnterior = m_pUltimo.load(std::memory_order_relaxed);
        m_pUltimo.store(pPedaco.release(), std::memory_order_release);
        return uiTamanho;
    }

    void Limpa() {
        for (SPedaco* p = m_pUltimo.exchange(nullptr); p != nullptr;)
            p = std::unique_ptr<SPedaco>(p)->pAnterior;
        m_uiLidos = 0;
    }

  private:
    // Short pieces are not worth their search, and each is half as long at least as those before it together.
    static constexpr XVUInt64 k_uiMenorPedaco = 32U << 10;

    bool Compensa(XVUInt64 uiFim) const {
        const XVUInt64 uiInicio = GetFim();
        return uiFim >= uiInicio + std::max(k_uiMenorPedaco, uiInicio / 2) &&
               m_uiLidos.load(std::memory_order_relaxed) >= uiFim - uiInicio;
    }

    std::atomic<SPedaco*> m_pUltimo = nullptr;
    std::atomic<XVUInt64> m_uiLidos = 0;  // bytes, from the file since the last piece
    std::mutex m_mutex;                   // of whoever loads
};
