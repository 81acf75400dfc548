// Asks the processor to fetch what will soon be read. A hint: any address will do.
#pragma once

#if defined(_MSC_VER)
#include <intrin.h>
#endif

inline void XVAntecipa(const void* p) noexcept {
#if defined(_MSC_VER)
    _mm_prefetch(static_cast<const char*>(p), _MM_HINT_T0);
#else
    __builtin_prefetch(p);
#endif
}
