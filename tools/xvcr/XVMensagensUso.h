// What is wrong with a command line, in Portuguese.
#pragma once

#include <CLI/App.hpp>
#include <string>
#include <vector>

// Found out from the declarations and what was read of the line; rErro says only of which kind it is.
std::string XVDescreveErroDeUso(const CLI::App& rRaiz, const std::vector<std::string>& listaArgumentos,
                                const CLI::ParseError& rErro);

// What is wrong where a flag is given a value ("--json=true"), which the library would take; else an empty
// text.
std::string XVDescreveValorDemais(const CLI::App& rRaiz, const std::vector<std::string>& listaArgumentos);

// " (veja "xvcr busca --help")" of the command that the line names.
std::string XVOndeHaAjuda(const CLI::App& rRaiz, const std::vector<std::string>& listaArgumentos);
