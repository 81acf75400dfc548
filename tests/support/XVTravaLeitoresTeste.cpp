// Readers beside each other, writers alone, and a writer that waits goes before readers that come later.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/XVTipos.h"
#include "platform/XVTravaLeitores.h"

namespace {

constexpr int k_iLeitores = 4;

// Yields until fn holds; false after a time that no working lock needs.
template <class TFn>
bool EsperaAte(TFn fn) {
    const auto limite = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!fn()) {
        if (std::chrono::steady_clock::now() > limite) return false;
        std::this_thread::yield();
    }
    return true;
}

TEST(TravaLeitores, QuemPodeEstarComQuem) {
    CXVTravaLeitores trava;
    // The questions come from another thread: the lock is not recursive.
    const auto fnTenta = [&](bool bLeitura) {
        bool bEntrou = false;
        std::thread([&] {
            bEntrou = bLeitura ? trava.try_lock_shared() : trava.try_lock();
            if (bEntrou && bLeitura) trava.unlock_shared();
            if (bEntrou && !bLeitura) trava.unlock();
        }).join();
        return bEntrou;
    };
    EXPECT_TRUE(fnTenta(true) && fnTenta(false));
    {
        const std::shared_lock leitor(trava);
        EXPECT_TRUE(fnTenta(true));
        EXPECT_FALSE(fnTenta(false));
        EXPECT_TRUE(fnTenta(true)) << "an attempt that failed keeps nobody out";
    }
    for (const bool bTentativa : {false, true}) {
        std::unique_lock escritor(trava, std::defer_lock);
        if (bTentativa)
            ASSERT_TRUE(escritor.try_lock());
        else
            escritor.lock();
        EXPECT_FALSE(fnTenta(true));
        EXPECT_FALSE(fnTenta(false));
    }
    EXPECT_TRUE(fnTenta(true) && fnTenta(false));
}

TEST(TravaLeitores, EscritorQueEsperaVaiAntesDosLeitoresSeguintes) {
    CXVTravaLeitores trava;
    std::mutex mutexOrdem;
    std::string sOrdem;
    const auto fnEntrou = [&](char cQuem) {
        const std::lock_guard lock(mutexOrdem);
        sOrdem += cQuem;
    };
    std::shared_lock primeiro(trava);
    std::thread escritor([&] {
        const std::unique_lock lock(trava);
        fnEntrou('E');
    });
    const bool bFechou = EsperaAte([&] {
        const bool bEntrou = trava.try_lock_shared();
        if (bEntrou) trava.unlock_shared();
        return !bEntrou;
    });
    EXPECT_TRUE(bFechou) << "the writer that waits keeps no reader out";
    std::thread leitor([&] {
        const std::shared_lock lock(trava);
        fnEntrou('L');
    });
    for (int i = 0; i < 1000; ++i) std::this_thread::yield();  // time for a reader that does not wait
    primeiro.unlock();
    escritor.join();
    leitor.join();
    EXPECT_EQ(sOrdem, "EL");
}

// What the lock protects is plain memory: a hole in it shows as values that differ, and to a tool that
// watches the threads. The readers go on until the writers are done, but not for ever.
TEST(TravaLeitores, LeitoresSemPausaNaoDeixamOEscritorEsperando) {
    constexpr int k_iEscritores = 2;
    constexpr XVUInt64 k_uiGravacoes = 300;       // of each writer
    constexpr XVUInt64 k_uiLeituras = 1'000'000;  // of each reader, a thousand times what the writers need
    CXVTravaLeitores trava;
    std::array<XVUInt64, 64> aValores{};
    std::atomic<int> iFaltam = k_iEscritores;
    std::atomic<int> iDiferencas = 0;
    std::atomic<int> iDesistencias = 0;
    std::vector<std::thread> listaThreads;
    for (int i = 0; i < k_iLeitores; ++i)
        listaThreads.emplace_back([&] {
            for (XVUInt64 uiLeituras = 0; iFaltam > 0; ++uiLeituras) {
                if (uiLeituras == k_uiLeituras) {
                    ++iDesistencias;
                    return;
                }
                const std::shared_lock lock(trava);
                if (std::count(aValores.begin(), aValores.end(), aValores[0]) != 64) ++iDiferencas;
            }
        });
    for (int i = 0; i < k_iEscritores; ++i)
        listaThreads.emplace_back([&] {
            for (XVUInt64 uiGravacao = 0; uiGravacao < k_uiGravacoes; ++uiGravacao) {
                const std::unique_lock lock(trava);
                for (XVUInt64& uiValor : aValores) ++uiValor;
            }
            --iFaltam;
        });
    for (std::thread& rThread : listaThreads) rThread.join();
    EXPECT_EQ(iDiferencas, 0);
    EXPECT_EQ(iDesistencias, 0) << "readers that had all their reads before the writers had their turns";
    EXPECT_EQ(aValores[63], k_iEscritores * k_uiGravacoes);
}

}  // namespace
