// What exists on Windows only: the exception of the COM support, and errno with the numbers of the table.
#include <windows.h>

#include <comdef.h>
#include <gtest/gtest.h>

#include "support/codes/XVErrno.h"
#include "support/faults/XVExcecoes.h"

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
