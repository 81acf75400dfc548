#include <gtest/gtest.h>
#include <windows.h>

#include <shellapi.h>

#include "client/XVCliente.h"
#include "tests/com/XVAmbienteCom.h"
#include "tests/com/XVFilho.h"

namespace {

class CMaquina final : public ::testing::Environment {
  public:
    void SetUp() override { ASSERT_TRUE(XVAmbienteCom::Prepara()); }
    void TearDown() override { XVAmbienteCom::Desfaz(); }
};

}  // namespace

int main(int argc, char** argv) {
    int iQuantidade = 0;
    wchar_t** ppszArgumentos = ::CommandLineToArgvW(::GetCommandLineW(), &iQuantidade);
    if (iQuantidade > 2 && std::wstring(ppszArgumentos[1]) == L"--filho")
        return XVExecutaFilho({ppszArgumentos + 2, ppszArgumentos + iQuantidade});
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::AddGlobalTestEnvironment(new CMaquina);
    const XVCliente::CApartamento apartamento;
    return RUN_ALL_TESTS();
}
