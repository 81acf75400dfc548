// The server program: run with a switch, and its processes as the system sees them.
#pragma once

#include <windows.h>

#include <tlhelp32.h>

#include <algorithm>
#include <filesystem>

#include "platform/XVAmbienteSO.h"
#include "tests/harness/XVExecucao.h"

namespace XVServidores {

// tests/com/<this program>, server/XVCR_Middleware.exe
inline std::string Programa() {
    const auto construcao = std::filesystem::path(XVAmbienteSO::GetDiretorioExecutavel()) / ".." / "..";
    return (construcao / "server" / "XVCR_Middleware.exe").lexically_normal().make_preferred().string();
}
// Runs it to its end; its exit code is a result code.
inline SExecucao Executa(const std::vector<std::string>& listaArgumentos = {}) {
    return XVExecuta(Programa(), listaArgumentos);
}

// The server processes that run.
inline std::vector<DWORD> Lista() {
    std::vector<DWORD> lista;
    const HANDLE hFoto = ::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W entrada{};
    entrada.dwSize = sizeof(entrada);
    for (BOOL bTem = ::Process32FirstW(hFoto, &entrada); bTem != FALSE;
         bTem = ::Process32NextW(hFoto, &entrada))
        if (::lstrcmpiW(entrada.szExeFile, L"XVCR_Middleware.exe") == 0)
            lista.push_back(entrada.th32ProcessID);
    ::CloseHandle(hFoto);
    return lista;
}
// Waits until exactly that many run.
inline bool Espera(std::size_t uiQuantidade) {
    for (int i = 0; i < 400 && Lista().size() != uiQuantidade; ++i) ::Sleep(50);
    return Lista().size() == uiQuantidade;
}
// All at once, before one that waits for another's end can take over from it.
inline void Mata() {
    std::vector<HANDLE> listaMortos;
    for (const DWORD ulId : Lista())
        if (const HANDLE hProcesso = ::OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, ulId);
            hProcesso != nullptr) {
            ::TerminateProcess(hProcesso, 98);
            listaMortos.push_back(hProcesso);
        }
    for (const HANDLE hProcesso : listaMortos) {
        ::WaitForSingleObject(hProcesso, 10000);
        ::CloseHandle(hProcesso);
    }
}
// In order, so that their stores are closed. One that is still starting does not hear the request, so it is
// made again. False: one does not end.
inline bool Encerra() {
    for (int i = 0; i < 100 && !Lista().empty(); ++i) {
        Executa({"/Stop"});
        ::Sleep(200);
    }
    return Lista().empty();
}
// Asks them to end as the system does: WM_CLOSE to the hidden window or, where there is no display for
// one, WM_QUIT to the thread that pumps.
inline void PedeFim() {
    if (const HWND hJanela = ::FindWindowW(L"XVCR_Middleware", nullptr); hJanela != nullptr) {
        ::PostMessageW(hJanela, WM_CLOSE, 0, 0);
        return;
    }
    const std::vector<DWORD> lista = Lista();
    const HANDLE hFoto = ::CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entrada{};
    entrada.dwSize = sizeof(entrada);
    for (BOOL bTem = ::Thread32First(hFoto, &entrada); bTem != FALSE; bTem = ::Thread32Next(hFoto, &entrada))
        if (std::find(lista.begin(), lista.end(), entrada.th32OwnerProcessID) != lista.end())
            ::PostThreadMessageW(entrada.th32ThreadID, WM_QUIT, 0, 0);
    ::CloseHandle(hFoto);
}

}  // namespace XVServidores
