#include "server/XVFabricaClasse.h"

#include <new>

namespace {

// What the runtime of remote calls has done beside the methods of the component.
template <class TCorpo>
HRESULT NaFronteiraVigiada(const TCorpo& fnCorpo) {
    HRESULT hr = E_FAIL;
    XVExecutaVigiada([&] { hr = XVNaFronteira(fnCorpo); });
    return hr;
}

// Keeps the process alive from before a component is built until after it is destroyed and its store is
// closed. It is the first base class of the component that is served, and so constructed first and destroyed
// last.
class CXVPresencaCliente {
  protected:
    CXVPresencaCliente() { CXVVidaServidor::Get().Entra(); }
    ~CXVPresencaCliente() { CXVVidaServidor::Get().Sai(); }
};

class CXVComponenteServido final : private CXVPresencaCliente, public CXVCR_Middleware {
  public:
    CXVComponenteServido() { CXVVidaServidor::Get().Inclui(this); }

  private:
    ~CXVComponenteServido() override {
        CXVVidaServidor::Get().Retira(this);
        XVIgnora(NaFronteiraVigiada([this] {
            CXVVidaServidor::Get().GetLojas().Guarda(EntregaLogica());
            return S_OK;
        }));
    }
};

}  // namespace

HRESULT STDMETHODCALLTYPE CXVFabricaClasse::QueryInterface(REFIID riid, void** ppvObject) {
    if (ppvObject == nullptr) return E_POINTER;
    *ppvObject = nullptr;
    if (!IsEqualGUID(riid, IID_IUnknown) && !IsEqualGUID(riid, IID_IClassFactory)) return E_NOINTERFACE;
    *ppvObject = static_cast<IClassFactory*>(this);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CXVFabricaClasse::CreateInstance(IUnknown* pExterno, REFIID riid,
                                                           void** ppvObject) {
    if (ppvObject == nullptr) return E_POINTER;
    *ppvObject = nullptr;
    if (pExterno != nullptr) return CLASS_E_NOAGGREGATION;
    return NaFronteiraVigiada([&] {
        CXVCR_Middleware* pComponente = new CXVComponenteServido;
        HRESULT hr = pComponente->GetResultadoConstrucao();
        if (SUCCEEDED(hr)) hr = pComponente->QueryInterface(riid, ppvObject);
        pComponente->Release();
        return hr;
    });
}

HRESULT STDMETHODCALLTYPE CXVFabricaClasse::LockServer(BOOL bTrava) {
    return CXVVidaServidor::Get().Trava(bTrava != FALSE);
}

HRESULT CXVInscricaoFabrica::Registra() {
    return ::CoRegisterClassObject(k_clsidMiddleware, &m_Fabrica, CLSCTX_LOCAL_SERVER,
                                   REGCLS_MULTIPLEUSE | REGCLS_SUSPENDED, &m_ulInscricao);
}

HRESULT CXVInscricaoFabrica::Retoma() {
    return ::CoResumeClassObjects();
}

void CXVInscricaoFabrica::Revoga() {
    if (m_ulInscricao != 0) ::CoRevokeClassObject(m_ulInscricao);
    m_ulInscricao = 0;
}
