// Readers beside each other, writers alone, and a writer that waits goes before readers that come later.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <shared_mutex>
#include <thread>
#include <vector>

#include "platform/XVTipos.h"
#include "platform/XVTravaLeitores.h"

namespace {

constexpr int k_iLeitores = 4;

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

// One reader holds the lock, others come again and again beside it: once the writer waits they wait behind
// it, and with the first reader gone the writer is the next. Without priority they never stop coming.
TEST(TravaLeitores, EscritorQueEsperaVaiAntesDosLeitoresSeguintes) {
    constexpr XVUInt64 k_uiMaximo = 2'000'000;  // of each reader: it gets here only if nothing stops it
    CXVTravaLeitores trava;
    std::atomic<bool> bGravou = false;
    std::atomic<XVUInt64> uiPassaram = 0;
    std::atomic<int> iDesistencias = 0;
    trava.lock_shared();
    std::thread escritor([&] {
        const std::unique_lock lock(trava);
        bGravou = true;
    });
    XVUInt64 uiTentativas = 0;  // until the writer is there, and not for ever
    for (; uiTentativas < k_uiMaximo && trava.try_lock_shared(); ++uiTentativas) {
        trava.unlock_shared();
        std::this_thread::yield();
    }
    EXPECT_LT(uiTentativas, k_uiMaximo) << "whoever does not wait passes the writer";
    std::vector<std::thread> listaLeitores;
    for (int i = 0; i < k_iLeitores; ++i)
        listaLeitores.emplace_back([&] {
            XVUInt64 uiVezes = 0;
            for (bool bDepois = false; !bDepois && uiVezes < k_uiMaximo; ++uiVezes, ++uiPassaram) {
                const std::shared_lock lock(trava);
                bDepois = bGravou;
            }
            if (uiVezes == k_uiMaximo) ++iDesistencias;
        });
    // They have stopped when nothing more happens while this thread gives way again and again.
    for (XVUInt64 uiVistas = 1, uiParado = 0; uiParado < 1000 && iDesistencias == 0; ++uiParado) {
        if (uiVistas != uiPassaram) uiParado = 0;
        uiVistas = uiPassaram;
        for (int i = 0; i < 20; ++i) std::this_thread::yield();
    }
    trava.unlock_shared();
    escritor.join();
    for (std::thread& rThread : listaLeitores) rThread.join();
    EXPECT_EQ(iDesistencias, 0) << "the writer that waits keeps no reader out";
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
