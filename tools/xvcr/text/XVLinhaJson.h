// One JSON object taken apart into its members without changing a byte of their values: embedded documents
// keep their numbers, escapes and order of keys.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct SMembroJson {
    std::string sNome;
    std::string_view sValor;  // as it stands in the line

    enum class ETipo { eTexto, eComposto, eNumero, eLogico, eNulo };
    ETipo GetTipo() const;
    // The content of a text.
    std::string GetTexto() const;
    // The value without white space between its tokens.
    std::string GetCompacto() const;
};

// The members of the object that sLinha holds; views into it. The result other than an empty text says in
// Portuguese what is wrong (no JSON, not one object, a repeated name).
[[nodiscard]] std::string XVSeparaMembros(std::string_view sLinha, std::vector<SMembroJson>* pLista);
