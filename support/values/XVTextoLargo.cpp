#include "support/values/XVTextoLargo.h"

#include <cstdint>

namespace {

constexpr std::uint32_t k_ulSubstituto = 0xFFFD;

bool EhAlto(std::uint32_t ul) {
    return ul >= 0xD800 && ul <= 0xDBFF;
}
bool EhBaixo(std::uint32_t ul) {
    return ul >= 0xDC00 && ul <= 0xDFFF;
}

void AnexaUtf8(std::string& rTexto, std::uint32_t ul) {
    const auto byte = [&](std::uint32_t ulByte) { rTexto += static_cast<char>(ulByte); };
    if (ul < 0x80) {
        byte(ul);
    } else if (ul < 0x800) {
        byte(0xC0 | ul >> 6);
        byte(0x80 | (ul & 0x3F));
    } else if (ul < 0x10000) {
        byte(0xE0 | ul >> 12);
        byte(0x80 | (ul >> 6 & 0x3F));
        byte(0x80 | (ul & 0x3F));
    } else {
        byte(0xF0 | ul >> 18);
        byte(0x80 | (ul >> 12 & 0x3F));
        byte(0x80 | (ul >> 6 & 0x3F));
        byte(0x80 | (ul & 0x3F));
    }
}

}  // namespace

std::string XVTextoDeLargo(const wchar_t* pszTexto) {
    std::string sTexto;
    if (pszTexto == nullptr) return sTexto;
    for (; *pszTexto != L'\0'; ++pszTexto) {
        auto ul = static_cast<std::uint32_t>(*pszTexto);
        // A pair of UTF-16; the second half is looked at only after a first one, so never past the end.
        if (EhAlto(ul) && EhBaixo(static_cast<std::uint32_t>(pszTexto[1])))
            ul = 0x10000 + ((ul - 0xD800) << 10) + (static_cast<std::uint32_t>(*++pszTexto) - 0xDC00);
        if (EhAlto(ul) || EhBaixo(ul) || ul > 0x10FFFF) ul = k_ulSubstituto;
        AnexaUtf8(sTexto, ul);
    }
    return sTexto;
}
