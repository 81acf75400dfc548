// Case of ASCII letters, without the locale.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

constexpr char XVMinuscula(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

inline bool XVIgualSemCaixa(std::string_view sUm, std::string_view sOutro) {
    return sUm == sOutro ||  // nearly always, and quicker told
           std::equal(sUm.begin(), sUm.end(), sOutro.begin(), sOutro.end(),
                      [](char a, char b) { return XVMinuscula(a) == XVMinuscula(b); });
}

inline std::string XVEmMinusculas(std::string_view s) {
    std::string sMinusculo(s);
    std::transform(sMinusculo.begin(), sMinusculo.end(), sMinusculo.begin(), XVMinuscula);
    return sMinusculo;
}
