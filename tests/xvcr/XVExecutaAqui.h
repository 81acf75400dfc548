// The program inside the test's own process, and what its output with --json says.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/harness/XVExecucao.h"

SExecucao XVExecutaAqui(const std::vector<std::string>& listaArgumentos);

// A command line as it is written, its words parted by blanks.
std::vector<std::string> XVPalavras(const std::string& sLinha);

// One value for each line.
std::vector<nlohmann::json> XVLinhasJson(const std::string& sTexto);
