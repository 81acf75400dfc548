#include <windows.h>

#include "platform/XVAmbienteSO.h"
#include "platform/XVBibliotecaDinamica.h"
#include "platform/XVCaminho.h"
#include "platform/win32/XVCaminhoWindows.h"
#include "platform/win32/XVTextoWindows.h"

namespace {

// The loader answers "module not found" for a library that lacks another one as for one that is absent.
std::string MotivoSePresente(const std::string& sNome, DWORD ulErro) {
    const std::string sCaminho = XVCaminho::Junta(XVAmbienteSO::GetDiretorioExecutavel(), sNome, '\\',
                                                  XVCaminhoWindows::k_pszSeparadores);
    std::wstring sLargo;
    if (!XVCaminhoWindows::Converte(sCaminho, sLargo).Ok() ||
        GetFileAttributesW(sLargo.c_str()) == INVALID_FILE_ATTRIBUTES) {
        return {};
    }
    return "erro " + std::to_string(ulErro) + " do sistema";
}

}  // namespace

CXVBibliotecaDinamica::CXVBibliotecaDinamica(const std::string& sNome) {
    std::wstring sLargo;
    if (XVCaminho::EhNomeSimples(sNome) && XVTextoWindows::ParaLargo(sNome, sLargo)) {
        m_hBiblioteca = LoadLibraryExW(sLargo.c_str(), nullptr,
                                       LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
        if (m_hBiblioteca == nullptr) {
            m_sMotivoFalha = MotivoSePresente(sNome, GetLastError());
        }
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
