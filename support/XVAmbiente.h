// Modules, their registry keys and directories, and the rule for company codes.
//
// Data directory of a company: <module directory>/<company>/<abbreviation of the module>. The module
// directory is the registry value "Path" of the module's key, or "Path_x64" where it is absent or
// empty.
#pragma once

#include <string>
#include <string_view>

#include "platform/XVTipos.h"

using EModulo = XVUInt;
inline constexpr EModulo XV_DF = 4;  // the module of the store's files; also the suite's base module
inline constexpr EModulo k_eModuloBase = XV_DF;
inline constexpr EModulo k_eModuloSemAuditoria = 0xFFFFFFF8U;  // deletions leave no audit entry
inline constexpr EModulo k_eModuloSemCabecalho = 0xFFFFFFFBU;  // files never get a header

namespace CAmbienteXV {

// Abbreviation ("DF"), which is also the module's registry key; the codes without a directory of their
// own share that of the base module.
std::string_view GetSiglaModulo(EModulo eModulo);

// Registry key of the module below HKEY_LOCAL_MACHINE.
std::string GetChaveRegistry(EModulo eModulo);

// The module directory, without trailing separator. Absent or empty value: eBadPath and an empty text.
HRESULT GetDiretorioModulo(EModulo eModulo, std::string* psDiretorio);

// The data directory of a module and company; the company text is checked first (E_INVALIDARG).
HRESULT GetPathDados(EModulo eModulo, std::string_view sEmpresa, std::string* psDiretorio);

// The same from a module directory that is already known; sEmpresa must be valid.
std::string MontaPathDados(EModulo eModulo, std::string_view sDiretorioModulo, std::string_view sEmpresa);

// 1 to 47 characters of A-Z a-z 0-9 _ -, and no device name.
bool EhEmpresaValida(std::string_view sEmpresa);

}  // namespace CAmbienteXV
