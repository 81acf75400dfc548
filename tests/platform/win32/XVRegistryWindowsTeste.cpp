// The real registry: the view, the types and the lengths of values.
#include <gtest/gtest.h>
#include <windows.h>

#include "platform/XVAmbienteSO.h"
#include "platform/XVPlataforma.h"

namespace {

constexpr std::string_view k_sChave = "SOFTWARE\\Wow6432Node\\Velmora\\XVTeste";
constexpr const wchar_t* k_pszChave32 = L"SOFTWARE\\Velmora\\XVTeste";

class CXVRegistryWindowsTeste : public testing::Test {
  protected:
    void SetUp() override {
        SetEnvironmentVariableW(L"XV_REGISTRO", nullptr);
        if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, k_pszChave32, 0, nullptr, 0, KEY_WRITE | KEY_WOW64_32KEY,
                            nullptr, &m_hChave, nullptr) != ERROR_SUCCESS) {
            GTEST_SKIP() << "needs the right to write machine-wide values";
        }
    }
    void TearDown() override {
        if (m_hChave != nullptr) {
            RegCloseKey(m_hChave);
            RegDeleteKeyExW(HKEY_LOCAL_MACHINE, k_pszChave32, KEY_WOW64_32KEY, 0);
        }
    }
    void Grava(const wchar_t* pszNome, DWORD ulTipo, const void* pDados, std::size_t uiBytes) {
        ASSERT_EQ(RegSetValueExW(m_hChave, pszNome, 0, ulTipo, static_cast<const BYTE*>(pDados),
                                 static_cast<DWORD>(uiBytes)),
                  ERROR_SUCCESS);
    }
    void GravaTexto(const wchar_t* pszNome, const std::wstring& sTexto) {
        Grava(pszNome, REG_SZ, sTexto.c_str(), (sTexto.size() + 1) * sizeof(wchar_t));
    }

    IXVRegistry& m_rRegistry = XVPlataforma::RegistryNativo();
    HKEY m_hChave = nullptr;
};

}  // namespace

TEST_F(CXVRegistryWindowsTeste, LeAVistaDeTrintaEDoisBits) {
    const DWORD ulNumero = 0xFFFFFFFEU;
    GravaTexto(L"Path", L"C:\\dados \u00E7");
    GravaTexto(L"Longo", std::wstring(5000, L'x'));
    GravaTexto(L"Texto", L"42");
    Grava(L"Numero", REG_DWORD, &ulNumero, sizeof(ulNumero));
    Grava(L"Binario", REG_BINARY, &ulNumero, sizeof(ulNumero));
    EXPECT_EQ(m_rRegistry.LeTexto(k_sChave, "path"), "C:\\dados \xC3\xA7");
    EXPECT_EQ(m_rRegistry.LeTexto(k_sChave, "Longo"), std::string(5000, 'x'));
    EXPECT_EQ(m_rRegistry.LeNumero(k_sChave, "Texto"), 42U);
    EXPECT_EQ(m_rRegistry.LeNumero(k_sChave, "Numero"), ulNumero);
    EXPECT_EQ(m_rRegistry.LeTexto(k_sChave, "Numero"), std::nullopt);
    EXPECT_EQ(m_rRegistry.LeNumero(k_sChave, "Path"), std::nullopt);
    EXPECT_EQ(m_rRegistry.LeTexto(k_sChave, "Binario"), std::nullopt);
    EXPECT_EQ(m_rRegistry.LeTexto(k_sChave, "Nada"), std::nullopt);
    EXPECT_EQ(m_rRegistry.LeTexto("SOFTWARE\\Wow6432Node\\Velmora\\NaoExiste", "Path"), std::nullopt);
}
