#include "server/XVTratamentoCrash.h"

#include <windows.h>

#include <dbghelp.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iterator>
#include <string>

#include "platform/XVBibliotecaDinamica.h"
#include "platform/XVChamadaVigiada.h"
#include "platform/XVDetencao.h"
#include "platform/XVPlataforma.h"
#include "platform/win32/XVTextoWindows.h"
#include "server/XVExclusividade.h"
#include "server/XVPilhaThreads.h"
#include "server/XVRelatorioCrash.h"
#include "server/XVTemposFim.h"
#include "support/trace/XVProfiler.h"

namespace {

using PGravaMinidump = decltype(&::MiniDumpWriteDump);

// An end that is no exception of the system's, turned into an exception record.
constexpr DWORD k_ulExcecaoTermino = 0xE0585641;  // std::terminate
constexpr DWORD k_ulExcecaoAborto = 0xE0585642;   // abort
// What the line of the error log gets of the report's time. A fault may have come with any lock held, and
// neither may then ever end.
constexpr DWORD k_ulTempoLinha = 2000;

// Prepared at installation: nothing is loaded or allocated during a crash. Line and report are written by
// threads that do nothing else, for the stack of the one that crashed may be full or destroyed.
struct SEstado {
    wchar_t szPrefixo[MAX_PATH * 2] = L"";  // directory and file name up to the date
    PGravaMinidump pGravaMinidump = nullptr;
    const void* pInicioModulo = nullptr;
    const void* pFimModulo = nullptr;
    HANDLE hRelator = nullptr;
    HANDLE hEscritor = nullptr;  // of the line
    HANDLE hPedido = nullptr;    // signalled when the fields below are there
    DWORD ulRelator = 0;
    DWORD ulEscritor = 0;
    wchar_t szRelatorio[MAX_PATH * 3] = L"";  // path of the report without extension
    std::atomic<DWORD> ulThreadTratando = 0;  // 0: none
    EXCEPTION_POINTERS* pExcecao = nullptr;
};
SEstado g_estado;

void MontaCaminho() {
    SYSTEMTIME agora;
    ::GetLocalTime(&agora);
    // wsprintfW writes at most 1024 characters, and what it writes here is shorter than the field.
    ::wsprintfW(g_estado.szRelatorio, L"%s_%04u%02u%02u_%02u%02u%02u_%lu", g_estado.szPrefixo, agora.wYear,
                agora.wMonth, agora.wDay, agora.wHour, agora.wMinute, agora.wSecond, ::GetCurrentProcessId());
}

HANDLE CriaArquivo(const wchar_t* pszExtensao, wchar_t (&szCaminho)[MAX_PATH * 3 + 8]) {
    ::wsprintfW(szCaminho, L"%s.%s", g_estado.szRelatorio, pszExtensao);
    return ::CreateFileW(szCaminho, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

bool GravaMinidump(EXCEPTION_POINTERS* pExcecao) {
    if (g_estado.pGravaMinidump == nullptr) return false;
    wchar_t szCaminho[MAX_PATH * 3 + 8];
    const HANDLE hArquivo = CriaArquivo(L"dmp", szCaminho);
    if (hArquivo == INVALID_HANDLE_VALUE) return false;
    MINIDUMP_EXCEPTION_INFORMATION informacao{g_estado.ulThreadTratando.load(), pExcecao, FALSE};
    const bool bGravou = g_estado.pGravaMinidump(::GetCurrentProcess(), ::GetCurrentProcessId(), hArquivo,
                                                 MiniDumpNormal, &informacao, nullptr, nullptr) != FALSE;
    ::CloseHandle(hArquivo);
    if (!bGravou) ::DeleteFileW(szCaminho);
    return bGravou;
}

void GravaRelatorio(EXCEPTION_POINTERS* pExcecao) {
    wchar_t szCaminho[MAX_PATH * 3 + 8];
    const HANDLE hArquivo = CriaArquivo(L"txt", szCaminho);
    if (hArquivo == INVALID_HANDLE_VALUE) return;
    XVGravaRelatorioCrash(hArquivo, *pExcecao, g_estado.ulThreadTratando.load());
    ::CloseHandle(hArquivo);
}

// Goes through the program's own log, which needs the heap and locks.
DWORD WINAPI EscreveLinha(void*) {
    ::WaitForSingleObject(g_estado.hPedido, INFINITE);
    const EXCEPTION_RECORD& rRegistro = *g_estado.pExcecao->ExceptionRecord;
    char szModulo[MAX_PATH];
    XVModuloDoEndereco(rRegistro.ExceptionAddress, szModulo);
    XVProfiler::RecordError(
        nullptr, "XVTratamentoCrash::Encerra", "server/XVTratamentoCrash", __LINE__,
        "Falha 0x%08lX no endereço %p (%s): o servidor termina. Relatório: %s (.dmp ou .txt)",
        static_cast<unsigned long>(rRegistro.ExceptionCode), rRegistro.ExceptionAddress, szModulo,
        XVTextoWindows::ParaUtf8(g_estado.szRelatorio).c_str());
    return 0;
}

// The line comes first: a minidump takes seconds.
DWORD WINAPI Relata(void*) {
    ::WaitForSingleObject(g_estado.hPedido, INFINITE);
    ::WaitForSingleObject(g_estado.hEscritor, k_ulTempoLinha);
    if (!GravaMinidump(g_estado.pExcecao)) GravaRelatorio(g_estado.pExcecao);
    return 0;
}

// The first thread to crash has it reported; others wait for the end of the process. A fault of the report
// itself ends the process at once: waiting for itself it would never end.
[[noreturn]] void Encerra(EXCEPTION_POINTERS* pExcecao) {
    const DWORD ulThread = ::GetCurrentThreadId();
    DWORD ulTratando = 0;
    if (g_estado.ulThreadTratando.compare_exchange_strong(ulTratando, ulThread)) {
        // Nobody goes on with what the fault may have left in memory; and a next server waits for this end.
        XVDetencao::Detem();
        CXVExclusividade::AnunciaFimDoProcesso();
        g_estado.pExcecao = pExcecao;
        MontaCaminho();
        ::SetEvent(g_estado.hPedido);
        ::WaitForSingleObject(g_estado.hRelator, k_ulTempoRelatorioCrash);
    } else if (ulThread == g_estado.ulEscritor) {
        ::ExitThread(1);  // the report goes on without the line
    } else if (ulTratando != ulThread && ulThread != g_estado.ulRelator) {
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
            return true;
        default:
            return false;
    }
}

// Whether what faulted is the fetch of the instruction itself.
bool EhSaltoParaNada(const EXCEPTION_POINTERS& rExcecao) {
    const EXCEPTION_RECORD& rRegistro = *rExcecao.ExceptionRecord;
    return rRegistro.ExceptionCode == EXCEPTION_ACCESS_VIOLATION && rRegistro.NumberParameters >= 2 &&
           rRegistro.ExceptionInformation[1] == rExcecao.ContextRecord->Rip;
}

LONG CALLBACK TrataNaoTratada(EXCEPTION_POINTERS* pExcecao) {
    Encerra(pExcecao);
}

// What no code inside of a call took.
void TrataFalhaNaChamada(void* pDescricao) {
    Encerra(static_cast<EXCEPTION_POINTERS*>(pDescricao));
}

// A fault in this program's own code is never handled by it. One elsewhere may be: libraries that run managed
// code, for one, fault and go on. A full stack is the end in any code, and leaves little room to look
// further; and where the fault is in no code at all, as after a call through null, a search for handlers has
// nowhere to begin.
LONG CALLBACK TrataPrimeiraChance(EXCEPTION_POINTERS* pExcecao) {
    const DWORD ulCodigo = pExcecao->ExceptionRecord->ExceptionCode;
    const void* pEndereco = pExcecao->ExceptionRecord->ExceptionAddress;
    if (ulCodigo == EXCEPTION_STACK_OVERFLOW || EhSaltoParaNada(*pExcecao)) Encerra(pExcecao);
    if (EhFatal(ulCodigo) && pEndereco >= g_estado.pInicioModulo && pEndereco < g_estado.pFimModulo)
        Encerra(pExcecao);
    return EXCEPTION_CONTINUE_SEARCH;
}

[[noreturn]] void EncerraAqui(DWORD ulCodigo) {
    CONTEXT contexto{};
    ::RtlCaptureContext(&contexto);
    EXCEPTION_RECORD registro{};
    registro.ExceptionCode = ulCodigo;
    registro.ExceptionFlags = EXCEPTION_NONCONTINUABLE;
    registro.ExceptionAddress = reinterpret_cast<void*>(contexto.Rip);
    EXCEPTION_POINTERS excecao{&registro, &contexto};
    Encerra(&excecao);
}

[[noreturn]] void TrataTermino() {
    EncerraAqui(k_ulExcecaoTermino);
}

// Libraries that share this program's C run time come here as well.
void TrataAborto(int) {
    EncerraAqui(k_ulExcecaoAborto);
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
    g_estado.hPedido = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    g_estado.hEscritor = ::CreateThread(nullptr, 0, EscreveLinha, nullptr, 0, &g_estado.ulEscritor);
    g_estado.hRelator = ::CreateThread(nullptr, 0, Relata, nullptr, 0, &g_estado.ulRelator);
    XVReservaPilha();
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    ::SetUnhandledExceptionFilter(&TrataNaoTratada);
    ::AddVectoredExceptionHandler(1, &TrataPrimeiraChance);
    XVVigiaFalhas(&TrataFalhaNaChamada);
    std::set_terminate(&TrataTermino);
    // No dialogue that nobody would answer.
    ::_set_error_mode(_OUT_TO_STDERR);
    std::signal(SIGABRT, &TrataAborto);
}

}  // namespace XVTratamentoCrash
