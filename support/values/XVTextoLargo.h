// Wide texts as UTF-8; what is no character becomes U+FFFD.
#pragma once

#include <string>
#include <string_view>

// Of the C runtime: wchar_t holds UTF-16 or UTF-32. Null gives an empty text.
std::string XVTextoDeLargo(const wchar_t* pszTexto);

// Of a file, whose bytes begin with the mark of UTF-16 in either order; any other bytes as they are. A last
// half unit is left out.
std::string XVTextoDeArquivo(std::string_view sBytes);
