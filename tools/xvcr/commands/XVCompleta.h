// Completion of a command line, from the declarations.
#pragma once

#include <CLI/App.hpp>
#include <string>
#include <vector>

// What the last of the words, which is not whole, may become: commands, options, values of enumerations.
// Nothing where only the person knows.
std::vector<std::string> XVCompletaPalavras(const CLI::App& rRaiz,
                                            const std::vector<std::string>& listaPalavras);
