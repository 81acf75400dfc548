// Reader of "private profile" texts (.ini): "[Section]" lines, "key=value" lines, ";" comments. Names of
// sections and keys are found without regard to case; the first of several equal ones counts. Blanks
// around names and values, and one pair of quotes around a value, are dropped.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

class CXVPerfilPrivado {
  public:
    // sConteudo must live as long as the object and what it returns.
    explicit CXVPerfilPrivado(std::string_view sConteudo);

    std::optional<std::string_view> LeTexto(std::string_view sSecao, std::string_view sChave) const;

    // Blanks, a sign, 0x, 0o or 0b, then digits up to the first other character; no digits: 0. An absent or
    // empty value: iPadrao. Values beyond 64 bits saturate.
    std::int64_t LeInteiro(std::string_view sSecao, std::string_view sChave, std::int64_t iPadrao) const;

  private:
    std::string_view m_sConteudo;
};
