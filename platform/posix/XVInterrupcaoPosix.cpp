#include <csignal>
#include <initializer_list>

#include "platform/XVInterrupcao.h"

namespace {

volatile std::sig_atomic_t g_iPedida = 0;

void Anota(int /*iSinal*/) {
    g_iPedida = 1;
}

}  // namespace

namespace XVInterrupcao {

void Observa() {
    struct sigaction acao {};
    acao.sa_handler = Anota;
    // Calls go on where they were interrupted, and the second signal finds the system's own action.
    acao.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    sigemptyset(&acao.sa_mask);
    for (const int iSinal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction anterior {};
        ::sigaction(iSinal, &acao, &anterior);
        // Who started the program said that it is not to be ended so, as nohup does.
        if (anterior.sa_handler == SIG_IGN) ::sigaction(iSinal, &anterior, nullptr);
    }
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
}

bool FoiPedida() {
    return g_iPedida != 0;
}

}  // namespace XVInterrupcao
