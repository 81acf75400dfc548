#include "server/XVRelatorioCrash.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>

namespace {

void Escreve(HANDLE hArquivo, const char* pszFormato, ...)
#if defined(__GNUC__)
    __attribute__((format(gnu_printf, 2, 3)))
#endif
    ;

void Escreve(HANDLE hArquivo, const char* pszFormato, ...) {
    char szLinha[512];
    va_list argumentos;
    va_start(argumentos, pszFormato);
    const int iTamanho = std::vsnprintf(szLinha, sizeof(szLinha), pszFormato, argumentos);
    va_end(argumentos);
    if (iTamanho <= 0) return;
    const auto uiTamanho = static_cast<std::size_t>(iTamanho);
    DWORD ulGravados = 0;
    ::WriteFile(hArquivo, szLinha,
                static_cast<DWORD>(uiTamanho < sizeof(szLinha) ? uiTamanho : sizeof(szLinha) - 1),
                &ulGravados, nullptr);
}

void EscreveQuadro(HANDLE hArquivo, int iQuadro, std::uint64_t uiEndereco) {
    char szModulo[MAX_PATH];
    const HMODULE hModulo = XVModuloDoEndereco(reinterpret_cast<const void*>(uiEndereco), szModulo);
    Escreve(hArquivo, "#%02d %016llx %s+0x%llx\r\n", iQuadro, static_cast<unsigned long long>(uiEndereco),
            szModulo, static_cast<unsigned long long>(uiEndereco - reinterpret_cast<std::uint64_t>(hModulo)));
}

// Walks the unwind tables from the context of the crash. An address in no code, as after a call through null,
// is taken for a leaf, which leads to its caller.
void EscrevePilha(HANDLE hArquivo, CONTEXT contexto) {
    constexpr int k_iMaximoQuadros = 64;
    for (int i = 0; i < k_iMaximoQuadros && (contexto.Rip != 0 || i == 0); ++i) {
        EscreveQuadro(hArquivo, i, contexto.Rip);
        DWORD64 uiBase = 0;
        const PRUNTIME_FUNCTION pFuncao =
            contexto.Rip == 0 ? nullptr : ::RtlLookupFunctionEntry(contexto.Rip, &uiBase, nullptr);
        if (pFuncao == nullptr) {  // a leaf: the return address is on top of the stack
            MEMORY_BASIC_INFORMATION regiao{};
            if (::VirtualQuery(reinterpret_cast<LPCVOID>(contexto.Rsp), &regiao, sizeof(regiao)) == 0 ||
                regiao.State != MEM_COMMIT)
                return;
            contexto.Rip = *reinterpret_cast<const DWORD64*>(contexto.Rsp);
            contexto.Rsp += sizeof(DWORD64);
            continue;
        }
        void* pDados = nullptr;
        DWORD64 uiMoldura = 0;
        ::RtlVirtualUnwind(UNW_FLAG_NHANDLER, uiBase, contexto.Rip, pFuncao, &contexto, &pDados, &uiMoldura,
                           nullptr);
    }
}

}  // namespace

HMODULE XVModuloDoEndereco(const void* pEndereco, char (&szModulo)[MAX_PATH]) {
    HMODULE hModulo = nullptr;
    ::lstrcpyA(szModulo, "?");
    if (::GetModuleHandleExW(
            GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
            static_cast<LPCWSTR>(pEndereco), &hModulo) != 0)
        ::GetModuleFileNameA(hModulo, szModulo, MAX_PATH);
    return hModulo;
}

void XVGravaRelatorioCrash(HANDLE hArquivo, const EXCEPTION_POINTERS& rExcecao, DWORD ulThread) {
    const EXCEPTION_RECORD& rRegistro = *rExcecao.ExceptionRecord;
    const CONTEXT& c = *rExcecao.ContextRecord;
    const auto hex = [](auto v) { return static_cast<unsigned long long>(v); };
    Escreve(hArquivo, "Exceção 0x%08lX no endereço %p, thread %lu\r\n",
            static_cast<unsigned long>(rRegistro.ExceptionCode), rRegistro.ExceptionAddress,
            static_cast<unsigned long>(ulThread));
    for (DWORD i = 0; i < rRegistro.NumberParameters && i < EXCEPTION_MAXIMUM_PARAMETERS; ++i)
        Escreve(hArquivo, "Parâmetro %lu: %016llx\r\n", static_cast<unsigned long>(i),
                hex(rRegistro.ExceptionInformation[i]));
    Escreve(hArquivo, "rax %016llx rbx %016llx rcx %016llx rdx %016llx\r\n", hex(c.Rax), hex(c.Rbx),
            hex(c.Rcx), hex(c.Rdx));
    Escreve(hArquivo, "rsi %016llx rdi %016llx rbp %016llx rsp %016llx\r\n", hex(c.Rsi), hex(c.Rdi),
            hex(c.Rbp), hex(c.Rsp));
    Escreve(hArquivo, "r8  %016llx r9  %016llx r10 %016llx r11 %016llx\r\n", hex(c.R8), hex(c.R9), hex(c.R10),
            hex(c.R11));
    Escreve(hArquivo, "r12 %016llx r13 %016llx r14 %016llx r15 %016llx\r\n", hex(c.R12), hex(c.R13),
            hex(c.R14), hex(c.R15));
    Escreve(hArquivo, "rip %016llx efl %08llx\r\nPilha:\r\n", hex(c.Rip), hex(c.EFlags));
    EscrevePilha(hArquivo, c);
}
