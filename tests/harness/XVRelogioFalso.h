// A clock that stands still until it is told to move. Dorme of the thread that made it moves it and returns
// at once. Any other thread sleeps for real and moves nothing: it waits for its fellows, who must get the
// time to go on before its attempts are used up, and whose date-times must not change meanwhile. Thread rule:
// any thread.
#pragma once

#include <chrono>
#include <functional>
#include <mutex>
#include <thread>

#include "platform/XVRelogio.h"

class CXVRelogioFalso final : public IXVRelogio {
  public:
    // 2024-03-15 12:00:00 UTC, local time three hours behind.
    CXVRelogioFalso() { SetUTC({2024, 3, 15, 12, 0, 0}); }

    void SetUTC(const SDataHora& r) {
        const std::lock_guard trava(m_mutex);
        m_instante = std::chrono::sys_days(std::chrono::year(r.usAno) / r.ucMes / r.ucDia) +
                     std::chrono::hours(r.ucHora) + std::chrono::minutes(r.ucMinuto) +
                     std::chrono::seconds(r.ucSegundo);
    }
    void SetTicks(XVUInt ulTicks) {
        const std::lock_guard trava(m_mutex);
        m_ulTicks = ulTicks;
    }
    void Avanca(XVUInt64 uiMilissegundos) {
        const std::lock_guard trava(m_mutex);
        m_instante += std::chrono::milliseconds(uiMilissegundos);
        m_ulTicks += static_cast<XVUInt>(uiMilissegundos);
    }
    // Runs inside every Dorme, with the number of sleeps so far (1 is the first).
    void SetAoDormir(std::function<void(XVUInt64 uiDormidas)> fnAoDormir) {
        const std::lock_guard trava(m_mutex);
        m_fnAoDormir = std::move(fnAoDormir);
    }

    XVUInt64 GetQuantidadeDormidas() const {
        const std::lock_guard trava(m_mutex);
        return m_uiDormidas;
    }
    XVUInt64 GetMilissegundosDormidos() const {
        const std::lock_guard trava(m_mutex);
        return m_uiDormidos;
    }

    SDataHora AgoraLocal() override { return Em(-std::chrono::hours(3)); }
    SDataHora AgoraUTC() override { return Em(std::chrono::hours(0)); }
    XVUInt GetTicks() override {
        const std::lock_guard trava(m_mutex);
        return m_ulTicks;
    }
    void Dorme(XVUInt ulMilissegundos) override {
        const bool bDono = std::this_thread::get_id() == m_dono;
        if (bDono) Avanca(ulMilissegundos);
        std::unique_lock trava(m_mutex);
        const XVUInt64 uiDormidas = ++m_uiDormidas;
        m_uiDormidos += ulMilissegundos;
        const std::function<void(XVUInt64)> fnAoDormir = m_fnAoDormir;
        trava.unlock();
        if (fnAoDormir) fnAoDormir(uiDormidas);
        if (bDono)
            std::this_thread::yield();
        else
            std::this_thread::sleep_for(std::chrono::milliseconds(ulMilissegundos));
    }

  private:
    using TInstante = std::chrono::sys_time<std::chrono::milliseconds>;

    SDataHora Em(std::chrono::hours diferenca) const {
        const std::lock_guard trava(m_mutex);
        const TInstante instante = m_instante + diferenca;
        const auto dia = std::chrono::floor<std::chrono::days>(instante);
        const std::chrono::year_month_day data(dia);
        const std::chrono::hh_mm_ss hora(std::chrono::floor<std::chrono::seconds>(instante - dia));
        return {static_cast<XVUShort>(static_cast<int>(data.year())),
                static_cast<XVByte>(static_cast<unsigned>(data.month())),
                static_cast<XVByte>(static_cast<unsigned>(data.day())),
                static_cast<XVByte>(hora.hours().count()),
                static_cast<XVByte>(hora.minutes().count()),
                static_cast<XVByte>(hora.seconds().count())};
    }

    const std::thread::id m_dono = std::this_thread::get_id();
    mutable std::mutex m_mutex;
    TInstante m_instante;
    XVUInt m_ulTicks = 1000;
    XVUInt64 m_uiDormidas = 0;
    XVUInt64 m_uiDormidos = 0;
    std::function<void(XVUInt64)> m_fnAoDormir;
};
