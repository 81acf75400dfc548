#include <windows.h>

#include "platform/XVBibliotecaDinamica.h"
#include "platform/XVCaminho.h"
#include "platform/win32/XVTextoWindows.h"

CXVBibliotecaDinamica::CXVBibliotecaDinamica(const std::string& sNome) {
    std::wstring sLargo;
    if (XVCaminho::EhNomeSimples(sNome) && XVTextoWindows::ParaLargo(sNome, sLargo)) {
        m_hBiblioteca = LoadLibraryExW(sLargo.c_str(), nullptr,
                                       LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
    }
}

CXVBibliotecaDinamica::~CXVBibliotecaDinamica() {
    if (m_hBiblioteca != nullptr) {
        FreeLibrary(static_cast<HMODULE>(m_hBiblioteca));
    }
}

CXVBibliotecaDinamica::PFuncaoGenerica CXVBibliotecaDinamica::GetEndereco(const char* pszNome) const {
    return m_hBiblioteca == nullptr ? nullptr
                                    : reinterpret_cast<PFuncaoGenerica>(
                                          GetProcAddress(static_cast<HMODULE>(m_hBiblioteca), pszNome));
}
