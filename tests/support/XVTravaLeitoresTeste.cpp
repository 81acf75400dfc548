// Readers beside each other, writers alone, and a writer that waits goes before readers that come later.
#include <gtest/gtest.h>

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
    XVUInt64 uiProtegido = 0;  // plain memory: the thread sanitizer sees a lock that lets both in
    std::atomic<int> iDesistencias = 0;
    trava.lock_shared();
    std::thread escritor([&] {
        const std::unique_lock lock(trava);
        ++uiProtegido;
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
                EXPECT_EQ(uiProtegido, bDepois ? 1U : 0U);
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

}  // namespace
