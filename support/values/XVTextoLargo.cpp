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

template <class TUnidade>
std::string Converte(std::basic_string_view<TUnidade> sLargo) {
    std::string sTexto;
    for (std::size_t i = 0; i < sLargo.size(); ++i) {
        auto ul = static_cast<std::uint32_t>(sLargo[i]);
        const std::uint32_t ulSeguinte =
            i + 1 < sLargo.size() ? static_cast<std::uint32_t>(sLargo[i + 1]) : 0;
        if (EhAlto(ul) && EhBaixo(ulSeguinte)) {  // a pair of UTF-16
            ul = 0x10000 + ((ul - 0xD800) << 10) + (ulSeguinte - 0xDC00);
            ++i;
        }
        if (EhAlto(ul) || EhBaixo(ul) || ul > 0x10FFFF) ul = k_ulSubstituto;
        AnexaUtf8(sTexto, ul);
    }
    return sTexto;
}

}  // namespace

std::string XVTextoDeLargo(const wchar_t* pszTexto) {
    return pszTexto == nullptr ? std::string() : Converte(std::wstring_view(pszTexto));
}

std::string XVTextoDeArquivo(std::string_view sBytes) {
    const bool bMenorPrimeiro = sBytes.starts_with("\xFF\xFE");
    if (!bMenorPrimeiro && !sBytes.starts_with("\xFE\xFF")) return std::string(sBytes);
    const auto byte = [&](std::size_t i) {
        return static_cast<unsigned>(static_cast<unsigned char>(sBytes[i]));
    };
    std::u16string sLargo;
    for (std::size_t i = 2; i + 1 < sBytes.size(); i += 2)
        sLargo +=
            static_cast<char16_t>(bMenorPrimeiro ? byte(i) | byte(i + 1) << 8 : byte(i) << 8 | byte(i + 1));
    return Converte(std::u16string_view(sLargo));
}
