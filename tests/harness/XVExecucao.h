// One whole run of another program: what went in, what came out of it.
#pragma once

#include <string>
#include <vector>

struct SExecucao {
    int iSaida = -1;     // exit status; -1 when it was killed
    std::string sSaida;  // bytes of the standard output
    std::string sErro;   // bytes of the error output
};

// Runs the program to its end with sEntrada as its standard input. Arguments are UTF-8 (elsewhere than on
// Windows, any bytes). A program that cannot be started throws std::runtime_error.
SExecucao XVExecuta(const std::string& sPrograma, const std::vector<std::string>& listaArgumentos,
                    const std::string& sEntrada = {});
