#include "tests/platform/posix/XVChamadas.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <type_traits>
#include <utility>

namespace {

// The system's own function behind the one of this program.
template <class TFuncao>
TFuncao* Proxima(const char* pszNome) {
    return reinterpret_cast<TFuncao*>(dlsym(RTLD_NEXT, pszNome));
}

ino_t Arquivo(int iDescritor) {
    struct stat estado {};
    return Proxima<int(int, struct stat*)>("fstat")(iDescritor, &estado) == 0 ? estado.st_ino : 0;
}

int Passa(const SChamada& rChamada) {
    return CXVChamadas::Viva() != nullptr ? CXVChamadas::Viva()->Passa(rChamada) : 0;
}
std::size_t Corta(std::size_t uiBytes) {
    return CXVChamadas::Viva() != nullptr ? CXVChamadas::Viva()->Corta(uiBytes) : uiBytes;
}

// The call of this name goes on, unless the plan lets it fail.
template <class TFuncao, class... TArgumentos>
auto Segue(const SChamada& rChamada, const char* pszNome, TArgumentos... argumentos) {
    using TResposta = std::invoke_result_t<TFuncao*, TArgumentos...>;
    TFuncao* const pfn = Proxima<TFuncao>(pszNome);
    const int iErrno = Passa(rChamada);
    if (iErrno == 0) return pfn(argumentos...);
    errno = iErrno;
    if constexpr (std::is_pointer_v<TResposta>)
        return TResposta{};
    else
        return TResposta{-1};
}

}  // namespace

extern "C" {

int open(const char* pszCaminho, int iOpcoes, ...) {
    va_list argumentos;
    va_start(argumentos, iOpcoes);
    const mode_t modo = (iOpcoes & O_CREAT) != 0 ? va_arg(argumentos, mode_t) : 0;
    va_end(argumentos);
    return Segue<decltype(open)>({EChamada::eOpen}, "open", pszCaminho, iOpcoes, modo);
}

ssize_t pread(int iDescritor, void* pDados, size_t uiTamanho, off_t iOffset) {
    return Segue<decltype(pread)>({EChamada::ePread, Arquivo(iDescritor)}, "pread", iDescritor, pDados,
                                  Corta(uiTamanho), iOffset);
}

ssize_t pwrite(int iDescritor, const void* pDados, size_t uiTamanho, off_t iOffset) {
    return Segue<decltype(pwrite)>({EChamada::ePwrite, Arquivo(iDescritor)}, "pwrite", iDescritor, pDados,
                                   Corta(uiTamanho), iOffset);
}

ssize_t write(int iDescritor, const void* pDados, size_t uiTamanho) {
    return Segue<decltype(write)>({EChamada::eWrite, Arquivo(iDescritor)}, "write", iDescritor, pDados,
                                  Corta(uiTamanho));
}

int ftruncate(int iDescritor, off_t iTamanho) noexcept {
    return Segue<decltype(ftruncate)>({EChamada::eFtruncate, Arquivo(iDescritor)}, "ftruncate", iDescritor,
                                      iTamanho);
}

int fsync(int iDescritor) {
    return Segue<decltype(fsync)>({EChamada::eDescarrega, Arquivo(iDescritor)}, "fsync", iDescritor);
}

int fdatasync(int iDescritor) {
    return Segue<decltype(fdatasync)>({EChamada::eDescarrega, Arquivo(iDescritor)}, "fdatasync", iDescritor);
}

int flock(int iDescritor, int iOperacao) noexcept {
    if (iOperacao == LOCK_UN) return Proxima<decltype(flock)>("flock")(iDescritor, iOperacao);
    return Segue<decltype(flock)>({EChamada::eFlock, Arquivo(iDescritor)}, "flock", iDescritor, iOperacao);
}

int rename(const char* pszOrigem, const char* pszDestino) noexcept {
    return Segue<decltype(rename)>({EChamada::eRename}, "rename", pszOrigem, pszDestino);
}

int renameat2(int iOrigem, const char* pszOrigem, int iDestino, const char* pszDestino,
              unsigned int ulOpcoes) noexcept {
    return Segue<decltype(renameat2)>({EChamada::eRename}, "renameat2", iOrigem, pszOrigem, iDestino,
                                      pszDestino, ulOpcoes);
}

int unlink(const char* pszCaminho) noexcept {
    return Segue<decltype(unlink)>({EChamada::eUnlink}, "unlink", pszCaminho);
}

int fstat(int iDescritor, struct stat* pEstado) noexcept {
    return Segue<int(int, struct stat*)>({EChamada::eFstat}, "fstat", iDescritor, pEstado);
}

dirent* readdir(DIR* pDiretorio) {
    return Segue<decltype(readdir)>({EChamada::eReaddir}, "readdir", pDiretorio);
}

int close(int iDescritor) {
    const SChamada chamada{EChamada::eClose, Arquivo(iDescritor)};
    const int iResultado = Proxima<decltype(close)>("close")(iDescritor);
    const int iErrno = Passa(chamada);
    errno = iErrno != 0 ? iErrno : errno;
    return iErrno != 0 ? -1 : iResultado;
}

// Interrupted, it leaves a third of the time.
int nanosleep(const timespec* pTempo, timespec* pResto) {
    if (CXVChamadas::Viva() == nullptr) return Proxima<decltype(nanosleep)>("nanosleep")(pTempo, pResto);
    const long lNanossegundos = static_cast<long>(pTempo->tv_sec) * 1000000000L + pTempo->tv_nsec;
    errno = Passa({EChamada::eNanosleep, 0, lNanossegundos});
    if (errno == 0) return 0;
    if (pResto != nullptr) *pResto = {lNanossegundos / 3 / 1000000000L, lNanossegundos / 3 % 1000000000L};
    return -1;
}

}  // extern "C"
