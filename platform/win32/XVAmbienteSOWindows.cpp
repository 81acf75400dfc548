#include <windows.h>
// windows.h first: the two below use its types without including it.
#include <objbase.h>
#include <psapi.h>

#include <array>
#include <string>

#include "platform/XVAmbienteSO.h"
#include "platform/XVCaminho.h"
#include "platform/win32/XVCaminhoWindows.h"
#include "platform/win32/XVTextoWindows.h"

namespace XVAmbienteSO {

std::string GetNomeComputador() {
    std::array<char, MAX_COMPUTERNAME_LENGTH + 1> aNome{};
    DWORD ulTamanho = static_cast<DWORD>(aNome.size());
    return GetComputerNameA(aNome.data(), &ulTamanho) ? std::string(aNome.data(), ulTamanho) : std::string();
}

std::string GetNomeUsuario() {
    constexpr DWORD k_ulTamanhoMaximo = 257;  // characters, terminator included
    std::array<wchar_t, k_ulTamanhoMaximo> aNome{};
    DWORD ulTamanho = k_ulTamanhoMaximo;
    return GetUserNameW(aNome.data(), &ulTamanho) ? XVTextoWindows::ParaUtf8(aNome.data()) : std::string();
}

std::string GetCaminhoExecutavel() {
    constexpr std::size_t k_uiTamanhoMaximo = 32768;
    std::wstring sCaminho(MAX_PATH, L'\0');
    while (true) {
        const DWORD ulTamanho =
            GetModuleFileNameW(nullptr, sCaminho.data(), static_cast<DWORD>(sCaminho.size()));
        if (ulTamanho < sCaminho.size()) {
            return XVTextoWindows::ParaUtf8(std::wstring_view(sCaminho).substr(0, ulTamanho));
        }
        if (sCaminho.size() >= k_uiTamanhoMaximo) {
            return {};
        }
        sCaminho.resize(sCaminho.size() * 2);
    }
}

std::string GetDiretorioExecutavel() {
    const std::string sCaminho = GetCaminhoExecutavel();
    return sCaminho.empty() ? sCaminho
                            : XVCaminho::Separa(sCaminho, XVCaminhoWindows::k_pszSeparadores).sDiretorio;
}

XVUInt GetIdProcesso() {
    return GetCurrentProcessId();
}
// Handles are limited by memory alone.
std::size_t GetMaximoArquivosAbertos() {
    return 65536;
}
XVUInt GetIdThread() {
    return GetCurrentThreadId();
}

bool EhSessaoRemota() {
    return GetSystemMetrics(SM_REMOTESESSION) != 0;
}

SMemoriaMaquina GetMemoriaMaquina() {
    MEMORYSTATUSEX estado{};
    estado.dwLength = sizeof(estado);
    if (!GlobalMemoryStatusEx(&estado)) {
        return {};
    }
    return {estado.ullAvailPhys, estado.ullTotalPhys};
}

XVUInt64 GetMemoriaPrivadaProcesso() {
    PROCESS_MEMORY_COUNTERS_EX contadores{};
    contadores.cb = sizeof(contadores);
    if (!GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&contadores),
                              sizeof(contadores))) {
        return 0;
    }
    // Not every system that runs the program fills all counters.
    for (const SIZE_T uiBytes :
         {contadores.PrivateUsage, contadores.PagefileUsage, contadores.WorkingSetSize}) {
        if (uiBytes != 0) {
            return uiBytes;
        }
    }
    return 0;
}

std::string NovoGuid() {
    GUID guid{};
    std::array<wchar_t, 39> aTexto{};  // "{...}" and the terminator
    if (FAILED(CoCreateGuid(&guid)) ||
        StringFromGUID2(guid, aTexto.data(), static_cast<int>(aTexto.size())) == 0) {
        return {};
    }
    return XVTextoWindows::ParaUtf8(std::wstring_view(aTexto.data() + 1, 36));
}

std::optional<std::string> GetVariavelAmbiente(const char* pszNome) {
    std::wstring sNome;
    if (!XVTextoWindows::ParaLargo(pszNome, sNome)) {
        return std::nullopt;
    }
    std::wstring sValor(MAX_PATH, L'\0');
    // The variable may grow between two calls; an empty one has length 0 and no error.
    while (true) {
        SetLastError(ERROR_SUCCESS);
        const DWORD ulTamanho =
            GetEnvironmentVariableW(sNome.c_str(), sValor.data(), static_cast<DWORD>(sValor.size()));
        if (ulTamanho == 0 && GetLastError() != ERROR_SUCCESS) {
            return std::nullopt;
        }
        if (ulTamanho < sValor.size()) {
            return XVTextoWindows::ParaUtf8(std::wstring_view(sValor).substr(0, ulTamanho));
        }
        sValor.resize(ulTamanho);
    }
}

void* AlocaSaida(std::size_t uiTamanho) {
    return uiTamanho == 0 ? nullptr : CoTaskMemAlloc(uiTamanho);
}
void LiberaSaida(void* pBuffer) {
    CoTaskMemFree(pBuffer);
}

}  // namespace XVAmbienteSO
