#include "server/XVSegurancaCom.h"

#include <windows.h>

#include <objbase.h>
#include <sddl.h>

#include <vector>

#include "platform/XVPlataforma.h"
#include "server/XVChaveRegistry.h"
#include "server/XVValoresInscricao.h"

namespace {

bool Ligado(const char* pszValor) {
    return XVPlataforma::Registry().LeNumero(k_sChaveRegistrySuite, pszValor).value_or(0) != 0;
}

// Who may call: 3 is COM_RIGHTS_EXECUTE with local calls. System, administrators and every authenticated user
// of this machine; where authentication is off nobody can be told from anybody, so everyone.
constexpr const wchar_t* k_pszAcessoAutenticado = L"O:BAG:BAD:(A;;0x3;;;SY)(A;;0x3;;;BA)(A;;0x3;;;AU)";
constexpr const wchar_t* k_pszAcessoAberto = L"O:BAG:BAD:(A;;0x3;;;WD)(A;;0x3;;;AN)";

// A security descriptor in the absolute form that COM wants, with the parts that it points to.
class CXVDescritorSeguranca {
  public:
    explicit CXVDescritorSeguranca(std::vector<BYTE>& rRelativo) {
        PSECURITY_DESCRIPTOR pRelativo = rRelativo.data();
        DWORD aulTamanhos[5]{};
        ::MakeAbsoluteSD(pRelativo, nullptr, &aulTamanhos[0], nullptr, &aulTamanhos[1], nullptr,
                         &aulTamanhos[2], nullptr, &aulTamanhos[3], nullptr, &aulTamanhos[4]);
        for (int i = 0; i < 5; ++i) m_aPartes[i].resize(aulTamanhos[i]);
        m_bValido =
            ::MakeAbsoluteSD(pRelativo, m_aPartes[0].data(), &aulTamanhos[0],
                             reinterpret_cast<PACL>(m_aPartes[1].data()), &aulTamanhos[1],
                             reinterpret_cast<PACL>(m_aPartes[2].data()), &aulTamanhos[2],
                             m_aPartes[3].data(), &aulTamanhos[3], m_aPartes[4].data(), &aulTamanhos[4]) != 0;
    }
    PSECURITY_DESCRIPTOR Get() { return m_bValido ? m_aPartes[0].data() : nullptr; }

  private:
    std::vector<BYTE> m_aPartes[5];  // descriptor, DACL, SACL, owner, group
    bool m_bValido = false;
};

// Nothing: no permissions are set. A value that is none is a failure, for it was meant to keep somebody out.
HRESULT LePermissaoAcesso(std::vector<BYTE>* pDescritor) {
    for (const HKEY hRaiz : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
        CXVChaveRegistry chave;
        if (FAILED(
                chave.Abre(hRaiz, XVValoresInscricao::k_pszClasses + XVValoresInscricao::ChaveAplicacao())))
            continue;
        const HRESULT hr = chave.LeBinario(L"AccessPermission", pDescritor);
        if (hr == HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)) continue;
        if (FAILED(hr)) return hr;
        const bool bInteiro = pDescritor->size() >= sizeof(SECURITY_DESCRIPTOR_RELATIVE) &&
                              ::IsValidSecurityDescriptor(pDescritor->data()) != 0 &&
                              ::GetSecurityDescriptorLength(pDescritor->data()) <= pDescritor->size();
        return bInteiro ? S_OK : HRESULT_FROM_WIN32(ERROR_INVALID_SECURITY_DESCR);
    }
    return S_FALSE;
}

}  // namespace

HRESULT XVEscolheAcesso(std::vector<BYTE>* pDescritor) {
    const HRESULT hr = LePermissaoAcesso(pDescritor);
    if (hr != S_FALSE) return hr;
    return XVDescritorDeTexto(
        XVNivelAutenticacaoDCOM() == RPC_C_AUTHN_LEVEL_NONE ? k_pszAcessoAberto : k_pszAcessoAutenticado,
        pDescritor);
}

HRESULT XVDescritorDeTexto(const std::wstring& sTexto, std::vector<BYTE>* pDescritor) {
    PSECURITY_DESCRIPTOR pRelativo = nullptr;
    ULONG ulBytes = 0;
    if (::ConvertStringSecurityDescriptorToSecurityDescriptorW(sTexto.c_str(), SDDL_REVISION_1, &pRelativo,
                                                               &ulBytes) == 0)
        return HRESULT_FROM_WIN32(::GetLastError());
    const auto* pBytes = static_cast<const BYTE*>(pRelativo);
    pDescritor->assign(pBytes, pBytes + ulBytes);
    ::LocalFree(pRelativo);
    return S_OK;
}

XVUInt XVNivelAutenticacaoDCOM() {
    if (Ligado("DesabilitaAutenticacaoDCOM")) return RPC_C_AUTHN_LEVEL_NONE;
    return Ligado("DesabilitaEncriptacaoDCOM") ? RPC_C_AUTHN_LEVEL_PKT_INTEGRITY
                                               : RPC_C_AUTHN_LEVEL_PKT_PRIVACY;
}

HRESULT XVInicializaSegurancaCom() {
    std::vector<BYTE> relativo;
    if (const HRESULT hr = XVEscolheAcesso(&relativo); FAILED(hr)) return hr;
    CXVDescritorSeguranca descritor(relativo);
    if (descritor.Get() == nullptr) return HRESULT_FROM_WIN32(::GetLastError());
    return ::CoInitializeSecurity(descritor.Get(), -1, nullptr, nullptr, XVNivelAutenticacaoDCOM(),
                                  RPC_C_IMP_LEVEL_IDENTIFY, nullptr, EOAC_NONE, nullptr);
}
