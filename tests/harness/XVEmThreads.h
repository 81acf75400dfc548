// The same work in several threads at once; returns when all are done.
#pragma once

#include <thread>
#include <vector>

template <class TFn>
void XVEmThreads(unsigned uiQuantidade, TFn fnTrabalho) {
    std::vector<std::thread> listaThreads;
    for (unsigned i = 0; i < uiQuantidade; ++i)
        listaThreads.emplace_back([&fnTrabalho, i] { fnTrabalho(i); });
    for (std::thread& rThread : listaThreads) rThread.join();
}
