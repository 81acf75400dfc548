// What is wrong with a command line, in Portuguese.
#pragma once

#include <CLI/Error.hpp>
#include <string>

std::string XVDescreveErroDeUso(const CLI::ParseError& rErro);
