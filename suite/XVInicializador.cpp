#include "suite/XVInicializador.h"

#include "suite/XVBaseParaRotinas.h"
#include "support/values/XVTextoAscii.h"

namespace {

// The object of the call in progress on this thread, when it works on the same company.
const CXVProfilerEmpresa* GetChamada(std::string_view sEmpresa) {
    const CXVBaseParaRotinas* pBase = CXVBaseParaRotinas::GetAcessoDefault();
    return pBase != nullptr && XVIgualSemCaixa(pBase->GetEmpresa(), sEmpresa) ? pBase : nullptr;
}

}  // namespace

XVUShort CXVProfilerEmpresa::GetUsuario() const {
    const CXVProfilerEmpresa* pChamada = GetChamada(m_sEmpresa);
    return pChamada != nullptr ? pChamada->GetUsuarioProprio() : m_usUsuario;
}

XVUInt CXVProfilerEmpresa::GetNumeroSessao() const {
    const CXVProfilerEmpresa* pChamada = GetChamada(m_sEmpresa);
    return pChamada != nullptr ? pChamada->GetNumeroSessaoProprio() : m_ulNumeroSessao;
}

void CXVProfilerEmpresa::SetProfiler(const IXVDF_Profiler& rProfiler) {
    // Read before writing: rProfiler may be this very object.
    const std::string sEmpresa(rProfiler.GetEmpresa());
    m_bConsulta = rProfiler.EhConsulta();
    SetProfiler(sEmpresa, rProfiler.GetUsuario(), rProfiler.GetNumeroSessao());
}

void CXVProfilerEmpresa::SetProfiler(std::string_view sEmpresa, XVUShort usUsuario, XVUInt ulNumeroSessao) {
    m_sEmpresa.assign(sEmpresa);
    m_usUsuario = usUsuario;
    m_ulNumeroSessao = ulNumeroSessao;
}

HRESULT CXVInicializador::Inicializa(const IXVDF_Profiler* pProfiler) {
    if (m_bInicializado) return S_OK;
    if (pProfiler == nullptr) return E_POINTER;
    SetProfiler(*pProfiler);
    HRESULT hr = S_OK;
    try {
        hr = OnInicializa();
    } catch (...) {  // nothing stays open behind an object that counts as finalised
        XVIgnora(OnFinaliza());
        throw;
    }
    if (FAILED(hr)) {
        XVIgnora(OnFinaliza());  // already reported; the first code is the one that tells
        return hr;
    }
    m_bInicializado = true;
    return hr;
}

HRESULT CXVInicializador::Finaliza() {
    if (!m_bInicializado) return S_OK;
    // OnFinaliza may ask whether the object ever was initialised. Afterwards it is not, whatever was thrown:
    // an object of which half is closed loads anew before it serves anyone.
    struct SFim {
        std::atomic<bool>& rbInicializado;
        ~SFim() { rbInicializado = false; }
    } const fim{m_bInicializado};
    return OnFinaliza();
}
