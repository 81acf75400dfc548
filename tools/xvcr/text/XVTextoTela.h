// Texts made fit for a terminal and for JSON: width, validity, escapes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace XVTextoTela {

// Whether the bytes are UTF-8 without overlong forms, surrogates or values above U+10FFFF.
bool EhUtf8(std::string_view sTexto);

// Columns that a terminal needs for a valid UTF-8 text: 0 for combining marks, 2 for wide characters.
std::size_t GetLargura(std::string_view sTexto);

// Control characters and bytes that are not UTF-8 as "\xHH", so that stored bytes never drive the terminal.
// Line feed and tab pass when bVariasLinhas.
std::string Escapa(std::string_view sTexto, bool bVariasLinhas);

// A text that needs more columns than these, cut, with "…" in the last one.
std::string Corta(const std::string& sTexto, std::size_t uiLargura);

// The text in lines of at most uiLargura columns, broken at blanks; a longer word stays whole.
std::vector<std::string> Quebra(std::string_view sTexto, std::size_t uiLargura);

}  // namespace XVTextoTela
