// The few names of COM that the component object is made of. On Windows they are the system's own;
// elsewhere this header declares the same shapes, so that the component object compiles and is tested there.
#pragma once

#ifdef _WIN32

#include <windows.h>

#include <unknwn.h>

#include "platform/XVTipos.h"

#else

#include <cstring>

#include "platform/XVTipos.h"

#define STDMETHODCALLTYPE

using ULONG = XVUInt;

struct GUID {
    XVUInt Data1;
    XVUShort Data2;
    XVUShort Data3;
    XVByte Data4[8];
};
static_assert(sizeof(GUID) == 16);
using IID = GUID;
using REFIID = const IID&;

inline bool IsEqualGUID(const GUID& a, const GUID& b) {
    return std::memcmp(&a, &b, sizeof(GUID)) == 0;
}

#ifndef E_NOINTERFACE
inline constexpr HRESULT E_NOINTERFACE = XVHResult(0x80004002U);
#endif

inline constexpr IID IID_IUnknown{0, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

// Lifetime is counted, never deleted through this type: there is no virtual destructor, because its
// slot would come between the interface's own.
struct IUnknown {
    virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppvObject) = 0;
    virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE Release() = 0;

  protected:
    ~IUnknown() = default;
};

#endif

// Stand around classes that derive from an interface of the system: COM ends objects by counting, so its
// interfaces have no virtual destructor, of which some compilers warn.
#if defined(__GNUC__)
#define XV_INTERFACE_COM_INICIO \
    _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Wnon-virtual-dtor\"")
#define XV_INTERFACE_COM_FIM _Pragma("GCC diagnostic pop")
#else
#define XV_INTERFACE_COM_INICIO
#define XV_INTERFACE_COM_FIM
#endif
