// Runs the script in the directory given and prints the list of files: the way to renew
// XVRoteiroEsperado.txt after a deliberate change of a format.
#include <cstdio>

#include "tests/middleware/XVRoteiro.h"

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    const std::string sLista = XVExecutaRoteiro(argv[1]);
    std::fwrite(sLista.data(), 1, sLista.size(), stdout);
    return sLista.empty() ? 1 : 0;
}
