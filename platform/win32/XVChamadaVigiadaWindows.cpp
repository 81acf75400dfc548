#include <windows.h>

#include <atomic>

#include "platform/XVChamadaVigiada.h"
#include "platform/XVDetencao.h"

namespace {

std::atomic<PXVFalha> g_pfnFalha = nullptr;

// Errors and warnings of the system, and exceptions of other compilers' run times, which nothing in this
// program can catch. The exceptions of its own run time are of another class and pass.
bool EhFalha(DWORD ulCodigo) {
    return (ulCodigo & 0x80000000U) != 0;
}

void Relata(EXCEPTION_RECORD* pRegistro, CONTEXT* pContexto) {
    const PXVFalha pfnFalha = g_pfnFalha.load();
    if (pfnFalha == nullptr || !EhFalha(pRegistro->ExceptionCode)) return;
    EXCEPTION_POINTERS descricao{pRegistro, pContexto};
    pfnFalha(&descricao);
}

}  // namespace

void XVVigiaFalhas(PXVFalha pfnFalha) {
    g_pfnFalha = pfnFalha;
}

#if defined(_MSC_VER)

static void ExecutaQuadroVigiado(void (*pfnChamada)(void*), void* pDados) {
    __try {
        pfnChamada(pDados);
    } __except (Relata(GetExceptionInformation()->ExceptionRecord, GetExceptionInformation()->ContextRecord),
                EXCEPTION_CONTINUE_SEARCH) {
    }
}

#else

// The handler of the frame below: called in the search for one, so before anything is unwound.
extern "C" EXCEPTION_DISPOSITION XVFalhaNaChamada(EXCEPTION_RECORD* pRegistro, void*, CONTEXT* pContexto,
                                                  void*) {
    Relata(pRegistro, pContexto);
    return ExceptionContinueSearch;
}

// This compiler has no words for a frame with a handler of its own.
extern "C" void ExecutaQuadroVigiado(void (*pfnChamada)(void*), void* pDados);
__asm__(
    ".text\n"
    ".p2align 4\n"
    ".globl ExecutaQuadroVigiado\n"
    ".def ExecutaQuadroVigiado; .scl 2; .type 32; .endef\n"
    ".seh_proc ExecutaQuadroVigiado\n"
    "ExecutaQuadroVigiado:\n"
    "    subq $40, %rsp\n"
    "    .seh_stackalloc 40\n"
    "    .seh_endprologue\n"
    "    movq %rcx, %rax\n"
    "    movq %rdx, %rcx\n"
    "    call *%rax\n"
    "    nop\n"  // the return address lies inside of the frame
    "    addq $40, %rsp\n"
    "    ret\n"
    "    .seh_handler XVFalhaNaChamada, @except\n"
    ".seh_endproc\n");

#endif

void XVExecutaVigiada(void (*pfnChamada)(void*), void* pDados) {
    XVDetencao::Espera();
    ExecutaQuadroVigiado(pfnChamada, pDados);
    XVDetencao::Espera();
}
