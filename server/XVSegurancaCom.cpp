#include "server/XVSegurancaCom.h"

#include <windows.h>

#include <objbase.h>
#include <sddl.h>

#include <vector>

#include "platform/XVPlataforma.h"

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
    explicit CXVDescritorSeguranca(const wchar_t* pszTexto) {
        PSECURITY_DESCRIPTOR pRelativo = nullptr;
        if (::ConvertStringSecurityDescriptorToSecurityDescriptorW(pszTexto, SDDL_REVISION_1, &pRelativo,
                                                                   nullptr) == 0)
            return;
        DWORD aulTamanhos[5]{};
        ::MakeAbsoluteSD(pRelativo, nullptr, &aulTamanhos[0], nullptr, &aulTamanhos[1], nullptr,
                         &aulTamanhos[2], nullptr, &aulTamanhos[3], nullptr, &aulTamanhos[4]);
        for (int i = 0; i < 5; ++i) m_aPartes[i].resize(aulTamanhos[i]);
        m_bValido =
            ::MakeAbsoluteSD(pRelativo, m_aPartes[0].data(), &aulTamanhos[0],
                             reinterpret_cast<PACL>(m_aPartes[1].data()), &aulTamanhos[1],
                             reinterpret_cast<PACL>(m_aPartes[2].data()), &aulTamanhos[2],
                             m_aPartes[3].data(), &aulTamanhos[3], m_aPartes[4].data(), &aulTamanhos[4]) != 0;
        ::LocalFree(pRelativo);
    }
    PSECURITY_DESCRIPTOR Get() { return m_bValido ? m_aPartes[0].data() : nullptr; }

  private:
    std::vector<BYTE> m_aPartes[5];  // descriptor, DACL, SACL, owner, group
    bool m_bValido = false;
};

}  // namespace

XVUInt XVNivelAutenticacaoDCOM() {
    if (Ligado("DesabilitaAutenticacaoDCOM")) return RPC_C_AUTHN_LEVEL_NONE;
    return Ligado("DesabilitaEncriptacaoDCOM") ? RPC_C_AUTHN_LEVEL_PKT_INTEGRITY
                                               : RPC_C_AUTHN_LEVEL_PKT_PRIVACY;
}

HRESULT XVInicializaSegurancaCom() {
    const XVUInt ulNivel = XVNivelAutenticacaoDCOM();
    CXVDescritorSeguranca descritor(ulNivel == RPC_C_AUTHN_LEVEL_NONE ? k_pszAcessoAberto
                                                                      : k_pszAcessoAutenticado);
    if (descritor.Get() == nullptr) return HRESULT_FROM_WIN32(::GetLastError());
    return ::CoInitializeSecurity(descritor.Get(), -1, nullptr, nullptr, ulNivel, RPC_C_IMP_LEVEL_IDENTIFY,
                                  nullptr, EOAC_NONE, nullptr);
}
