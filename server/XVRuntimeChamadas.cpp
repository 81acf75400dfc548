#include "server/XVRuntimeChamadas.h"

#include <rpcndr.h>

#include "core/xvrpcdll/XVComponenteMiddleware.h"

namespace {

XV_INTERFACE_COM_INICIO

// Keeps the interface of the class. The class itself must not: the system holds a lock on one for as long as
// a reference to it is out, and the server would take that for a client's. A static object: never destroyed
// by counting.
class CXVFabricaSemClasse final : public IClassFactory {
  public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppvObject) override {
        *ppvObject = nullptr;
        if (!IsEqualGUID(riid, IID_IUnknown) && !IsEqualGUID(riid, IID_IClassFactory)) return E_NOINTERFACE;
        *ppvObject = static_cast<IClassFactory*>(this);
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID, void** ppvObject) override {
        *ppvObject = nullptr;
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

XV_INTERFACE_COM_FIM

}  // namespace

CXVRuntimeChamadas::~CXVRuntimeChamadas() {
    if (m_pReferencias == nullptr) return;
    XVIgnora(m_pReferencias->Seek({}, STREAM_SEEK_SET, nullptr));
    for (; m_iMantidas > 0; --m_iMantidas) XVIgnora(::CoReleaseMarshalData(m_pReferencias));
    m_pReferencias->Release();
}

HRESULT CXVRuntimeChamadas::Prepara() {
    static CXVFabricaSemClasse s_fabrica;
    ::NdrOleFree(::NdrOleAllocate(1));
    HRESULT hr = ::CreateStreamOnHGlobal(nullptr, TRUE, &m_pReferencias);
    if (SUCCEEDED(hr)) hr = Mantem(IID_IClassFactory, &s_fabrica);
    if (FAILED(hr)) return hr;
    // A component without a client: it belongs to no store, and does not hold the process.
    auto* pComponente = new CXVCR_Middleware;
    hr = Mantem(IXVCR_Middleware::k_iidInterface, pComponente);
    pComponente->Release();
    return hr;
}

HRESULT CXVRuntimeChamadas::Mantem(REFIID riid, IUnknown* pObjeto) {
    const HRESULT hr =
        ::CoMarshalInterface(m_pReferencias, riid, pObjeto, MSHCTX_LOCAL, nullptr, MSHLFLAGS_TABLESTRONG);
    if (SUCCEEDED(hr)) ++m_iMantidas;
    return hr;
}
