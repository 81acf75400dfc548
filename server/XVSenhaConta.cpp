#include "server/XVSenhaConta.h"

#include <ntsecapi.h>

#include <algorithm>
#include <string_view>

#include "contract/XVCR_MiddlewareGuids.h"
#include "platform/win32/XVTextoWindows.h"
#include "support/trace/XVCheck.h"

namespace {

// The system looks under this name when it starts the application's server.
constexpr const wchar_t* k_pszSegredo = L"SCM:{" XV_LARGO(XV_TEXTO_UUID(XV_UUID_APLICACAO_MIDDLEWARE)) L"}";
constexpr const wchar_t* k_pszDireito = L"SeBatchLogonRight";

HRESULT DeStatus(NTSTATUS lStatus) {
    return HRESULT_FROM_WIN32(::LsaNtStatusToWinError(lStatus));
}

// The authority reads such texts and never writes them.
LSA_UNICODE_STRING Texto(const wchar_t* pszTexto) {
    const auto usBytes =
        static_cast<USHORT>(static_cast<std::size_t>(::lstrlenW(pszTexto)) * sizeof(wchar_t));
    return {usBytes, usBytes, const_cast<wchar_t*>(pszTexto)};
}

class CXVAutoridade {
  public:
    CXVAutoridade() {
        LSA_OBJECT_ATTRIBUTES atributos{};
        m_hr = DeStatus(::LsaOpenPolicy(nullptr, &atributos,
                                        POLICY_CREATE_SECRET | POLICY_CREATE_ACCOUNT | POLICY_LOOKUP_NAMES,
                                        &m_hPolitica));
    }
    ~CXVAutoridade() {
        if (SUCCEEDED(m_hr)) ::LsaClose(m_hPolitica);
    }
    CXVAutoridade(const CXVAutoridade&) = delete;
    CXVAutoridade& operator=(const CXVAutoridade&) = delete;

    HRESULT GetResultado() const { return m_hr; }
    HRESULT DaDireito(const std::vector<BYTE>& aSid) const {
        LSA_UNICODE_STRING direito = Texto(k_pszDireito);
        return DeStatus(::LsaAddAccountRights(m_hPolitica, const_cast<BYTE*>(aSid.data()), &direito, 1));
    }
    // Whether the account itself has the right, by no group. An account that has none at all is not known.
    bool TemDireito(const std::vector<BYTE>& aSid) const {
        LSA_UNICODE_STRING* pDireitos = nullptr;
        ULONG ulDireitos = 0;
        if (FAILED(DeStatus(::LsaEnumerateAccountRights(m_hPolitica, const_cast<BYTE*>(aSid.data()),
                                                        &pDireitos, &ulDireitos))))
            return false;
        const bool bTem = std::any_of(pDireitos, pDireitos + ulDireitos, [](const LSA_UNICODE_STRING& r) {
            const std::wstring_view sDireito(r.Buffer, r.Length / sizeof(wchar_t));
            return sDireito == k_pszDireito;
        });
        ::LsaFreeMemory(pDireitos);
        return bTem;
    }
    HRESULT TiraDireito(const std::vector<BYTE>& aSid) const {
        LSA_UNICODE_STRING direito = Texto(k_pszDireito);
        return DeStatus(
            ::LsaRemoveAccountRights(m_hPolitica, const_cast<BYTE*>(aSid.data()), FALSE, &direito, 1));
    }
    HRESULT Guarda(const CXVSenha& rSenha) const {
        LSA_UNICODE_STRING nome = Texto(k_pszSegredo);
        LSA_UNICODE_STRING senha = Texto(rSenha.Get().c_str());
        return DeStatus(::LsaStorePrivateData(m_hPolitica, &nome, &senha));
    }

  private:
    LSA_HANDLE m_hPolitica = nullptr;
    HRESULT m_hr;
};

HRESULT Experimenta(const std::wstring& sDominio, const std::wstring& sNome, const CXVSenha& rSenha) {
    HANDLE hUsuario = nullptr;
    if (::LogonUserW(sNome.c_str(), sDominio.c_str(), rSenha.Get().c_str(), LOGON32_LOGON_BATCH,
                     LOGON32_PROVIDER_DEFAULT, &hUsuario) == 0)
        return HRESULT_FROM_WIN32(::GetLastError());
    ::CloseHandle(hUsuario);
    return S_OK;
}

}  // namespace

HRESULT CXVSenha::LeDaEntrada() {
    constexpr std::size_t k_uiMaximo = 256;
    const HANDLE hEntrada = ::GetStdHandle(STD_INPUT_HANDLE);
    if (hEntrada == nullptr || hEntrada == INVALID_HANDLE_VALUE) return E_INVALIDARG;
    std::string sLinha;
    sLinha.reserve(k_uiMaximo + 1);  // no copy is left behind by a growing text
    char c = 0;
    DWORD ulLidos = 0;
    while (sLinha.size() <= k_uiMaximo && ::ReadFile(hEntrada, &c, 1, &ulLidos, nullptr) != 0 &&
           ulLidos == 1 && c != '\n')
        if (c != '\r') sLinha.push_back(c);
    const bool bServe =
        !sLinha.empty() && sLinha.size() <= k_uiMaximo && XVTextoWindows::ParaLargo(sLinha, m_sTexto);
    ::SecureZeroMemory(sLinha.data(), sLinha.size());
    return bServe ? S_OK : E_INVALIDARG;
}

HRESULT XVGuardaSenhaDaConta(const std::vector<BYTE>& aSid, const std::wstring& sDominio,
                             const std::wstring& sNome, const CXVSenha& rSenha) {
    const CXVAutoridade autoridade;
    HRESULT hr = autoridade.GetResultado();
    if (FAILED(hr)) return hr;
    const bool bTinha = autoridade.TemDireito(aSid);
    hr = autoridade.DaDireito(aSid);
    if (FAILED(hr)) return hr;
    // Without the right the password cannot be tried; without the password the right is not wanted.
    hr = Experimenta(sDominio, sNome, rSenha);
    if (SUCCEEDED(hr)) hr = autoridade.Guarda(rSenha);
    if (FAILED(hr) && !bTinha) XVIgnora(autoridade.TiraDireito(aSid));
    return hr;
}
