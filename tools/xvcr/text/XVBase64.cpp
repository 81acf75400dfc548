#include "tools/xvcr/text/XVBase64.h"

#include <cstdint>

namespace {

constexpr std::string_view k_sAlfabeto = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

namespace XVBase64 {

std::string Codifica(std::string_view sBytes) {
    std::string sTexto;
    sTexto.reserve((sBytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < sBytes.size(); i += 3) {
        const std::string_view sGrupo = sBytes.substr(i, 3);
        std::uint32_t ulGrupo = 0;
        for (std::size_t k = 0; k < 3; ++k)
            ulGrupo = (ulGrupo << 8) | (k < sGrupo.size() ? static_cast<std::uint8_t>(sGrupo[k]) : 0U);
        for (std::size_t k = 0; k < 4; ++k)
            sTexto += k <= sGrupo.size() ? k_sAlfabeto[(ulGrupo >> (18 - 6 * k)) & 63U] : '=';
    }
    return sTexto;
}

bool Decodifica(std::string_view sTexto, std::string* psBytes) {
    if (sTexto.size() % 4 != 0) return false;
    std::string sBytes;
    sBytes.reserve(sTexto.size() / 4 * 3);
    std::size_t uiPreenchimento = 0;
    if (sTexto.ends_with("==")) {
        uiPreenchimento = 2;
    } else if (sTexto.ends_with('=')) {
        uiPreenchimento = 1;
    }
    sTexto.remove_suffix(uiPreenchimento);
    std::uint32_t ulBits = 0;
    unsigned uiQuantidade = 0;
    for (const char c : sTexto) {
        const std::size_t uiValor = k_sAlfabeto.find(c);
        if (uiValor == std::string_view::npos) return false;
        ulBits = (ulBits << 6) | static_cast<std::uint32_t>(uiValor);
        uiQuantidade += 6;
        if (uiQuantidade < 8) continue;
        uiQuantidade -= 8;
        sBytes += static_cast<char>((ulBits >> uiQuantidade) & 0xFFU);
    }
    if ((ulBits & ((1U << uiQuantidade) - 1U)) != 0) return false;
    *psBytes = std::move(sBytes);
    return true;
}

}  // namespace XVBase64
