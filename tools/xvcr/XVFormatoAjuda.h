// The help of the program in Portuguese, its columns aligned by what a terminal shows.
#pragma once

#include <CLI/CLI.hpp>

class CXVFormatoAjuda : public CLI::Formatter {
  public:
    CXVFormatoAjuda();

    std::string make_option(const CLI::Option* pOpcao, bool bPosicional) const override;
};
