#include "tests/harness/XVRelogioFalso.h"

using namespace std::chrono;

namespace {

SDataHora DeInstante(sys_time<milliseconds> instante) {
    const sys_days dia = floor<days>(instante);
    const year_month_day data(dia);
    const hh_mm_ss hora(floor<seconds>(instante - dia));
    SDataHora dataHora;
    dataHora.usAno = static_cast<XVUShort>(static_cast<int>(data.year()));
    dataHora.ucMes = static_cast<XVByte>(static_cast<unsigned>(data.month()));
    dataHora.ucDia = static_cast<XVByte>(static_cast<unsigned>(data.day()));
    dataHora.ucHora = static_cast<XVByte>(hora.hours().count());
    dataHora.ucMinuto = static_cast<XVByte>(hora.minutes().count());
    dataHora.ucSegundo = static_cast<XVByte>(hora.seconds().count());
    return dataHora;
}

}  // namespace

CXVRelogioFalso::CXVRelogioFalso() {
    SetUTC({2024, 3, 15, 12, 0, 0});
}

void CXVRelogioFalso::SetUTC(const SDataHora& rDataHora) {
    const std::lock_guard trava(m_mutex);
    m_instante = sys_days(year(rDataHora.usAno) / month(rDataHora.ucMes) / day(rDataHora.ucDia)) +
                 hours(rDataHora.ucHora) + minutes(rDataHora.ucMinuto) + seconds(rDataHora.ucSegundo);
}

void CXVRelogioFalso::SetTicks(XVUInt ulTicks) {
    const std::lock_guard trava(m_mutex);
    m_ulTicks = ulTicks;
}

void CXVRelogioFalso::Avanca(XVUInt64 uiMilissegundos) {
    const std::lock_guard trava(m_mutex);
    m_instante += milliseconds(uiMilissegundos);
    m_ulTicks += static_cast<XVUInt>(uiMilissegundos);
}

void CXVRelogioFalso::SetAoDormir(std::function<void(XVUInt64)> fnAoDormir) {
    const std::lock_guard trava(m_mutex);
    m_fnAoDormir = std::move(fnAoDormir);
}

XVUInt64 CXVRelogioFalso::GetQuantidadeDormidas() const {
    const std::lock_guard trava(m_mutex);
    return m_uiDormidas;
}

XVUInt64 CXVRelogioFalso::GetMilissegundosDormidos() const {
    const std::lock_guard trava(m_mutex);
    return m_uiDormidos;
}

SDataHora CXVRelogioFalso::AgoraLocal() {
    const std::lock_guard trava(m_mutex);
    return DeInstante(m_instante - hours(3));
}

SDataHora CXVRelogioFalso::AgoraUTC() {
    const std::lock_guard trava(m_mutex);
    return DeInstante(m_instante);
}

XVUInt CXVRelogioFalso::GetTicks() {
    const std::lock_guard trava(m_mutex);
    return m_ulTicks;
}

void CXVRelogioFalso::Dorme(XVUInt ulMilissegundos) {
    const bool bDono = std::this_thread::get_id() == m_dono;
    if (bDono) Avanca(ulMilissegundos);
    std::unique_lock trava(m_mutex);
    const XVUInt64 uiDormidas = ++m_uiDormidas;
    m_uiDormidos += ulMilissegundos;
    const std::function<void(XVUInt64)> fnAoDormir = m_fnAoDormir;
    trava.unlock();
    if (fnAoDormir) {
        fnAoDormir(uiDormidas);
    }
    if (bDono)
        std::this_thread::yield();
    else
        std::this_thread::sleep_for(milliseconds(ulMilissegundos));
}
