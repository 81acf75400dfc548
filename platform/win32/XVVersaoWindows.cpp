// Version resources of programs and libraries.
#include <windows.h>

#include <string>
#include <vector>

#include "platform/XVAmbienteSO.h"
#include "platform/win32/XVTextoWindows.h"

namespace {

std::string LeVersao(const std::wstring& sCaminho) {
    DWORD ulIgnorado = 0;
    const DWORD ulTamanho = GetFileVersionInfoSizeW(sCaminho.c_str(), &ulIgnorado);
    if (ulTamanho == 0) {
        return {};
    }
    std::vector<std::byte> aRecurso(ulTamanho);
    void* pFixo = nullptr;
    UINT uiTamanhoFixo = 0;
    if (!GetFileVersionInfoW(sCaminho.c_str(), 0, ulTamanho, aRecurso.data()) ||
        !VerQueryValueW(aRecurso.data(), L"\\", &pFixo, &uiTamanhoFixo) ||
        uiTamanhoFixo < sizeof(VS_FIXEDFILEINFO)) {
        return {};
    }
    const VS_FIXEDFILEINFO& rFixo = *static_cast<const VS_FIXEDFILEINFO*>(pFixo);
    return std::to_string(HIWORD(rFixo.dwFileVersionMS)) + '.' +
           std::to_string(LOWORD(rFixo.dwFileVersionMS)) + '.' +
           std::to_string(HIWORD(rFixo.dwFileVersionLS)) + '.' +
           std::to_string(LOWORD(rFixo.dwFileVersionLS));
}

}  // namespace

std::string XVAmbienteSO::GetVersaoExecutavel() {
    std::wstring sCaminho;
    if (XVTextoWindows::ParaLargo(GetCaminhoExecutavel(), sCaminho)) {
        std::string sVersao = LeVersao(sCaminho);
        if (!sVersao.empty()) {
            return sVersao;
        }
    }
    return XV_VERSAO_PROJETO;  // a program built without the resource
}

std::string XVAmbienteSO::GetVersaoSistema() {
    std::wstring sDiretorio(MAX_PATH, L'\0');
    const UINT uiTamanho = GetSystemDirectoryW(sDiretorio.data(), static_cast<UINT>(sDiretorio.size()));
    if (uiTamanho == 0 || uiTamanho >= sDiretorio.size()) {
        return {};
    }
    sDiretorio.resize(uiTamanho);
    return LeVersao(sDiretorio + L"\\kernel32.dll");
}
