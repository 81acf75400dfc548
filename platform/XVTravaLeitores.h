// A lock that many read under and one writes under, where a waiting writer goes before every reader that
// comes after it: readers in a loop, however many, hold a writer up only for the reads that are under way.
//
// Meets the requirements of std::unique_lock and std::shared_lock. Not recursive, in no combination.
// Thread rule: any thread.
#pragma once

#include <atomic>
#include <mutex>
#include <shared_mutex>

class CXVTravaLeitores {
  public:
    void lock() {
        m_ulEscritores.fetch_add(1, std::memory_order_relaxed);
        m_mutexFila.lock();
        m_Lock.lock();
    }
    bool try_lock() {
        if (!m_mutexFila.try_lock()) return false;
        if (!m_Lock.try_lock()) {
            m_mutexFila.unlock();
            return false;
        }
        m_ulEscritores.fetch_add(1, std::memory_order_relaxed);
        return true;
    }
    void unlock() {
        m_Lock.unlock();
        m_ulEscritores.fetch_sub(1, std::memory_order_relaxed);
        m_mutexFila.unlock();
    }

    void lock_shared() {
        // The number only decides who goes first; the lock proper keeps readers and writers apart.
        if (m_ulEscritores.load(std::memory_order_relaxed) != 0) [[unlikely]] {
            const std::lock_guard fila(m_mutexFila);  // behind the writer, and no longer than that
        }
        m_Lock.lock_shared();
    }
    bool try_lock_shared() {
        return m_ulEscritores.load(std::memory_order_relaxed) == 0 && m_Lock.try_lock_shared();
    }
    void unlock_shared() { m_Lock.unlock_shared(); }

  private:
    std::mutex m_mutexFila;  // held by the writer that writes or is the next to
    std::shared_mutex m_Lock;
    std::atomic<unsigned> m_ulEscritores = 0;  // writers that write or wait
};
