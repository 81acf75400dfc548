// Paths in the form that the operating system takes.
#pragma once

#include <string>

#include "platform/XVErroArquivo.h"

namespace XVCaminhoWindows {

inline constexpr const char* k_pszSeparadores = "/\\";

// UTF-16 with backslashes; long paths are made absolute and get the prefix that lifts the limit of 260
// characters. Invalid UTF-8, NUL, a device path or a stream of a file: eCaminhoInvalido.
CXVErroArquivo Converte(const std::string& sCaminho, std::wstring& sLargo);

// The same for a path that must name a file: no separator at the end.
CXVErroArquivo ConverteArquivo(const std::string& sCaminho, std::wstring& sLargo);

}  // namespace XVCaminhoWindows
