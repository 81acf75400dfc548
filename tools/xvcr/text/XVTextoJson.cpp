#include "tools/xvcr/text/XVTextoJson.h"

#include <array>

namespace {

constexpr bool PedeEscape(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\';
}

constexpr auto k_abPedeEscape = [] {
    std::array<bool, 256> ab{};
    for (unsigned i = 0; i < ab.size(); ++i) ab[i] = PedeEscape(static_cast<char>(i));
    return ab;
}();

void AnexaEscape(std::string& rPara, char c) {
    constexpr std::string_view k_sSentidos = "\b\f\n\r\t\"\\";
    constexpr std::string_view k_sLetras = "bfnrt\"\\";
    constexpr std::string_view k_sDigitos = "0123456789abcdef";
    const std::size_t uiLetra = k_sSentidos.find(c);
    if (uiLetra != std::string_view::npos) {
        rPara += '\\';
        rPara += k_sLetras[uiLetra];
        return;
    }
    rPara += "\\u00";
    rPara += k_sDigitos[static_cast<unsigned char>(c) >> 4];
    rPara += k_sDigitos[static_cast<unsigned char>(c) & 0xFU];
}

}  // namespace

void XVTextoJson::AnexaTexto(std::string& rPara, std::string_view sTexto) {
    rPara += '"';
    std::size_t uiDe = 0;
    for (std::size_t i = 0; i < sTexto.size(); ++i) {
        if (!k_abPedeEscape[static_cast<unsigned char>(sTexto[i])]) continue;
        rPara += sTexto.substr(uiDe, i - uiDe);
        AnexaEscape(rPara, sTexto[i]);
        uiDe = i + 1;
    }
    rPara += sTexto.substr(uiDe);
    rPara += '"';
}
