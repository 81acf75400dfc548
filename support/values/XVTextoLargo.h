// Wide texts of the C runtime as UTF-8.
#pragma once

#include <string>

// wchar_t holds UTF-16 or UTF-32; what is no character becomes U+FFFD. Null gives an empty text.
std::string XVTextoDeLargo(const wchar_t* pszTexto);
