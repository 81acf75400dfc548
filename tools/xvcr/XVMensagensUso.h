// What is wrong with a command line, in Portuguese.
#pragma once

#include <CLI/Error.hpp>
#include <string>
#include <vector>

// listaSobras: arguments that belong to no command or option.
std::string XVDescreveErroDeUso(const CLI::ParseError& rErro, const std::vector<std::string>& listaSobras);
