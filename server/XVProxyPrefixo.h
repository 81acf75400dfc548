/* Put before the generated proxy sources: what they use and do not declare. */
#include <windows.h>

#include <ole2.h>

HRESULT STDMETHODCALLTYPE IUnknown_QueryInterface_Proxy(IUnknown*, REFIID, void**);
ULONG STDMETHODCALLTYPE IUnknown_AddRef_Proxy(IUnknown*);
ULONG STDMETHODCALLTYPE IUnknown_Release_Proxy(IUnknown*);
