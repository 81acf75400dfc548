// A clock that stands still until it is told to move. Dorme of the thread that made it moves it and
// returns at once. Any other thread sleeps for real and moves nothing: it waits for its fellows, who must get
// the time to go on before its attempts are used up, and whose date-times must not change meanwhile.
// Thread rule: any thread.
#pragma once

#include <chrono>
#include <functional>
#include <mutex>
#include <thread>

#include "platform/XVRelogio.h"

class CXVRelogioFalso final : public IXVRelogio {
  public:
    // 2024-03-15 12:00:00 UTC, local time three hours behind.
    CXVRelogioFalso();

    void SetUTC(const SDataHora& rDataHora);
    void SetTicks(XVUInt ulTicks);
    void Avanca(XVUInt64 uiMilissegundos);
    // Runs inside every Dorme, with the number of sleeps so far (1 is the first).
    void SetAoDormir(std::function<void(XVUInt64 uiDormidas)> fnAoDormir);

    XVUInt64 GetQuantidadeDormidas() const;
    XVUInt64 GetMilissegundosDormidos() const;

    SDataHora AgoraLocal() override;
    SDataHora AgoraUTC() override;
    XVUInt GetTicks() override;
    void Dorme(XVUInt ulMilissegundos) override;

  private:
    using TInstante = std::chrono::sys_time<std::chrono::milliseconds>;

    const std::thread::id m_dono = std::this_thread::get_id();
    mutable std::mutex m_mutex;
    TInstante m_instante;
    XVUInt m_ulTicks = 1000;
    XVUInt64 m_uiDormidas = 0;
    XVUInt64 m_uiDormidos = 0;
    std::function<void(XVUInt64)> m_fnAoDormir;
};
