// What exists on Windows only: the trap hooked to the universal C runtime, called as a library of the process
// would, the exception of the COM support, and errno with the numbers of the table.
#include <windows.h>

#include <comdef.h>
#include <gtest/gtest.h>

#include <thread>

#include "support/codes/XVErrno.h"
#include "support/faults/XVExcecoes.h"
#include "support/faults/XVTrapParametroInvalido.h"
#include "support/trace/XVCapturaTrace.h"

namespace {

using PStrcpy = int(__cdecl*)(char*, std::size_t, const char*);

PStrcpy StrcpyDoRuntime() {
    const HMODULE hModulo = ::GetModuleHandleW(L"ucrtbase.dll");
    return reinterpret_cast<PStrcpy>(reinterpret_cast<void (*)()>(::GetProcAddress(hModulo, "strcpy_s")));
}

HRESULT CopiaParaNulo() {
    try {
        const XVTrapParametroInvalido trap(
            {nullptr, "CXVCR_Middleware::LeIntegracao", "XVCR_Middleware", 7, nullptr});
        StrcpyDoRuntime()(nullptr, 1, "x");
        return S_OK;
    } catch (...) {
        return XVTranslateThrownExceptionToHresult();
    }
}

}  // namespace

TEST(TrapRuntime, ParametroRecusadoPeloRuntimeSaiComoHResultDoErrno) {
    ASSERT_TRUE(CXVGanchoParametroInvalido::TemRuntime());
    CXVCapturaTrace captura;
    std::thread([] { EXPECT_EQ(CopiaParaNulo(), XVHResult(0x8004EAF0U)); }).join();
    EXPECT_EQ(CopiaParaNulo(), XVHResult(0x8004EAF0U));
    ASSERT_EQ(captura.GetFalhas().size(), 1U);
    EXPECT_EQ(captura.GetFalhas()[0].iLinha, 7);
}

TEST(Excecoes, ErroDoSuporteACom) {
    HRESULT hr = S_OK;
    try {
        throw _com_error(static_cast<HRESULT>(0x800706BAL));
    } catch (...) {
        hr = XVTranslateThrownExceptionToHresult();
    }
    EXPECT_EQ(hr, static_cast<HRESULT>(0x800706BAL));
}

TEST(Errno, NomesDesteRuntimeTemOsNumerosDaTabela) {
    for (int i = -1; i <= 150; ++i) EXPECT_EQ(XVHResultDeErrno(i), XVHResultDeErrnoWindows(i)) << i;
}
