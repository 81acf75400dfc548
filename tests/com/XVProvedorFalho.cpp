// A provider library that does on purpose what none must: the key of a query names the fault.
#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string_view>
#include <thread>

#include "suite/providers/XVProvedorPlugin.h"

namespace {

// Nothing that a compiler can see through.
void* volatile g_pNulo = nullptr;
volatile bool g_bAfunda = true;

int Afunda(volatile char* pAnterior) {
    volatile char acQuadro[4096];
    acQuadro[0] = pAnterior[0];
    return g_bAfunda ? Afunda(acQuadro) + acQuadro[0] : 0;
}

BOOL WINAPI QuebraAoApagar(LPCWSTR) {
    *static_cast<volatile int*>(g_pNulo) = 1;
    return FALSE;
}

// The program's way to the system's function leads here from now on: closing a store deletes its journal.
void QuebraOFechamento() {
    auto* pBase = reinterpret_cast<BYTE*>(::GetModuleHandleW(nullptr));
    const auto* pNt = reinterpret_cast<const IMAGE_NT_HEADERS*>(
        pBase + reinterpret_cast<const IMAGE_DOS_HEADER*>(pBase)->e_lfanew);
    const DWORD ulImportadas = pNt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    const auto uiProcurada =
        reinterpret_cast<ULONGLONG>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "DeleteFileW"));
    for (auto* p = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(pBase + ulImportadas); p->Name != 0; ++p)
        for (auto* puiFuncao = reinterpret_cast<ULONGLONG*>(pBase + p->FirstThunk); *puiFuncao != 0;
             ++puiFuncao) {
            DWORD ulAntes = 0;
            if (*puiFuncao != uiProcurada ||
                ::VirtualProtect(puiFuncao, sizeof(*puiFuncao), PAGE_READWRITE, &ulAntes) == 0)
                continue;
            *puiFuncao = reinterpret_cast<ULONGLONG>(&QuebraAoApagar);
        }
}

// Tells the test that the call is inside, and stays there for longer than any end takes.
void Demora() {
    if (const HANDLE hDentro = ::OpenEventW(EVENT_MODIFY_STATE, FALSE, L"Local\\XVProvedorFalho");
        hDentro != nullptr)
        ::SetEvent(hDentro);
    ::Sleep(120000);
}

void Falha(std::string_view sFalha) {
    if (sFalha == "nulo") *static_cast<volatile int*>(g_pNulo) = 1;
    if (sFalha == "memcpy") std::memcpy(g_pNulo, sFalha.data(), sFalha.size());
    if (sFalha == "chamada") reinterpret_cast<void (*)()>(g_pNulo)();
    if (sFalha == "abort") std::abort();
    if (sFalha == "terminate") std::terminate();
    if (sFalha == "demora") Demora();
    if (sFalha == "fechamento") QuebraOFechamento();
    if (sFalha == "pilha") {
        volatile char cFundo = 0;
        Afunda(&cFundo);
    }
    if (sFalha == "thread") std::thread([] { *static_cast<volatile int*>(g_pNulo) = 1; }).join();
}

// Also "servidor": the server is handed a document that lies nowhere.
std::int32_t Consulta(void*, const XVProvedorDono*, const XVProvedorConsulta* pConsulta,
                      XVProvedorStatusConsulta* pStatus) {
    const std::string_view sFalha(pConsulta->sChaveConsulta.pBytes, pConsulta->sChaveConsulta.uiTamanho);
    if (sFalha == "servidor") pStatus->bufDocumentoRetorno = {reinterpret_cast<void*>(16), 1 << 20, 1, 0};
    Falha(sFalha);
    pStatus->eStatusConsulta = 1;
    return 0;
}

}  // namespace

extern "C" {

__declspec(dllexport) std::int32_t XVProvedorObtem(std::uint32_t ulVersao, XVProvedorTabela* pTabela);

// In the place of the system's library: a report that takes longer than a store is kept, and is none.
__declspec(dllexport) BOOL WINAPI MiniDumpWriteDump(HANDLE, DWORD, HANDLE, int, void*, void*, void*);

BOOL WINAPI MiniDumpWriteDump(HANDLE, DWORD, HANDLE, int, void*, void*, void*) {
    ::Sleep(7000);
    return FALSE;
}

std::int32_t XVProvedorObtem(std::uint32_t ulVersao, XVProvedorTabela* pTabela) {
    *pTabela = {};
    pTabela->ulTamanho = sizeof(XVProvedorTabela);
    pTabela->ulVersao = ulVersao;
    pTabela->eSistema = 16;
    pTabela->pfnLibera = [](void*, void*) {};
    pTabela->pfnBuscaDadosSistemaTerceiro = &Consulta;
    return 0;
}
}
