// A growable array whose elements never move: one block as loaded from disk, then blocks of fixed size
// for what is appended. Growing allocates one block at a time and copies nothing that is there.
#pragma once

#include <algorithm>
#include <memory>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/XVBlocoMemoria.h"

template <class T>
class TXVArrayRegistros {
    static_assert(std::is_trivially_copyable_v<T>);

  public:
    static constexpr std::size_t k_uiBloco = 1024;

    std::size_t size() const { return m_uiQuantidade; }
    bool empty() const { return m_uiQuantidade == 0; }
    // Bytes that the elements take, and those that there is room for.
    std::size_t GetMemoria() const { return (m_uiBase + m_listaBlocos.size() * k_uiBloco) * sizeof(T); }

    const T& operator[](std::size_t i) const {
        return i < m_uiBase ? m_pBase[i]
                            : m_listaBlocos[(i - m_uiBase) / k_uiBloco][(i - m_uiBase) % k_uiBloco];
    }
    T& operator[](std::size_t i) { return const_cast<T&>(std::as_const(*this)[i]); }

    // Empties the array and gives room for uiQuantidade elements in one block, for the caller to fill.
    T* PreparaBase(std::size_t uiQuantidade) {
        Limpa();
        if (uiQuantidade > 0) m_pBase = TXVBlocoMemoria<T>(uiQuantidade);
        m_uiBase = m_uiQuantidade = uiQuantidade;
        return m_pBase.get();
    }

    void Limpa() {
        m_pBase = {};
        m_listaBlocos.clear();
        m_uiBase = m_uiQuantidade = 0;
    }

    // Makes the next uiQuantidade calls of Inclui unable to fail.
    void Reserva(std::size_t uiQuantidade) {
        const std::size_t uiNecessario = m_uiQuantidade + uiQuantidade;
        while (m_uiBase + m_listaBlocos.size() * k_uiBloco < uiNecessario)
            m_listaBlocos.push_back(std::make_unique_for_overwrite<T[]>(k_uiBloco));
    }

    void Inclui(const T& reg) {
        Reserva(1);
        (*this)[m_uiQuantidade] = reg;
        ++m_uiQuantidade;
    }

    // The elements from i on, as many as lie side by side.
    std::span<const T> GetContiguos(std::size_t i) const {
        const std::size_t uiAte = i < m_uiBase ? m_uiBase : i + k_uiBloco - (i - m_uiBase) % k_uiBloco;
        return {&(*this)[i], std::min(uiAte, m_uiQuantidade) - i};
    }

    // Appends the elements from uiInicio to the vector.
    void CopiaPara(std::vector<T>& lista, std::size_t uiInicio, std::size_t uiQuantidade) const {
        // Repeated calls must not allocate once each.
        if (lista.capacity() < lista.size() + uiQuantidade)
            lista.reserve(std::max(lista.size() + uiQuantidade, lista.capacity() * 2));
        while (uiQuantidade > 0) {
            const std::span<const T> aContiguos = GetContiguos(uiInicio);
            const std::span<const T> aParte = aContiguos.first(std::min(aContiguos.size(), uiQuantidade));
            lista.insert(lista.end(), aParte.begin(), aParte.end());
            uiInicio += aParte.size();
            uiQuantidade -= aParte.size();
        }
    }

    // Shows fnVe(std::span<const T>) all elements in order, each contiguous part of them once.
    template <class TVe>
    void Percorre(TVe& fnVe) const {
        if (m_uiBase > 0) fnVe(std::span<const T>(m_pBase.get(), m_uiBase));
        for (std::size_t i = m_uiBase, b = 0; i < m_uiQuantidade; i += k_uiBloco, ++b)
            fnVe(std::span<const T>(m_listaBlocos[b].get(), std::min(k_uiBloco, m_uiQuantidade - i)));
    }

  private:
    TXVBlocoMemoria<T> m_pBase;
    std::vector<std::unique_ptr<T[]>> m_listaBlocos;
    std::size_t m_uiBase = 0;
    std::size_t m_uiQuantidade = 0;
};
