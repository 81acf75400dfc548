// The real registry: the view, the types and the lengths of values.
#include <gtest/gtest.h>
#include <windows.h>

#include "platform/XVPlataforma.h"

namespace {

constexpr std::string_view k_sChave = "SOFTWARE\\Wow6432Node\\Velmora\\XVTeste";
constexpr const wchar_t* k_pszChave = L"SOFTWARE\\Wow6432Node\\Velmora\\XVTeste";

LSTATUS Grava(const wchar_t* pszNome, DWORD ulTipo, const void* pDados, std::size_t uiBytes) {
    return RegSetKeyValueW(HKEY_LOCAL_MACHINE, k_pszChave, pszNome, ulTipo, pDados,
                           static_cast<DWORD>(uiBytes));
}
LSTATUS GravaTexto(const wchar_t* pszNome, const std::wstring& sTexto) {
    return Grava(pszNome, REG_SZ, sTexto.c_str(), (sTexto.size() + 1) * sizeof(wchar_t));
}

}  // namespace

TEST(CXVRegistryWindowsTeste, LeAVistaDeTrintaEDoisBits) {
    SetEnvironmentVariableW(L"XV_REGISTRO", nullptr);
    if (GravaTexto(L"Path", L"C:\\dados \u00E7") != ERROR_SUCCESS)
        GTEST_SKIP() << "needs the right to write machine-wide values";
    IXVRegistry& rRegistry = XVPlataforma::RegistryNativo();
    const DWORD ulNumero = 0xFFFFFFFEU;
    GravaTexto(L"Longo", std::wstring(5000, L'x'));
    GravaTexto(L"Texto", L"42");
    Grava(L"Numero", REG_DWORD, &ulNumero, sizeof(ulNumero));
    Grava(L"Binario", REG_BINARY, &ulNumero, sizeof(ulNumero));
    EXPECT_EQ(rRegistry.LeTexto(k_sChave, "path"), "C:\\dados \xC3\xA7");
    EXPECT_EQ(rRegistry.LeTexto(k_sChave, "Longo"), std::string(5000, 'x'));
    EXPECT_EQ(rRegistry.LeNumero(k_sChave, "Texto"), 42U);
    EXPECT_EQ(rRegistry.LeNumero(k_sChave, "Numero"), ulNumero);
    EXPECT_EQ(rRegistry.LeTexto(k_sChave, "Numero"), std::nullopt);
    EXPECT_EQ(rRegistry.LeNumero(k_sChave, "Path"), std::nullopt);
    EXPECT_EQ(rRegistry.LeTexto(k_sChave, "Binario"), std::nullopt);
    EXPECT_EQ(rRegistry.LeTexto(k_sChave, "Nada"), std::nullopt);
    EXPECT_EQ(rRegistry.LeTexto("SOFTWARE\\Wow6432Node\\Velmora\\NaoExiste", "Path"), std::nullopt);
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, k_pszChave);
}
