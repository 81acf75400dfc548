#include "suite/XVBaseParaRotinas.h"

#include "platform/XVPlataforma.h"
#include "support/XVAmbiente.h"

namespace {

thread_local const CXVBaseParaRotinas* s_pAcessoDefault = nullptr;

constexpr XVUInt k_ulFilialComoBaseDados = 0x10;

HRESULT ValidaEmpresa(std::string_view sEmpresa) {
    return CAmbienteXV::EhEmpresaValida(sEmpresa) ? S_OK : E_INVALIDARG;
}

}  // namespace

CXVBaseParaRotinas::CXVBaseParaRotinas() : m_AcessoEmpresarial(this) {}

CXVBaseParaRotinas::~CXVBaseParaRotinas() {
    if (s_pAcessoDefault == this) s_pAcessoDefault = nullptr;
}

const CXVBaseParaRotinas* CXVBaseParaRotinas::GetAcessoDefault() {
    return s_pAcessoDefault;
}

void CXVBaseParaRotinas::SetAcessoDefault(const CXVBaseParaRotinas* pBase) {
    s_pAcessoDefault = pBase;
}

std::string CXVBaseParaRotinas::GetAcessoServidoresDefault() {
    return XVPlataforma::Registry()
        .LeTexto(CAmbienteXV::GetChaveRegistry(k_eModuloBase), "AcessoServidoresDefault")
        .value_or(std::string());
}

bool CXVBaseParaRotinas::UsaFilialComoBaseDadosTerceiro() const {
    const auto ulValor =
        XVPlataforma::Registry().LeNumero(CAmbienteXV::GetChaveRegistry(k_eModuloBase), "AcessoServidores_1");
    return (ulValor.value_or(0) & k_ulFilialComoBaseDados) != 0;
}

HRESULT CXVBaseParaRotinas::OnInicializa() {
    XV_CHECK_SUPER(CXVInicializador, OnInicializa());
    XV_CHECK(ValidaEmpresa(GetEmpresa()));
    return S_OK;
}

HRESULT CXVBaseParaRotinas::OnFinaliza() {
    m_AcessoEmpresarial.Fecha();
    XV_CHECK_SUPER(CXVInicializador, OnFinaliza());
    return S_OK;
}
