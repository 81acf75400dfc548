// Texts made fit for a terminal and for JSON: width, validity, escapes.
#pragma once

#include <string>
#include <string_view>

namespace XVTextoTela {

// Whether the bytes are UTF-8 without overlong forms, surrogates or values above U+10FFFF.
bool EhUtf8(std::string_view sTexto);

// Columns that a terminal needs for a valid UTF-8 text: 0 for combining marks, 2 for wide characters.
std::size_t GetLargura(std::string_view sTexto);

// Control characters and bytes that are not UTF-8 as "\xHH", so that stored bytes never drive the terminal.
// Line feed and tab pass when bVariasLinhas.
std::string Escapa(std::string_view sTexto, bool bVariasLinhas);

}  // namespace XVTextoTela
