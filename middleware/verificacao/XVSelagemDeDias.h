// Seals for days that are over, without a verification of the whole store.
//
// A day is sealed where its four files are sound by themselves and none of their blocks differs from an older
// seal; the seals of all other files stay as they are. What is written to meanwhile is left for the next
// time.
#pragma once

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "platform/XVTipos.h"

// Bytes that may still be read once somebody waits for the end.
inline constexpr XVUInt64 k_uiBytesDepoisDoPedido = 32U << 20;

// Days as yyyymmdd. bTermina, once true, ends it after that many bytes more, with what was sealed by then.
HRESULT XVSelaDias(const std::string& sDiretorio, const std::vector<XVUInt64>& rDias,
                   const std::atomic<bool>& bTermina);

// The same beside who goes on working. Thread rule: one thread; the work is done when Espera returns.
class CXVSelagemDeDias {
  public:
    CXVSelagemDeDias() = default;
    ~CXVSelagemDeDias() { Espera(); }
    CXVSelagemDeDias(const CXVSelagemDeDias&) = delete;
    CXVSelagemDeDias& operator=(const CXVSelagemDeDias&) = delete;

    // Nothing where no thread is to be had: the next verification with seals does the same.
    void Comeca(std::string sDiretorio, std::vector<XVUInt64> listaDias) noexcept;
    void Espera();

  private:
    std::atomic<bool> m_bTermina = false;
    std::thread m_fio;
};
