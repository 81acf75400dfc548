// Which companies have a store in a module directory.
#pragma once

#include <string>
#include <vector>

// In ascending order. A directory that cannot be listed is thrown as CXVErro.
std::vector<std::string> XVListaEmpresas(const std::string& sDiretorioModulo);
