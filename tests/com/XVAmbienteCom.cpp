#include "tests/com/XVAmbienteCom.h"

#include <filesystem>

#include "platform/win32/XVTextoWindows.h"
#include "tests/com/XVProcesso.h"

namespace {

std::string g_sDiretorio;

constexpr REGSAM k_ulAcesso = KEY_READ | KEY_WRITE | KEY_WOW64_32KEY;
constexpr const wchar_t* k_pszChaveSuite = L"SOFTWARE\\Velmora";
constexpr const wchar_t* k_pszChaveModulo = L"SOFTWARE\\Velmora\\DF";

class CChave {
  public:
    explicit CChave(const wchar_t* pszChave) {
        ::RegCreateKeyExW(HKEY_LOCAL_MACHINE, pszChave, 0, nullptr, 0, k_ulAcesso, nullptr, &m_hChave,
                          nullptr);
    }
    ~CChave() { ::RegCloseKey(m_hChave); }
    CChave(const CChave&) = delete;
    CChave& operator=(const CChave&) = delete;
    HKEY Get() const { return m_hChave; }

  private:
    HKEY m_hChave = nullptr;
};

}  // namespace

namespace XVAmbienteCom {

bool Prepara() {
    namespace fs = std::filesystem;
    const fs::path pasta = fs::temp_directory_path() / ("xvcom" + std::to_string(::GetCurrentProcessId()));
    fs::create_directories(pasta);
    g_sDiretorio = XVTextoWindows::ParaUtf8(pasta.wstring());
    const std::wstring sPasta = pasta.wstring();
    const CChave chave(k_pszChaveModulo);
    ::RegSetValueExW(chave.Get(), L"Path", 0, REG_SZ, reinterpret_cast<const BYTE*>(sPasta.c_str()),
                     static_cast<DWORD>((sPasta.size() + 1) * sizeof(wchar_t)));
    XVProcessos::MataServidores();
    EsqueceServidorMorto();
    return XVProcessos::ExecutaServidor(L"/RegServer") == 0;
}

void Desfaz() {
    if (!XVProcessos::EsperaServidores(0, 20000)) XVProcessos::MataServidores();
    XVProcessos::ExecutaServidor(L"/UnregServer");
    {
        const CChave chave(k_pszChaveModulo);
        ::RegDeleteValueW(chave.Get(), L"Path");
    }
    std::error_code erro;
    std::filesystem::remove_all(std::filesystem::path(g_sDiretorio), erro);
}

const std::string& DiretorioModulo() {
    return g_sDiretorio;
}

void GravaValor(const wchar_t* pszValor, DWORD ulNumero) {
    const CChave chave(k_pszChaveSuite);
    ::RegSetValueExW(chave.Get(), pszValor, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&ulNumero),
                     sizeof(ulNumero));
}

void ApagaValor(const wchar_t* pszValor) {
    const CChave chave(k_pszChaveSuite);
    ::RegDeleteValueW(chave.Get(), pszValor);
}

void EsqueceServidorMorto() {
    if (::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") == nullptr) return;
    wchar_t szSistema[MAX_PATH];
    ::GetSystemDirectoryW(szSistema, MAX_PATH);
    CXVProcesso(std::wstring(szSistema) + L"\\net.exe", L"stop rpcss").GetCodigo();
}

}  // namespace XVAmbienteCom

namespace XVPortaTeste {

HRESULT Conecta(XVCliente::CXVCliente& rCliente, const XVCliente::SIdentificacao& rIdentificacao) {
    return rCliente.Conecta(rIdentificacao);
}

std::string DiretorioEmpresa(const std::string& sEmpresa) {
    return g_sDiretorio + "\\" + sEmpresa + "\\DF";
}

}  // namespace XVPortaTeste
