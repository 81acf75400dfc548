// Registry values kept in a text:
//
//   # comment (also ;)
//   [SOFTWARE\Wow6432Node\Velmora\DF]
//   "Path" = "/srv/suite"      a text; no escapes, ends at the next quote
//   Switch = 1                 a number, decimal, up to 4294967295
//
// Keys and names ignore the case of A-Z; the last of two equal names wins; a line that is none of the
// above is skipped. Thread rule: loading needs the object alone; reading is free.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "platform/XVTipos.h"

class CXVRegistryTexto {
  public:
    // Forgets what was held and takes the values of sTexto.
    void Carrega(std::string_view sTexto);

    std::optional<std::string> LeTexto(std::string_view sChave, std::string_view sValor) const;
    // A number, or a text that is a whole decimal number.
    std::optional<XVUInt> LeNumero(std::string_view sChave, std::string_view sValor) const;

    // A whole decimal number of 32 bits: digits only, without sign or blanks.
    static std::optional<XVUInt> ConverteNumero(std::string_view sTexto);

  private:
    using TValor = std::variant<std::string, XVUInt>;

    void CarregaLinha(std::string_view sLinha, std::string& sChaveAtual);
    const TValor* Busca(std::string_view sChave, std::string_view sValor) const;

    std::map<std::string, TValor> m_mapaValores;  // lower-case key, line feed, lower-case name
};
