#include "server/XVExclusividade.h"

#include <string>

#include "contract/XVCR_MiddlewareGuids.h"

namespace {

// The user's name is part of the mutex's name, because another user of the same session may run a server too.
std::wstring NomeMutex() {
    wchar_t szUsuario[257] = L"";
    DWORD ulTamanho = 257;
    ::GetUserNameW(szUsuario, &ulTamanho);
    std::wstring sNome = L"Local\\XVCR_Middleware_" XV_LARGO(XV_TEXTO_UUID(XV_UUID_CLASSE_MIDDLEWARE)) L"_";
    for (const wchar_t* p = szUsuario; *p != L'\0'; ++p) sNome += *p == L'\\' ? L'_' : *p;
    return sNome;
}

}  // namespace

CXVExclusividade::CXVExclusividade() : m_hMutex(::CreateMutexW(nullptr, FALSE, NomeMutex().c_str())) {}

CXVExclusividade::~CXVExclusividade() {
    if (m_bTomado) ::ReleaseMutex(m_hMutex);
    if (m_hMutex != nullptr) ::CloseHandle(m_hMutex);
}

bool CXVExclusividade::Toma(DWORD ulMilissegundos) {
    if (m_hMutex == nullptr) return false;
    const DWORD ulEspera = ::WaitForSingleObject(m_hMutex, ulMilissegundos);
    m_bTomado = ulEspera == WAIT_OBJECT_0 || ulEspera == WAIT_ABANDONED;
    return m_bTomado;
}
