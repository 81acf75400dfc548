#include "server/XVInscricaoClasse.h"

#include <windows.h>

#include <vector>

#include "contract/XVCR_MiddlewareGuids.h"
#include "server/XVChaveRegistry.h"

#define XV_GUID_LARGO(x) (L"{" XV_LARGO(XV_TEXTO_UUID(x)) L"}")

namespace {

constexpr const wchar_t* k_pszDescricao = L"XVCR_Middleware";
constexpr const wchar_t* k_pszProxy = L"XVCR_MiddlewarePS.dll";

const std::wstring k_sClasse = XV_GUID_LARGO(XV_UUID_CLASSE_MIDDLEWARE);
const std::wstring k_sAplicacao = XV_GUID_LARGO(XV_UUID_APLICACAO_MIDDLEWARE);
// The proxy/stub library registers its interface and itself under the interface's identifier.
const std::wstring k_sInterface = XV_GUID_LARGO(XV_UUID_IXVCR_MIDDLEWARE);
const std::wstring k_sProgId = XV_LARGO(XV_PROGID_MIDDLEWARE);
const std::wstring k_sProgIdSemVersao = XV_LARGO(XV_PROGID_MIDDLEWARE_SEM_VERSAO);

struct SEntrada {
    std::wstring sChave;
    std::wstring sValor;  // empty: the default value
    std::wstring sTexto;
};

std::wstring CaminhoExecutavel() {
    std::wstring sCaminho(32768, L'\0');
    sCaminho.resize(::GetModuleFileNameW(nullptr, sCaminho.data(), static_cast<DWORD>(sCaminho.size())));
    return sCaminho;
}

std::wstring NomeArquivo(const std::wstring& sCaminho) {
    return sCaminho.substr(sCaminho.find_last_of(L"\\/") + 1);
}

std::wstring CaminhoProxy() {
    const std::wstring sExecutavel = CaminhoExecutavel();
    return sExecutavel.substr(0, sExecutavel.find_last_of(L"\\/") + 1) + k_pszProxy;
}

// The path of the program is quoted, because the system would start another program for an unquoted path that
// has a blank in it.
std::vector<SEntrada> Entradas(const std::wstring& sExecutavel) {
    const std::wstring sChaveClasse = L"CLSID\\" + k_sClasse;
    return {
        {sChaveClasse, L"", k_pszDescricao},
        {sChaveClasse, L"AppID", k_sAplicacao},
        {sChaveClasse + L"\\LocalServer32", L"", L"\"" + sExecutavel + L"\""},
        {sChaveClasse + L"\\LocalServer32", L"ServerExecutable", sExecutavel},
        {sChaveClasse + L"\\ProgID", L"", k_sProgId},
        {sChaveClasse + L"\\VersionIndependentProgID", L"", k_sProgIdSemVersao},
        {L"AppID\\" + k_sAplicacao, L"", k_pszDescricao},
        {L"AppID\\" + NomeArquivo(sExecutavel), L"AppID", k_sAplicacao},
        {k_sProgId, L"", k_pszDescricao},
        {k_sProgId + L"\\CLSID", L"", k_sClasse},
        {k_sProgIdSemVersao, L"", k_pszDescricao},
        {k_sProgIdSemVersao + L"\\CLSID", L"", k_sClasse},
        {k_sProgIdSemVersao + L"\\CurVer", L"", k_sProgId},
    };
}

// The keys under which everything stands that a registration writes, the entries of the proxy/stub library
// included: whoever removes these trees has removed all of it.
std::vector<std::wstring> Arvores() {
    return {L"CLSID\\" + k_sClasse,
            L"AppID\\" + k_sAplicacao,
            L"AppID\\" + NomeArquivo(CaminhoExecutavel()),
            k_sProgId,
            k_sProgIdSemVersao,
            L"Interface\\" + k_sInterface,
            L"CLSID\\" + k_sInterface};
}

HRESULT AbreClasses(EEscopoInscricao eEscopo, CXVChaveRegistry* pClasses) {
    return pClasses->Cria(eEscopo == EEscopoInscricao::eMaquina ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER,
                          L"Software\\Classes");
}

HRESULT GravaEntrada(HKEY hClasses, const SEntrada& rEntrada) {
    CXVChaveRegistry chave;
    const HRESULT hr = chave.Cria(hClasses, rEntrada.sChave);
    return FAILED(hr) ? hr : chave.GravaTexto(rEntrada.sValor, rEntrada.sTexto);
}

HRESULT ConfereEntrada(HKEY hClasses, const SEntrada& rEntrada) {
    CXVChaveRegistry chave;
    std::wstring sLido;
    HRESULT hr = chave.Abre(hClasses, rEntrada.sChave);
    if (SUCCEEDED(hr)) hr = chave.LeTexto(rEntrada.sValor, &sLido);
    if (FAILED(hr)) return hr;
    return ::lstrcmpiW(sLido.c_str(), rEntrada.sTexto.c_str()) == 0 ? S_OK
                                                                    : HRESULT_FROM_WIN32(ERROR_INVALID_DATA);
}

class CXVBibliotecaProxy {
  public:
    CXVBibliotecaProxy()
        : m_hModulo(::LoadLibraryExW(CaminhoProxy().c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)) {
        m_hr = m_hModulo != nullptr ? S_OK : HRESULT_FROM_WIN32(::GetLastError());
    }
    ~CXVBibliotecaProxy() {
        if (m_hModulo != nullptr) ::FreeLibrary(m_hModulo);
    }
    CXVBibliotecaProxy(const CXVBibliotecaProxy&) = delete;
    CXVBibliotecaProxy& operator=(const CXVBibliotecaProxy&) = delete;

    HRESULT GetResultado() const { return m_hr; }

    // Runs the library's own registration with its writes led to the scope's classes.
    HRESULT Registra(HKEY hClasses) const {
        using PRegistra = HRESULT(STDAPICALLTYPE*)();
        const auto pRegistra = reinterpret_cast<PRegistra>(
            reinterpret_cast<void (*)()>(::GetProcAddress(m_hModulo, "DllRegisterServer")));
        if (pRegistra == nullptr) return HRESULT_FROM_WIN32(ERROR_PROC_NOT_FOUND);
        HRESULT hr =
            HRESULT_FROM_WIN32(static_cast<DWORD>(::RegOverridePredefKey(HKEY_CLASSES_ROOT, hClasses)));
        if (FAILED(hr)) return hr;
        hr = pRegistra();
        ::RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
        return hr;
    }

  private:
    HMODULE m_hModulo;
    HRESULT m_hr;
};

std::vector<SEntrada> EntradasProxy() {
    return {{L"Interface\\" + k_sInterface + L"\\ProxyStubClsid32", L"", k_sInterface},
            {L"CLSID\\" + k_sInterface + L"\\InProcServer32", L"", CaminhoProxy()}};
}

SResultadoInscricao GravaTudo(HKEY hClasses, const CXVBibliotecaProxy& rProxy) {
    const std::vector<SEntrada> listaEntradas = Entradas(CaminhoExecutavel());
    for (const SEntrada& rEntrada : listaEntradas)
        if (const HRESULT hr = GravaEntrada(hClasses, rEntrada); FAILED(hr))
            return {hr, "gravar as chaves da classe no registro"};
    if (const HRESULT hr = rProxy.Registra(hClasses); FAILED(hr))
        return {hr, "registrar a biblioteca XVCR_MiddlewarePS.dll"};
    for (const SEntrada& rEntrada : listaEntradas)
        if (const HRESULT hr = ConfereEntrada(hClasses, rEntrada); FAILED(hr))
            return {hr, "conferir as chaves da classe no registro"};
    for (const SEntrada& rEntrada : EntradasProxy())
        if (const HRESULT hr = ConfereEntrada(hClasses, rEntrada); FAILED(hr))
            return {hr, "conferir o registro da biblioteca XVCR_MiddlewarePS.dll"};
    return {};
}

SResultadoInscricao ApagaTudo(HKEY hClasses) {
    for (const std::wstring& sArvore : Arvores()) {
        const HRESULT hr = CXVChaveRegistry::ApagaArvore(hClasses, sArvore);
        if (FAILED(hr)) return {hr, "apagar as chaves da classe do registro"};
        if (CXVChaveRegistry::Existe(hClasses, sArvore))
            return {HRESULT_FROM_WIN32(ERROR_INVALID_DATA), "conferir a remoção das chaves do registro"};
    }
    return {};
}

}  // namespace

SResultadoInscricao XVInscreveClasse(EEscopoInscricao eEscopo) {
    // The library is loaded before anything is written: where it cannot be loaded the registration cannot
    // succeed, and one that already stands is not given up for it.
    const CXVBibliotecaProxy proxy;
    if (FAILED(proxy.GetResultado()))
        return {proxy.GetResultado(), "carregar a biblioteca XVCR_MiddlewarePS.dll"};
    CXVChaveRegistry classes;
    if (const HRESULT hr = AbreClasses(eEscopo, &classes); FAILED(hr))
        return {hr, "abrir as classes do registro"};
    SResultadoInscricao resultado = GravaTudo(classes.Get(), proxy);
    if (FAILED(resultado.hr)) ApagaTudo(classes.Get());
    return resultado;
}

SResultadoInscricao XVRemoveClasse(EEscopoInscricao eEscopo) {
    CXVChaveRegistry classes;
    if (const HRESULT hr = AbreClasses(eEscopo, &classes); FAILED(hr))
        return {hr, "abrir as classes do registro"};
    return ApagaTudo(classes.Get());
}
