#include "platform/posix/XVDescritorPosix.h"

#include <fcntl.h>

CXVDescritor XVAbreDescritor(const std::string& sCaminho, int iOpcoes, mode_t modo) {
    CXVDescritor aberto(
        XVRepeteInterrompida([&] { return open(sCaminho.c_str(), iOpcoes | O_CLOEXEC, modo); }));
    if (!aberto.EhValido() || aberto.Get() > STDERR_FILENO) {
        return aberto;
    }
    CXVDescritor acima(fcntl(aberto.Get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    const int iErrno = errno;
    aberto.Fecha();
    errno = iErrno;
    return acima;
}
