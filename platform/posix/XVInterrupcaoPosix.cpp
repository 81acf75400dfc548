#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

#include "platform/XVInterrupcao.h"
#include "platform/posix/XVAlarmePosix.h"

namespace {

// A pipe and no flag: a request between a look at a flag and the wait for input would go unseen.
int g_aiAlarme[2] = {-1, -1};
std::atomic<int> g_iSinal = 0;
static_assert(std::atomic<int>::is_always_lock_free);

void Recebe(int iSinal) {
    const int iErrno = errno;
    g_iSinal = iSinal;
    XVInterrupcao::Desperta();
    errno = iErrno;
}

void ObservaSinal(int iSinal) {
    struct sigaction anterior {};
    if (::sigaction(iSinal, nullptr, &anterior) == 0 && anterior.sa_handler == SIG_IGN) return;
    struct sigaction acao {};
    acao.sa_handler = Recebe;
    acao.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    static_cast<void>(::sigaction(iSinal, &acao, nullptr));
}

}  // namespace

int XVAlarme() {
    return g_aiAlarme[0];
}

namespace XVInterrupcao {

bool Observa() {
    if (g_aiAlarme[0] < 0 && ::pipe2(g_aiAlarme, O_CLOEXEC | O_NONBLOCK) != 0) return false;
    g_iSinal = 0;
    for (char c = 0; ::read(g_aiAlarme[0], &c, 1) == 1;) {
    }
    for (const int iSinal : {SIGINT, SIGTERM, SIGHUP}) ObservaSinal(iSinal);
    return true;
}

bool Pedida() {
    return g_iSinal.load(std::memory_order_relaxed) != 0;
}

void Desperta() {
    // A pipe that is full has been readable for long.
    static_cast<void>(!::write(g_aiAlarme[1], "", 1));
}

int Encerra(int iSaida) {
    const int iSinal = g_iSinal;
    if (iSinal == 0) return iSaida;
    static_cast<void>(::signal(iSinal, SIG_DFL));
    static_cast<void>(::raise(iSinal));
    return 128 + iSinal;
}

}  // namespace XVInterrupcao
