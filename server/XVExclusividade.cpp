#include "server/XVExclusividade.h"

#include <atomic>
#include <string>

#include "contract/XVCR_MiddlewareGuids.h"
#include "server/XVTemposFim.h"

namespace {

constexpr DWORD k_ulEntreOlhadas = 50;

std::atomic<HANDLE> g_hTerminandoDoProcesso = nullptr;  // of the mark that this process holds

// The user's name is part of the names, because another user of the same session may run a server too.
std::wstring Nome(const wchar_t* pszObjeto) {
    wchar_t szUsuario[257] = L"";
    DWORD ulTamanho = 257;
    ::GetUserNameW(szUsuario, &ulTamanho);
    std::wstring sNome = L"Local\\XVCR_Middleware_" XV_LARGO(XV_TEXTO_UUID(XV_UUID_CLASSE_MIDDLEWARE)) L"_";
    for (const wchar_t* p = szUsuario; *p != L'\0'; ++p) sNome += *p == L'\\' ? L'_' : *p;
    return sNome + pszObjeto;
}

}  // namespace

CXVExclusividade::CXVExclusividade()
    : m_hMutex(::CreateMutexW(nullptr, FALSE, Nome(L"").c_str())),
      m_hTerminando(::CreateEventW(nullptr, TRUE, FALSE, Nome(L"_terminando").c_str())) {}

CXVExclusividade::~CXVExclusividade() {
    if (m_bTomado) {
        g_hTerminandoDoProcesso = nullptr;
        ::ReleaseMutex(m_hMutex);
    }
    if (m_hMutex != nullptr) ::CloseHandle(m_hMutex);
    if (m_hTerminando != nullptr) ::CloseHandle(m_hTerminando);
}

bool CXVExclusividade::EstaTerminando() const {
    return m_hTerminando != nullptr && ::WaitForSingleObject(m_hTerminando, 0) == WAIT_OBJECT_0;
}

bool CXVExclusividade::Toma(DWORD ulSeAtende, HANDLE hDesiste) {
    if (m_hMutex == nullptr) return false;
    const ULONGLONG uiInicio = ::GetTickCount64();
    for (;;) {
        if (hDesiste != nullptr && ::WaitForSingleObject(hDesiste, 0) == WAIT_OBJECT_0) return false;
        const DWORD ulEspera = ::WaitForSingleObject(m_hMutex, k_ulEntreOlhadas);
        m_bTomado = ulEspera == WAIT_OBJECT_0 || ulEspera == WAIT_ABANDONED;
        if (m_bTomado) {
            // The event outlives the server that set it when the next one already waits.
            AnunciaFim(false);
            g_hTerminandoDoProcesso = m_hTerminando;
        }
        if (m_bTomado || ulEspera != WAIT_TIMEOUT) return m_bTomado;
        if (::GetTickCount64() - uiInicio >= (EstaTerminando() ? k_ulEsperaFimDoAnterior : ulSeAtende))
            return false;
    }
}

void CXVExclusividade::AnunciaFim(bool bTermina) {
    if (m_hTerminando != nullptr) bTermina ? ::SetEvent(m_hTerminando) : ::ResetEvent(m_hTerminando);
}

void CXVExclusividade::AnunciaFimDoProcesso() {
    if (const HANDLE hTerminando = g_hTerminandoDoProcesso.load(); hTerminando != nullptr)
        ::SetEvent(hTerminando);
}
