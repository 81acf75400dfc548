#include <fcntl.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include "platform/XVConsole.h"

namespace XVConsole {

// A standard stream that the caller closed keeps its number from any file that is opened later, and fails as
// before: /dev/null is opened the wrong way round.
void Prepara() {
    for (const int iFluxo : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(iFluxo, F_GETFD) == -1)
            static_cast<void>(::open("/dev/null", iFluxo == STDIN_FILENO ? O_WRONLY : O_RDONLY));
}

std::vector<std::string> GetArgumentos(int iQuantidade, const char* const* ppszArgumentos) {
    if (iQuantidade < 1) return {};
    return std::vector<std::string>(ppszArgumentos + 1, ppszArgumentos + iQuantidade);
}

void CanoSemLeitorEhFalha() {
    static_cast<void>(::signal(SIGPIPE, SIG_IGN));
}

bool SaidaEhTerminal() {
    return ::isatty(STDOUT_FILENO) == 1;
}
unsigned GetLarguraSaida() {
    winsize tamanho{};
    return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &tamanho) == 0 ? tamanho.ws_col : 0;
}
bool SaidaAceitaCores() {
    const char* pszTerminal = std::getenv("TERM");
    return SaidaEhTerminal() && pszTerminal != nullptr && std::string_view(pszTerminal) != "dumb";
}
bool ErroEhTerminal() {
    return ::isatty(STDERR_FILENO) == 1;
}

}  // namespace XVConsole
