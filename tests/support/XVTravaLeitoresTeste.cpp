// A writer that waits goes before readers that come later. That readers work beside each other and writers
// alone is seen wherever a file is used.
#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <shared_mutex>
#include <thread>

#include "platform/XVTravaLeitores.h"

namespace {

// The turn, and how many have it or had it, and how many have come while another one had it.
class CXVFilaVista {
  public:
    void lock() {
        if (!m_mutex.try_lock()) {
            ++s_uiAtras;
            m_mutex.lock();
        }
        ++s_uiVezes;
    }
    void unlock() { m_mutex.unlock(); }

    static inline std::atomic<unsigned> s_uiVezes = 0;
    static inline std::atomic<unsigned> s_uiAtras = 0;

  private:
    std::mutex m_mutex;
};

// This thread reads, a writer waits for it, and a reader comes that waits behind the writer: it goes in when
// the writer has been there.
TEST(TravaLeitores, EscritorQueEsperaVaiAntesDosLeitoresSeguintes) {
    CXVFilaVista::s_uiVezes = CXVFilaVista::s_uiAtras = 0;
    TXVTravaLeitores<CXVFilaVista> trava;
    bool bEscrito = false;  // plain memory: the thread sanitizer sees a lock that lets both in
    std::atomic<bool> bLido = false;
    trava.lock_shared();
    std::thread escritor([&] {
        const std::unique_lock lock(trava);
        bEscrito = true;
    });
    while (CXVFilaVista::s_uiVezes == 0) std::this_thread::yield();
    if (trava.try_lock_shared()) {
        ADD_FAILURE() << "whoever does not wait passes the writer";
        trava.unlock_shared();
    }
    std::thread leitor([&] {
        const std::shared_lock lock(trava);
        EXPECT_TRUE(bEscrito) << "the writer that waits keeps no reader out";
        bLido = true;
    });
    while (CXVFilaVista::s_uiAtras == 0 && !bLido) std::this_thread::yield();
    trava.unlock_shared();
    escritor.join();
    leitor.join();
}

}  // namespace
