#include "tests/com/XVAmbienteCom.h"

#include "platform/win32/XVTextoWindows.h"
#include "tests/com/XVServidores.h"
#include "tests/harness/XVDiretorioTemporario.h"

namespace {

std::optional<CXVDiretorioTeste> g_diretorio;

constexpr const wchar_t* k_pszChaveModulo = L"SOFTWARE\\Wow6432Node\\Velmora\\DF";

// Servers leave with their last client, so that no test finds the one of the test before.
std::optional<XVAmbienteCom::CValorDaRegistry> g_permanencia;

}  // namespace

namespace XVAmbienteCom {

CValorDaRegistry::CValorDaRegistry(const wchar_t* pszValor, DWORD ulNumero) : m_pszValor(pszValor) {
    DWORD ulTamanho = sizeof(DWORD);
    m_bHavia = ::RegGetValueW(HKEY_LOCAL_MACHINE, k_pszChave, pszValor, RRF_RT_REG_DWORD, nullptr, &m_ulAntes,
                              &ulTamanho) == ERROR_SUCCESS;
    ::RegSetKeyValueW(HKEY_LOCAL_MACHINE, k_pszChave, pszValor, REG_DWORD, &ulNumero, sizeof(ulNumero));
}

CValorDaRegistry::~CValorDaRegistry() {
    if (m_bHavia)
        ::RegSetKeyValueW(HKEY_LOCAL_MACHINE, k_pszChave, m_pszValor, REG_DWORD, &m_ulAntes,
                          sizeof(m_ulAntes));
    else
        ::RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, k_pszChave, m_pszValor);
}

bool Prepara() {
    std::wstring sPasta;
    if (!XVTextoWindows::ParaLargo(g_diretorio.emplace().GetCaminho(), sPasta)) return false;
    ::RegSetKeyValueW(HKEY_LOCAL_MACHINE, k_pszChaveModulo, L"Path", REG_SZ, sPasta.c_str(),
                      static_cast<DWORD>((sPasta.size() + 1) * sizeof(wchar_t)));
    // What tests set there, and one that was killed may have left.
    for (const wchar_t* pszValor : {L"PermanenciaServidor", L"EsperaPrimeiroCliente",
                                    L"InatividadeMaximaComponente", L"EsperaProvedor"})
        ::RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, CValorDaRegistry::k_pszChave, pszValor);
    g_permanencia.emplace(L"PermanenciaServidor", 0U);
    XVServidores::Mata();
    EsqueceServidorMorto();
    return XVServidores::Executa({"/RegServer"}).iSaida == 0;
}

void Desfaz() {
    if (!XVServidores::Encerra()) XVServidores::Mata();
    XVServidores::Executa({"/UnregServer"});
    ::RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, k_pszChaveModulo, L"Path");
    g_permanencia.reset();
    g_diretorio.reset();
}

const std::string& DiretorioModulo() {
    return g_diretorio->GetCaminho();
}

void EsqueceServidorMorto() {
    if (::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") == nullptr) return;
    char szSistema[MAX_PATH];
    ::GetSystemDirectoryA(szSistema, MAX_PATH);
    for (const char* pszOrdem : {"stop", "start"})
        XVExecuta(std::string(szSistema) + "\\net.exe", {pszOrdem, "rpcss"});
}

}  // namespace XVAmbienteCom

namespace XVPortaTeste {

HRESULT Conecta(XVCliente::CXVCliente& rCliente, const XVCliente::SIdentificacao& rIdentificacao) {
    return rCliente.Conecta(rIdentificacao);
}

std::string DiretorioEmpresa(const std::string& sEmpresa) {
    return XVAmbienteCom::DiretorioModulo() + "\\" + sEmpresa + "\\DF";
}

}  // namespace XVPortaTeste
