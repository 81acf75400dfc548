// The program as a whole: reads the command line, runs what it asks for, says how it ended.
#pragma once

#include <string>
#include <vector>

// The arguments without the program's name; the result is the exit status.
int XVExecutaAplicacao(const std::vector<std::string>& listaArgumentos);
