// Cutting a UTF-8 text between two characters.
#pragma once

#include <string_view>

// Length of the longest start of sTexto that has at most uiMaximo bytes and ends between two characters.
inline std::size_t XVCorteUtf8(std::string_view sTexto, std::size_t uiMaximo) {
    if (sTexto.size() <= uiMaximo) return sTexto.size();
    std::size_t uiCorte = uiMaximo;
    while (uiCorte > 0 && (static_cast<unsigned char>(sTexto[uiCorte]) & 0xC0U) == 0x80U) --uiCorte;
    return uiCorte;
}
