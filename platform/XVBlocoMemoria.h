// A block of memory whose elements are not set before somebody sets them. A large one asks the system for
// large pages, which cost fewer faults while it is filled and fewer translations of addresses afterwards.
//
// Thread rule: none but the owner's.
#pragma once

#include <limits>
#include <memory>
#include <new>
#include <type_traits>

#include "platform/XVAmbienteSO.h"

template <class T>
class TXVBlocoMemoria {
    static_assert(std::is_trivially_copyable_v<T> && alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);

  public:
    TXVBlocoMemoria() = default;
    // Throws std::bad_alloc.
    explicit TXVBlocoMemoria(std::size_t uiQuantidade) {
        if (uiQuantidade > std::numeric_limits<std::size_t>::max() / sizeof(T)) throw std::bad_alloc();
        m_p.reset(static_cast<T*>(::operator new(uiQuantidade * sizeof(T))));
        XVAmbienteSO::PedePaginasGrandes(m_p.get(), uiQuantidade * sizeof(T));
    }

    T* get() const { return m_p.get(); }
    T& operator[](std::size_t i) const { return m_p[i]; }

  private:
    struct SLibera {
        void operator()(T* p) const noexcept { ::operator delete(p); }
    };
    std::unique_ptr<T[], SLibera> m_p;
};
