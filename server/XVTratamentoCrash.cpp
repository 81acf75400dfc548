#include "server/XVTratamentoCrash.h"

#include <windows.h>

#include <dbghelp.h>

#include <atomic>
#include <cstdlib>
#include <exception>
#include <iterator>

#include "platform/XVBibliotecaDinamica.h"
#include "platform/XVPlataforma.h"
#include "server/XVRelatorioCrash.h"

namespace {

using PGravaMinidump = decltype(&::MiniDumpWriteDump);

constexpr DWORD k_ulExcecaoTermino = 0xE0585641;  // a std::terminate turned into an exception record

// Prepared at installation: nothing is loaded or allocated during a crash.
struct SEstado {
    wchar_t szPrefixo[MAX_PATH * 2] = L"";  // directory and file name up to the date
    PGravaMinidump pGravaMinidump = nullptr;
    const void* pInicioModulo = nullptr;
    const void* pFimModulo = nullptr;
    std::atomic<DWORD> ulThreadTratando = 0;  // 0: none
};
SEstado g_estado;

void MontaCaminho(const wchar_t* pszExtensao, wchar_t (&szCaminho)[MAX_PATH * 3]) {
    SYSTEMTIME agora;
    ::GetLocalTime(&agora);
    // wsprintfW writes at most 1024 characters, and what it writes here is shorter than the field.
    ::wsprintfW(szCaminho, L"%s_%04u%02u%02u_%02u%02u%02u_%lu.%s", g_estado.szPrefixo, agora.wYear,
                agora.wMonth, agora.wDay, agora.wHour, agora.wMinute, agora.wSecond, ::GetCurrentProcessId(),
                pszExtensao);
}

HANDLE CriaArquivo(const wchar_t* pszExtensao, wchar_t (&szCaminho)[MAX_PATH * 3]) {
    MontaCaminho(pszExtensao, szCaminho);
    return ::CreateFileW(szCaminho, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

bool GravaMinidump(EXCEPTION_POINTERS* pExcecao) {
    if (g_estado.pGravaMinidump == nullptr) return false;
    wchar_t szCaminho[MAX_PATH * 3];
    const HANDLE hArquivo = CriaArquivo(L"dmp", szCaminho);
    if (hArquivo == INVALID_HANDLE_VALUE) return false;
    MINIDUMP_EXCEPTION_INFORMATION informacao{::GetCurrentThreadId(), pExcecao, FALSE};
    const bool bGravou = g_estado.pGravaMinidump(::GetCurrentProcess(), ::GetCurrentProcessId(), hArquivo,
                                                 MiniDumpNormal, &informacao, nullptr, nullptr) != FALSE;
    ::CloseHandle(hArquivo);
    if (!bGravou) ::DeleteFileW(szCaminho);
    return bGravou;
}

void GravaRelatorio(EXCEPTION_POINTERS* pExcecao) {
    wchar_t szCaminho[MAX_PATH * 3];
    const HANDLE hArquivo = CriaArquivo(L"txt", szCaminho);
    if (hArquivo == INVALID_HANDLE_VALUE) return;
    XVGravaRelatorioCrash(hArquivo, *pExcecao);
    ::CloseHandle(hArquivo);
}

// The first thread to crash reports; others wait for the end of the process. A fault of the report itself
// (a broken stack, say) ends the process at once: waiting for itself it would never end.
[[noreturn]] void Encerra(EXCEPTION_POINTERS* pExcecao) {
    DWORD ulTratando = 0;
    if (g_estado.ulThreadTratando.compare_exchange_strong(ulTratando, ::GetCurrentThreadId())) {
        if (!GravaMinidump(pExcecao)) GravaRelatorio(pExcecao);
    } else if (ulTratando != ::GetCurrentThreadId()) {
        for (;;) ::Sleep(INFINITE);
    }
    ::TerminateProcess(::GetCurrentProcess(), pExcecao->ExceptionRecord->ExceptionCode);
    std::abort();
}

bool EhFatal(DWORD ulCodigo) {
    switch (ulCodigo) {
        case EXCEPTION_ACCESS_VIOLATION:
        case EXCEPTION_ARRAY_BOUNDS_EXCEEDED:
        case EXCEPTION_DATATYPE_MISALIGNMENT:
        case EXCEPTION_ILLEGAL_INSTRUCTION:
        case EXCEPTION_IN_PAGE_ERROR:
        case EXCEPTION_INT_DIVIDE_BY_ZERO:
        case EXCEPTION_PRIV_INSTRUCTION:
        case EXCEPTION_STACK_OVERFLOW:
            return true;
        default:
            return false;
    }
}

LONG CALLBACK TrataNaoTratada(EXCEPTION_POINTERS* pExcecao) {
    Encerra(pExcecao);
}

// The runtime of remote calls turns a fault inside a method into an answer and goes on. A fault in this
// program's own code is never handled by it, so it is taken before that.
LONG CALLBACK TrataPrimeiraChance(EXCEPTION_POINTERS* pExcecao) {
    const void* pEndereco = pExcecao->ExceptionRecord->ExceptionAddress;
    if (EhFatal(pExcecao->ExceptionRecord->ExceptionCode) && pEndereco >= g_estado.pInicioModulo &&
        pEndereco < g_estado.pFimModulo)
        Encerra(pExcecao);
    return EXCEPTION_CONTINUE_SEARCH;
}

[[noreturn]] void TrataTermino() {
    CONTEXT contexto{};
    ::RtlCaptureContext(&contexto);
    EXCEPTION_RECORD registro{};
    registro.ExceptionCode = k_ulExcecaoTermino;
    registro.ExceptionFlags = EXCEPTION_NONCONTINUABLE;
    registro.ExceptionAddress = reinterpret_cast<void*>(contexto.Rip);
    EXCEPTION_POINTERS excecao{&registro, &contexto};
    Encerra(&excecao);
}

void LocalizaModulo() {
    const auto* pBase = reinterpret_cast<const BYTE*>(::GetModuleHandleW(nullptr));
    const auto* pDos = reinterpret_cast<const IMAGE_DOS_HEADER*>(pBase);
    const auto* pNt = reinterpret_cast<const IMAGE_NT_HEADERS*>(pBase + pDos->e_lfanew);
    g_estado.pInicioModulo = pBase;
    g_estado.pFimModulo = pBase + pNt->OptionalHeader.SizeOfImage;
}

void MontaPrefixo(const std::wstring& sDiretorio) {
    std::wstring sPrefixo = sDiretorio;
    if (sPrefixo.empty()) {
        wchar_t szPrograma[MAX_PATH];
        const DWORD ulTamanho = ::GetModuleFileNameW(nullptr, szPrograma, MAX_PATH);
        sPrefixo.assign(szPrograma, ulTamanho);
        sPrefixo.resize(sPrefixo.find_last_of(L"\\/") + 1);
    } else if (sPrefixo.back() != L'\\' && sPrefixo.back() != L'/') {
        sPrefixo += L'\\';
    }
    sPrefixo += L"XVCR_Middleware";
    if (sPrefixo.size() < std::size(g_estado.szPrefixo)) ::lstrcpyW(g_estado.szPrefixo, sPrefixo.c_str());
}

}  // namespace

namespace XVTratamentoCrash {

bool EstaHabilitado() {
    return XVPlataforma::Registry()
               .LeNumero(k_sChaveRegistrySuite, "DesabilitaTratamentoAppCrash")
               .value_or(0) == 0;
}

void Instala(const std::wstring& sDiretorio, bool bComMinidump) {
    LocalizaModulo();
    MontaPrefixo(sDiretorio);
    if (bComMinidump) {
        static const CXVBibliotecaDinamica s_biblioteca("dbghelp.dll");
        g_estado.pGravaMinidump = s_biblioteca.GetFuncao<PGravaMinidump>("MiniDumpWriteDump");
    }
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    ::SetUnhandledExceptionFilter(&TrataNaoTratada);
    ::AddVectoredExceptionHandler(1, &TrataPrimeiraChance);
    std::set_terminate(&TrataTermino);
}

}  // namespace XVTratamentoCrash
