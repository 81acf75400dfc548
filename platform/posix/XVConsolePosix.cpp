#include <unistd.h>

#include "platform/XVConsole.h"

namespace XVConsole {

void Prepara() {}

std::vector<std::string> GetArgumentos(int iQuantidade, const char* const* ppszArgumentos) {
    if (iQuantidade < 1) return {};
    return std::vector<std::string>(ppszArgumentos + 1, ppszArgumentos + iQuantidade);
}

bool SaidaEhTerminal() {
    return ::isatty(STDOUT_FILENO) == 1;
}
bool ErroEhTerminal() {
    return ::isatty(STDERR_FILENO) == 1;
}

}  // namespace XVConsole
