// Basic types of the system: the HRESULT and its tests, and the short integer names.
//
// On Windows HRESULT is the operating system's own type (long); elsewhere a 32-bit integer. The names
// S_OK, FAILED and their kin are defined here only where no system header has defined them.
#pragma once

#include <cstddef>
#include <cstdint>

using XVByte = std::uint8_t;
using XVUShort = std::uint16_t;
using XVUInt = std::uint32_t;
using XVUInt64 = std::uint64_t;

#ifdef _WIN32
typedef long HRESULT;
#else
typedef std::int32_t HRESULT;
#endif

// Turns a code written in hexadecimal into an HRESULT.
constexpr HRESULT XVHResult(std::uint32_t ulCodigo) {
    return static_cast<HRESULT>(ulCodigo);
}

#ifndef FAILED
constexpr bool FAILED(HRESULT hr) {
    return hr < 0;
}
#endif
#ifndef SUCCEEDED
constexpr bool SUCCEEDED(HRESULT hr) {
    return hr >= 0;
}
#endif
#ifndef S_OK
inline constexpr HRESULT S_OK = 0;
#endif
#ifndef S_FALSE
inline constexpr HRESULT S_FALSE = 1;  // success, but nothing was to be done
#endif
#ifndef E_NOTIMPL
inline constexpr HRESULT E_NOTIMPL = XVHResult(0x80004001U);
#endif
#ifndef E_POINTER
inline constexpr HRESULT E_POINTER = XVHResult(0x80004003U);
#endif
#ifndef E_FAIL
inline constexpr HRESULT E_FAIL = XVHResult(0x80004005U);
#endif
#ifndef E_UNEXPECTED
inline constexpr HRESULT E_UNEXPECTED = XVHResult(0x8000FFFFU);
#endif
#ifndef E_OUTOFMEMORY
inline constexpr HRESULT E_OUTOFMEMORY = XVHResult(0x8007000EU);
#endif
#ifndef E_INVALIDARG
inline constexpr HRESULT E_INVALIDARG = XVHResult(0x80070057U);
#endif
