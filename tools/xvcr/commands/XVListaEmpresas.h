// The companies that have a store in a module directory, in the order of their codes.
#pragma once

#include <string>
#include <vector>

// A directory that cannot be listed is thrown as CXVErro.
std::vector<std::string> XVListaEmpresas(const std::string& sDiretorio);
