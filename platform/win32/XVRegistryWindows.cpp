#include <windows.h>

#include <string>

#include "platform/XVMascara.h"
#include "platform/XVPlataforma.h"
#include "platform/XVRegistryArquivo.h"
#include "platform/win32/XVTextoWindows.h"

namespace {

class CXVChaveRegistry {
  public:
    // The 32-bit view holds its keys without the node's name in the path.
    explicit CXVChaveRegistry(std::string_view sChave) {
        constexpr std::string_view k_sRaiz = "SOFTWARE\\";
        constexpr std::string_view k_sNo32 = "SOFTWARE\\Wow6432Node\\";
        const bool b32 = XVMascara::NomesIguais(sChave.substr(0, k_sNo32.size()), k_sNo32);
        const std::string sCaminho =
            b32 ? std::string(k_sRaiz).append(sChave.substr(k_sNo32.size())) : std::string(sChave);
        std::wstring sLargo;
        if (!XVTextoWindows::ParaLargo(sCaminho, sLargo) ||
            RegOpenKeyExW(HKEY_LOCAL_MACHINE, sLargo.c_str(), 0,
                          static_cast<REGSAM>(KEY_READ | (b32 ? KEY_WOW64_32KEY : 0)),
                          &m_hChave) != ERROR_SUCCESS) {
            m_hChave = nullptr;
        }
    }
    ~CXVChaveRegistry() {
        if (m_hChave != nullptr) {
            RegCloseKey(m_hChave);
        }
    }
    CXVChaveRegistry(const CXVChaveRegistry&) = delete;
    CXVChaveRegistry& operator=(const CXVChaveRegistry&) = delete;

    HKEY Get() const { return m_hChave; }

  private:
    HKEY m_hChave = nullptr;
};

class CXVRegistryWindows final : public IXVRegistry {
  public:
    std::optional<std::string> LeTexto(std::string_view sChave, std::string_view sValor) override {
        if (CXVRegistryArquivo::EstaConfigurado()) {
            return m_arquivo.LeTexto(sChave, sValor);
        }
        return LeTextoDoSistema(sChave, sValor);
    }

    std::optional<XVUInt> LeNumero(std::string_view sChave, std::string_view sValor) override {
        if (CXVRegistryArquivo::EstaConfigurado()) {
            return m_arquivo.LeNumero(sChave, sValor);
        }
        const CXVChaveRegistry chave(sChave);
        std::wstring sNome;
        DWORD ulNumero = 0;
        DWORD ulTamanho = sizeof(ulNumero);
        if (chave.Get() != nullptr && XVTextoWindows::ParaLargo(sValor, sNome) &&
            RegGetValueW(chave.Get(), nullptr, sNome.c_str(), RRF_RT_REG_DWORD, nullptr, &ulNumero,
                         &ulTamanho) == ERROR_SUCCESS) {
            return ulNumero;
        }
        const std::optional<std::string> sTexto = LeTextoDoSistema(sChave, sValor);
        return sTexto ? CXVRegistryTexto::ConverteNumero(*sTexto) : std::nullopt;
    }

  private:
    static std::optional<std::string> LeTextoDoSistema(std::string_view sChave, std::string_view sValor) {
        const CXVChaveRegistry chave(sChave);
        std::wstring sNome;
        if (chave.Get() == nullptr || !XVTextoWindows::ParaLargo(sValor, sNome)) {
            return std::nullopt;
        }
        std::wstring sTexto(MAX_PATH, L'\0');
        LSTATUS lResultado = ERROR_MORE_DATA;
        // The value may grow between two calls.
        for (int i = 0; i < 4 && lResultado == ERROR_MORE_DATA; ++i) {
            DWORD ulBytes = static_cast<DWORD>(sTexto.size() * sizeof(wchar_t));
            lResultado = RegGetValueW(chave.Get(), nullptr, sNome.c_str(), RRF_RT_REG_SZ, nullptr,
                                      sTexto.data(), &ulBytes);
            sTexto.resize(ulBytes / sizeof(wchar_t) + (lResultado == ERROR_MORE_DATA ? 64 : 0));
        }
        if (lResultado != ERROR_SUCCESS) {
            return std::nullopt;
        }
        return XVTextoWindows::ParaUtf8(sTexto.c_str());
    }

    CXVRegistryArquivo m_arquivo;
};

}  // namespace

IXVRegistry& XVPlataforma::RegistryNativo() {
    static CXVRegistryWindows& rRegistry = *new CXVRegistryWindows;
    return rRegistry;
}
