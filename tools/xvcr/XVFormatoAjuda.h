// The help of the program in Portuguese, its columns aligned by what a terminal shows.
#pragma once

#include <CLI/CLI.hpp>

class CXVFormatoAjuda : public CLI::Formatter {
  public:
    CXVFormatoAjuda();

    std::string make_option(const CLI::Option* pOpcao, bool bPosicional) const override;
    // After the options: each kind of enumeration that they take, with all its values and their numbers.
    std::string make_footer(const CLI::App* pComando) const override;
};
