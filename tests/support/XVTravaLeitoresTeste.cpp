// A writer that waits goes before readers that come later. That readers work beside each other and writers
// alone is seen wherever a file is used.
#include <gtest/gtest.h>

#include <atomic>
#include <shared_mutex>
#include <thread>

#include "platform/XVTipos.h"
#include "platform/XVTravaLeitores.h"

namespace {

// This thread reads, another comes again and again beside it: once a writer waits it waits behind the writer,
// which goes in when this thread has gone. Without priority it never stops coming.
TEST(TravaLeitores, EscritorQueEsperaVaiAntesDosLeitoresSeguintes) {
    constexpr XVUInt64 k_uiMaximo = 2'000'000;  // the reader gets here only if nothing stops it
    CXVTravaLeitores trava;
    std::atomic<XVUInt64> uiVezes = 0;
    XVUInt64 uiProtegido = 0;  // plain memory: the thread sanitizer sees a lock that lets both in
    trava.lock_shared();
    std::thread escritor([&] {
        const std::unique_lock lock(trava);
        ++uiProtegido;
    });
    std::thread leitor([&] {
        for (bool bDepois = false; !bDepois && uiVezes < k_uiMaximo; ++uiVezes) {
            const std::shared_lock lock(trava);
            bDepois = uiProtegido != 0;
        }
    });
    XVUInt64 uiTentativas = 0;  // until the writer is there, and not for ever
    for (; uiTentativas < k_uiMaximo && trava.try_lock_shared(); ++uiTentativas) {
        trava.unlock_shared();
        std::this_thread::yield();
    }
    EXPECT_LT(uiTentativas, k_uiMaximo) << "whoever does not wait passes the writer";
    // The reader has stopped when nothing more happens while this thread gives way again and again.
    for (XVUInt64 uiVistas = 0, uiParado = 0; uiParado < 20000 && uiVezes < k_uiMaximo; ++uiParado) {
        if (uiVistas != uiVezes) uiParado = 0;
        uiVistas = uiVezes;
        std::this_thread::yield();
    }
    trava.unlock_shared();
    escritor.join();
    leitor.join();
    EXPECT_LT(uiVezes, k_uiMaximo) << "the writer that waits keeps no reader out";
}

}  // namespace
