// A lock that many read under and one writes under, where a waiting writer goes before every reader that
// comes after it: readers in a loop, however many, hold a writer up only for the reads that are under way.
// Where nobody writes, a reader pays two additions and no call: a reading takes several of these locks.
//
// For std::unique_lock and std::shared_lock; a writer always waits. Not recursive, in no combination. Lives
// longer than every call of it, the unlocking ones included. Thread rule: any thread.
// Limit: 4,294,967,295 readers and as many writers at one time.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <shared_mutex>

#include "platform/XVTipos.h"

// TFila: the mutex of the turn; a test has one that tells who waits for it.
template <class TFila = std::mutex>
class TXVTravaLeitores {
  public:
    void lock() {
        m_uiEstado.fetch_add(k_uiEscritor, std::memory_order_relaxed);
        m_mutexFila.lock();
        EsperaLeitores();
    }
    void unlock() {
        m_uiEstado.fetch_sub(k_uiEscritor, std::memory_order_release);
        m_mutexFila.unlock();
    }

    void lock_shared() {
        if (m_uiEstado.fetch_add(1, std::memory_order_acquire) >= k_uiEscritor) [[unlikely]]
            EntraAtrasDoEscritor();
    }
    bool try_lock_shared() {
        if (m_uiEstado.fetch_add(1, std::memory_order_acquire) < k_uiEscritor) return true;
        unlock_shared();
        return false;
    }
    void unlock_shared() {
        const XVUInt64 uiAntes = m_uiEstado.fetch_sub(1, std::memory_order_release);
        if (uiAntes > k_uiEscritor && (uiAntes & k_uiLeitores) == 1) [[unlikely]]
            AcordaEscritor();
    }

  private:
    static constexpr XVUInt64 k_uiEscritor = XVUInt64{1} << 32;
    static constexpr XVUInt64 k_uiLeitores = k_uiEscritor - 1;

    bool TemLeitores() const { return (m_uiEstado.load(std::memory_order_acquire) & k_uiLeitores) != 0; }

    // The writer's turn is held.
    void EsperaLeitores() {
        if (!TemLeitores()) return;
        std::unique_lock lock(m_mutexEspera);
        m_semLeitores.wait(lock, [this] { return !TemLeitores(); });
    }
    void AcordaEscritor() {
        const std::lock_guard lock(m_mutexEspera);
        m_semLeitores.notify_one();
    }
    // Behind the writer that is there, and no longer than that: whoever has the turn keeps writers out, and
    // what is counted meanwhile they see.
    void EntraAtrasDoEscritor() {
        unlock_shared();
        const std::lock_guard fila(m_mutexFila);
        m_uiEstado.fetch_add(1, std::memory_order_acquire);
    }

    // Readers that read, in the low half, and writers that write or wait. A reader that finds a writer there
    // is counted until it has turned back.
    std::atomic<XVUInt64> m_uiEstado = 0;
    TFila m_mutexFila;  // the turn of the writer that writes or is the next to
    std::mutex m_mutexEspera;
    std::condition_variable m_semLeitores;
};

using CXVTravaLeitores = TXVTravaLeitores<>;
