#include "tools/xvcr/text/XVTextoTela.h"

#include <algorithm>
#include <cstdint>
#include <span>

namespace {

struct SFaixa {
    char32_t cPrimeiro;
    char32_t cUltimo;
};

// Marks drawn over the character before them, and characters without width.
constexpr SFaixa k_aSemLargura[] = {{0x300, 0x36F},   {0x483, 0x489},   {0x591, 0x5BD},   {0x610, 0x61A},
                                    {0x64B, 0x65F},   {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x200B, 0x200F},
                                    {0x20D0, 0x20F0}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF}};
constexpr SFaixa k_aLarga[] = {{0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0xA4CF},
                               {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},
                               {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},   {0x1F300, 0x1F64F},
                               {0x1F680, 0x1F6FF}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};

bool Contem(std::span<const SFaixa> aFaixas, char32_t c) {
    for (const SFaixa& rFaixa : aFaixas)
        if (c >= rFaixa.cPrimeiro && c <= rFaixa.cUltimo) return true;
    return false;
}

// Length of the valid UTF-8 sequence at the front of sTexto, 0 when there is none.
std::size_t DecodificaUm(std::string_view sTexto, char32_t* pc) {
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(sTexto[i]); };
    const std::uint8_t ucPrimeiro = byte(0);
    if (ucPrimeiro < 0x80) {
        *pc = ucPrimeiro;
        return 1;
    }
    const std::size_t uiBytes = ucPrimeiro >= 0xF0 ? 4 : ucPrimeiro >= 0xE0 ? 3 : 2;
    if (ucPrimeiro < 0xC2 || ucPrimeiro > 0xF4 || sTexto.size() < uiBytes) return 0;
    char32_t c = ucPrimeiro & (0xFFU >> (uiBytes + 1));
    for (std::size_t i = 1; i < uiBytes; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U) return 0;
        c = (c << 6) | (byte(i) & 0x3FU);
    }
    constexpr char32_t k_aMinimo[] = {0, 0, 0x80, 0x800, 0x10000};
    if (c < k_aMinimo[uiBytes] || (c >= 0xD800 && c <= 0xDFFF) || c > 0x10FFFF) return 0;
    *pc = c;
    return uiBytes;
}

void AnexaByte(std::string& sSaida, std::uint8_t ucByte) {
    constexpr char k_szDigitos[] = "0123456789ABCDEF";
    sSaida += "\\x";
    sSaida += k_szDigitos[ucByte >> 4];
    sSaida += k_szDigitos[ucByte & 15U];
}

// C0, DEL and C1 controls, and the marks that change the direction of what follows.
bool EhControle(char32_t c) {
    return c < 0x20 || (c >= 0x7F && c < 0xA0) || (c >= 0x202A && c <= 0x202E) ||
           (c >= 0x2066 && c <= 0x2069);
}

}  // namespace

namespace XVTextoTela {

bool EhUtf8(std::string_view sTexto) {
    char32_t c = 0;
    while (!sTexto.empty()) {
        const std::size_t uiBytes = DecodificaUm(sTexto, &c);
        if (uiBytes == 0) return false;
        sTexto.remove_prefix(uiBytes);
    }
    return true;
}

std::size_t GetLargura(std::string_view sTexto) {
    std::size_t uiLargura = 0;
    char32_t c = 0;
    while (!sTexto.empty()) {
        const std::size_t uiBytes = DecodificaUm(sTexto, &c);
        uiLargura += uiBytes == 0 ? 1U : Contem(k_aSemLargura, c) ? 0U : Contem(k_aLarga, c) ? 2U : 1U;
        sTexto.remove_prefix(uiBytes == 0 ? 1 : uiBytes);
    }
    return uiLargura;
}

std::string Escapa(std::string_view sTexto, bool bVariasLinhas) {
    std::string sSaida;
    sSaida.reserve(sTexto.size());
    char32_t c = 0;
    while (!sTexto.empty()) {
        std::size_t uiBytes = DecodificaUm(sTexto, &c);
        const bool bPassa = uiBytes != 0 && (!EhControle(c) || (bVariasLinhas && (c == '\n' || c == '\t')));
        if (uiBytes == 0) uiBytes = 1;
        for (std::size_t i = 0; i < uiBytes; ++i) {
            if (bPassa)
                sSaida += sTexto[i];
            else
                AnexaByte(sSaida, static_cast<std::uint8_t>(sTexto[i]));
        }
        sTexto.remove_prefix(uiBytes);
    }
    return sSaida;
}

std::string Corta(const std::string& sTexto, std::size_t uiLargura) {
    if (GetLargura(sTexto) <= uiLargura) return sTexto;
    std::string sCortado;
    for (std::string_view sResto = sTexto; !sResto.empty();) {
        char32_t c = 0;
        const std::size_t uiBytes = std::max<std::size_t>(DecodificaUm(sResto, &c), 1);
        if (GetLargura(sCortado) + GetLargura(sResto.substr(0, uiBytes)) + 1 > uiLargura) break;
        sCortado += sResto.substr(0, uiBytes);
        sResto.remove_prefix(uiBytes);
    }
    return sCortado + "…";
}

std::vector<std::string> Quebra(std::string_view sTexto, std::size_t uiLargura) {
    std::vector<std::string> listaLinhas(1);
    while (!sTexto.empty()) {
        const std::string_view sPalavra = sTexto.substr(0, sTexto.find(' '));
        sTexto.remove_prefix(std::min(sPalavra.size() + 1, sTexto.size()));
        if (!listaLinhas.back().empty() &&
            GetLargura(listaLinhas.back()) + 1 + GetLargura(sPalavra) > uiLargura)
            listaLinhas.emplace_back();
        if (!listaLinhas.back().empty()) listaLinhas.back() += ' ';
        listaLinhas.back() += sPalavra;
    }
    return listaLinhas;
}

}  // namespace XVTextoTela
