// Sorting of long lists on half of the machine's processors.
#pragma once

#include <algorithm>
#include <thread>
#include <vector>

#include "platform/XVAmbienteSO.h"

// Below this many elements a second thread costs more than it saves.
inline constexpr std::size_t k_uiMinimoPorThread = 1U << 16;

// Sorts lista by menor; a list that is in order already is left alone. The number of threads is half of
// the processors, and one when that is fewer than two or the list is short.
template <class T, class TMenor>
void XVOrdenaEmParalelo(std::vector<T>& lista, TMenor menor,
                        std::size_t uiProcessadores = XVAmbienteSO::GetQuantidadeProcessadores()) {
    if (std::is_sorted(lista.begin(), lista.end(), menor)) return;
    const std::size_t uiThreads = std::min(uiProcessadores / 2, lista.size() / k_uiMinimoPorThread);
    if (uiThreads < 2) {
        std::sort(lista.begin(), lista.end(), menor);
        return;
    }
    const auto limite = [&](std::size_t i) {
        return lista.begin() + static_cast<std::ptrdiff_t>(lista.size() * i / uiThreads);
    };
    std::vector<std::jthread> listaThreads;
    for (std::size_t i = 1; i < uiThreads; ++i)
        listaThreads.emplace_back([&, i] { std::sort(limite(i), limite(i + 1), menor); });
    std::sort(limite(0), limite(1), menor);
    listaThreads.clear();
    for (std::size_t i = 1; i < uiThreads; ++i)
        std::inplace_merge(limite(0), limite(i), limite(i + 1), menor);
}
