// Machine-wide configuration values (the Windows registry under HKEY_LOCAL_MACHINE).
//
// Windows: keys under "SOFTWARE\Wow6432Node\..." are read from the 32-bit view. Where the environment names a
// text file as XV_REGISTRO the values come from there instead (format: XVRegistryTexto.h), for tests and the
// command-line program, which must not depend on the machine; the server of a Windows system forgets it.
// Elsewhere than on Windows every value is absent without it. Thread rule: any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/XVTipos.h"

class IXVRegistry {
  public:
    virtual ~IXVRegistry() = default;
    // sChave: key path below HKEY_LOCAL_MACHINE, with backslashes. Absent, unreadable or of another type:
    // nothing.
    virtual std::optional<std::string> LeTexto(std::string_view sChave, std::string_view sValor) = 0;
    // A DWORD value, or a text that is a whole decimal number.
    virtual std::optional<XVUInt> LeNumero(std::string_view sChave, std::string_view sValor) = 0;
};

// The suite's root key.
inline constexpr std::string_view k_sChaveRegistrySuite = "SOFTWARE\\Wow6432Node\\Velmora";
