#include "server/XVRuntimeChamadas.h"

#include <rpcndr.h>

#include "core/xvrpcdll/XVComponenteMiddleware.h"

CXVRuntimeChamadas::~CXVRuntimeChamadas() {
    if (m_pReferencias == nullptr) return;
    XVIgnora(m_pReferencias->Seek({}, STREAM_SEEK_SET, nullptr));
    for (; m_iMantidas > 0; --m_iMantidas) XVIgnora(::CoReleaseMarshalData(m_pReferencias));
    m_pReferencias->Release();
}

HRESULT CXVRuntimeChamadas::Prepara(IClassFactory* pFabrica) {
    ::NdrOleFree(::NdrOleAllocate(1));
    HRESULT hr = ::CreateStreamOnHGlobal(nullptr, TRUE, &m_pReferencias);
    if (SUCCEEDED(hr)) hr = Mantem(IID_IClassFactory, pFabrica);
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
