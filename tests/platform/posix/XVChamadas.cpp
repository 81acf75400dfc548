#include "tests/platform/posix/XVChamadas.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <utility>

namespace {

CXVChamadas* g_pChamadas = nullptr;

// The system's own function behind the one of this program.
template <class TFuncao>
TFuncao* Proxima(const char* pszNome) {
    return reinterpret_cast<TFuncao*>(dlsym(RTLD_NEXT, pszNome));
}

ino_t Arquivo(int iDescritor) {
    struct stat estado {};
    return Proxima<int(int, struct stat*)>("fstat")(iDescritor, &estado) == 0 ? estado.st_ino : 0;
}

// Calls fnChamada unless the plan lets this call fail.
template <class TChamada>
auto Passa(const SChamada& rChamada, decltype(std::declval<TChamada>()()) falha, TChamada fnChamada) {
    if (const int iErrno = CXVChamadas::Passa(rChamada); iErrno != 0) {
        errno = iErrno;
        return falha;
    }
    return fnChamada();
}

int Descarrega(int iDescritor, const char* pszNome) {
    return Passa({EChamada::eDescarrega, Arquivo(iDescritor)}, -1,
                 [&] { return Proxima<int(int)>(pszNome)(iDescritor); });
}

}  // namespace

CXVChamadas::CXVChamadas() {
    g_pChamadas = this;
}
CXVChamadas::~CXVChamadas() {
    g_pChamadas = nullptr;
}

void CXVChamadas::Falha(EChamada eChamada, int iErrno, unsigned ulVezes, unsigned ulAntes) {
    Plano(eChamada).iErrno = iErrno;
    Plano(eChamada).ulVezes = ulVezes;
    Plano(eChamada).ulAntes = ulAntes;
}

void CXVChamadas::Antes(EChamada eChamada, std::function<void()> fn) {
    Plano(eChamada).fnAntes = std::move(fn);
}

void CXVChamadas::LimitaTransferencias(std::size_t uiBytes) {
    m_uiMaximo = uiBytes;
}

std::size_t CXVChamadas::Conta(EChamada eChamada) const {
    return Filtra({eChamada}).size();
}

std::vector<SChamada> CXVChamadas::Filtra(const std::vector<EChamada>& listaChamadas) const {
    std::vector<SChamada> lista;
    std::copy_if(m_listaChamadas.begin(), m_listaChamadas.end(), std::back_inserter(lista),
                 [&](const SChamada& rChamada) {
                     return std::count(listaChamadas.begin(), listaChamadas.end(), rChamada.eChamada) != 0;
                 });
    return lista;
}

int CXVChamadas::Passa(const SChamada& rChamada) {
    return g_pChamadas != nullptr ? g_pChamadas->Registra(rChamada) : 0;
}

std::size_t CXVChamadas::Corta(std::size_t uiBytes) {
    return g_pChamadas != nullptr ? std::min(uiBytes, g_pChamadas->m_uiMaximo) : uiBytes;
}

bool CXVChamadas::EstaVivo() {
    return g_pChamadas != nullptr;
}

int CXVChamadas::Registra(const SChamada& rChamada) {
    m_listaChamadas.push_back(rChamada);
    SPlano& rPlano = Plano(rChamada.eChamada);
    if (const std::function<void()> fnAntes = std::exchange(rPlano.fnAntes, nullptr)) {
        fnAntes();
    }
    if (rPlano.ulVezes == 0) {
        return 0;
    }
    if (rPlano.ulAntes > 0) {
        --rPlano.ulAntes;
        return 0;
    }
    --rPlano.ulVezes;
    return rPlano.iErrno;
}

extern "C" {

int open(const char* pszCaminho, int iOpcoes, ...) {
    va_list argumentos;
    va_start(argumentos, iOpcoes);
    const mode_t modo = (iOpcoes & O_CREAT) != 0 ? va_arg(argumentos, mode_t) : 0;
    va_end(argumentos);
    return Passa({EChamada::eOpen}, -1,
                 [&] { return Proxima<int(const char*, int, ...)>("open")(pszCaminho, iOpcoes, modo); });
}

ssize_t pread(int iDescritor, void* pDados, size_t uiTamanho, off_t iOffset) {
    return Passa({EChamada::ePread, Arquivo(iDescritor)}, ssize_t{-1}, [&] {
        return Proxima<ssize_t(int, void*, size_t, off_t)>("pread")(iDescritor, pDados,
                                                                    CXVChamadas::Corta(uiTamanho), iOffset);
    });
}

ssize_t pwrite(int iDescritor, const void* pDados, size_t uiTamanho, off_t iOffset) {
    return Passa({EChamada::ePwrite, Arquivo(iDescritor)}, ssize_t{-1}, [&] {
        return Proxima<ssize_t(int, const void*, size_t, off_t)>("pwrite")(
            iDescritor, pDados, CXVChamadas::Corta(uiTamanho), iOffset);
    });
}

ssize_t write(int iDescritor, const void* pDados, size_t uiTamanho) {
    return Passa({EChamada::eWrite, Arquivo(iDescritor)}, ssize_t{-1}, [&] {
        return Proxima<ssize_t(int, const void*, size_t)>("write")(iDescritor, pDados,
                                                                   CXVChamadas::Corta(uiTamanho));
    });
}

int ftruncate(int iDescritor, off_t iTamanho) noexcept {
    return Passa({EChamada::eFtruncate, Arquivo(iDescritor)}, -1,
                 [&] { return Proxima<int(int, off_t)>("ftruncate")(iDescritor, iTamanho); });
}

int fsync(int iDescritor) {
    return Descarrega(iDescritor, "fsync");
}

int fdatasync(int iDescritor) {
    return Descarrega(iDescritor, "fdatasync");
}

int flock(int iDescritor, int iOperacao) noexcept {
    const auto fnChamada = [&] { return Proxima<int(int, int)>("flock")(iDescritor, iOperacao); };
    return iOperacao == LOCK_UN ? fnChamada() : Passa({EChamada::eFlock, Arquivo(iDescritor)}, -1, fnChamada);
}

int rename(const char* pszOrigem, const char* pszDestino) noexcept {
    return Passa({EChamada::eRename}, -1,
                 [&] { return Proxima<int(const char*, const char*)>("rename")(pszOrigem, pszDestino); });
}

int renameat2(int iOrigem, const char* pszOrigem, int iDestino, const char* pszDestino,
              unsigned int ulOpcoes) noexcept {
    return Passa({EChamada::eRename}, -1, [&] {
        return Proxima<int(int, const char*, int, const char*, unsigned int)>("renameat2")(
            iOrigem, pszOrigem, iDestino, pszDestino, ulOpcoes);
    });
}

int unlink(const char* pszCaminho) noexcept {
    return Passa({EChamada::eUnlink}, -1, [&] { return Proxima<int(const char*)>("unlink")(pszCaminho); });
}

int fstat(int iDescritor, struct stat* pEstado) noexcept {
    return Passa({EChamada::eFstat}, -1,
                 [&] { return Proxima<int(int, struct stat*)>("fstat")(iDescritor, pEstado); });
}

dirent* readdir(DIR* pDiretorio) {
    return Passa({EChamada::eReaddir}, static_cast<dirent*>(nullptr),
                 [&] { return Proxima<dirent*(DIR*)>("readdir")(pDiretorio); });
}

int close(int iDescritor) {
    const SChamada chamada{EChamada::eClose, Arquivo(iDescritor)};
    const int iResultado = Proxima<int(int)>("close")(iDescritor);
    return Passa(chamada, -1, [&] { return iResultado; });
}

// Interrupted, it leaves a third of the time.
int nanosleep(const timespec* pTempo, timespec* pResto) {
    if (!CXVChamadas::EstaVivo()) {
        return Proxima<int(const timespec*, timespec*)>("nanosleep")(pTempo, pResto);
    }
    const long lNanossegundos = static_cast<long>(pTempo->tv_sec) * 1000000000L + pTempo->tv_nsec;
    const int iResultado = Passa({EChamada::eNanosleep, 0, lNanossegundos}, -1, [] { return 0; });
    if (iResultado != 0 && pResto != nullptr) {
        *pResto = {lNanossegundos / 3 / 1000000000L, lNanossegundos / 3 % 1000000000L};
    }
    return iResultado;
}

}  // extern "C"
