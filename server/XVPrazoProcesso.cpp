#include "server/XVPrazoProcesso.h"

#include <new>

CXVPrazoProcesso::CXVPrazoProcesso(DWORD ulTempo)
    : m_ulTempo(ulTempo), m_hCumprido(::CreateEventW(nullptr, TRUE, FALSE, nullptr)), m_hThread(nullptr) {
    if (m_hCumprido != nullptr) m_hThread = ::CreateThread(nullptr, 0, Vigia, this, 0, nullptr);
}

CXVPrazoProcesso::~CXVPrazoProcesso() {
    if (m_hThread != nullptr) {
        ::SetEvent(m_hCumprido);
        ::WaitForSingleObject(m_hThread, INFINITE);
        ::CloseHandle(m_hThread);
    }
    if (m_hCumprido != nullptr) ::CloseHandle(m_hCumprido);
}

DWORD CXVPrazoProcesso::Vigia(void* pPrazo) {
    const auto& rPrazo = *static_cast<const CXVPrazoProcesso*>(pPrazo);
    if (::WaitForSingleObject(rPrazo.m_hCumprido, rPrazo.m_ulTempo) == WAIT_TIMEOUT)
        ::TerminateProcess(::GetCurrentProcess(), S_OK);
    return 0;
}

void CXVPrazoProcesso::LimitaFim(DWORD ulTempo) {
    // Never destroyed: the time is for everything that is still to be destroyed as well.
    static_cast<void>(new (std::nothrow) CXVPrazoProcesso(ulTempo));
}
