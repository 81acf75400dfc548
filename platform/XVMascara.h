// Wildcard matching and name comparison for files, one rule on every system. Case is ignored for the
// letters A-Z only; other characters compare as their UTF-8 bytes.
#pragma once

#include <string_view>

namespace XVMascara {

// '*' matches any run of characters, '?' exactly one (a whole UTF-8 character). The mask must match the
// whole name: "*.dat" matches "a.DAT" but neither "a.datx" nor "a".
bool Confere(std::string_view sMascara, std::string_view sNome);

bool NomesIguais(std::string_view sNome1, std::string_view sNome2);

constexpr char Minuscula(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace XVMascara
