// The row of the exception table that exists on Windows only.
#include <windows.h>

#include <comdef.h>
#include <gtest/gtest.h>

#include "support/XVExcecoes.h"

TEST(Excecoes, ErroDoSuporteACom) {
    HRESULT hr = S_OK;
    try {
        throw _com_error(static_cast<HRESULT>(0x800706BAL));
    } catch (...) {
        hr = XVTranslateThrownExceptionToHresult();
    }
    EXPECT_EQ(hr, static_cast<HRESULT>(0x800706BAL));
}
