// How much of a list one moment of a viewer reads. Thread rule: any thread.
#pragma once

#include <algorithm>
#include <span>

#include "support/values/XVDmc.h"

// The length of the first part of a list that is not empty: at most uiMaximo (1 or more) DMCs and a few days,
// because a moment keeps open the files of every day that it has read.
inline std::size_t XVParteDoMomento(std::span<const REG_XVDMC> aDmcs, std::size_t uiMaximo) {
    constexpr unsigned k_uiDias = 16;
    const std::size_t uiFim = std::min(uiMaximo, aDmcs.size());
    unsigned uiDias = 1;
    for (std::size_t i = 1; i < uiFim; ++i)
        if (aDmcs[i].GetDma() != aDmcs[i - 1].GetDma() && ++uiDias > k_uiDias) return i;
    return uiFim;
}
