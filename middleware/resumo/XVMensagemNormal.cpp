#include "middleware/resumo/XVMensagemNormal.h"

#include <algorithm>

#include "support/values/XVTextoUtf8.h"

namespace {

constexpr std::size_t k_uiMaximo = 200;  // bytes

bool EhDigito(char c) {
    return c >= '0' && c <= '9';
}
bool EhDePalavra(char c) {
    const auto uc = static_cast<unsigned char>(c);
    return EhDigito(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || uc >= 0x80;
}
// Stand inside of numbers, dates and keys: 1.234,56  2026-11-21T10:05  a/b_7.
bool EhDeMeio(char c) {
    return std::string_view("-_./:,").find(c) != std::string_view::npos;
}
bool EhBranco(char c) {
    return static_cast<unsigned char>(c) <= ' ';
}

}  // namespace

std::string XVMensagemNormal(std::string_view sMensagem) {
    const std::string_view s = sMensagem.substr(0, XVCorteUtf8(sMensagem, k_uiMaximo));
    std::string sNormal;
    for (std::size_t i = 0; i < s.size();) {
        if (EhBranco(s[i])) {
            if (!sNormal.empty() && sNormal.back() != ' ') sNormal += ' ';
            ++i;
        } else if (!EhDePalavra(s[i])) {
            sNormal += s[i++];
        } else {
            std::size_t uiFim = i;
            while (uiFim < s.size() && (EhDePalavra(s[uiFim]) || EhDeMeio(s[uiFim]))) ++uiFim;
            while (EhDeMeio(s[uiFim - 1])) --uiFim;
            const std::string_view sPalavra = s.substr(i, uiFim - i);
            if (std::any_of(sPalavra.begin(), sPalavra.end(), EhDigito))
                sNormal += '#';
            else
                sNormal += sPalavra;
            i = uiFim;
        }
    }
    if (!sNormal.empty() && sNormal.back() == ' ') sNormal.pop_back();
    return sNormal;
}
