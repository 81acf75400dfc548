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
#include <type_traits>
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

// The call of this name goes on, unless the plan lets it fail.
template <class TFuncao, class... TArgumentos>
auto Segue(const SChamada& rChamada, const char* pszNome, TArgumentos... argumentos) {
    TFuncao* const pfn = Proxima<TFuncao>(pszNome);
    if (const int iErrno = CXVChamadas::Passa(rChamada); iErrno != 0) {
        errno = iErrno;
        if constexpr (std::is_pointer_v<decltype(pfn(argumentos...))>) {
            return decltype(pfn(argumentos...)){};
        } else {
            return decltype(pfn(argumentos...)){-1};
        }
    }
    return pfn(argumentos...);
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
    return Segue<int(const char*, int, ...)>({EChamada::eOpen}, "open", pszCaminho, iOpcoes, modo);
}

ssize_t pread(int iDescritor, void* pDados, size_t uiTamanho, off_t iOffset) {
    return Segue<ssize_t(int, void*, size_t, off_t)>({EChamada::ePread, Arquivo(iDescritor)}, "pread",
                                                     iDescritor, pDados, CXVChamadas::Corta(uiTamanho),
                                                     iOffset);
}

ssize_t pwrite(int iDescritor, const void* pDados, size_t uiTamanho, off_t iOffset) {
    return Segue<ssize_t(int, const void*, size_t, off_t)>({EChamada::ePwrite, Arquivo(iDescritor)}, "pwrite",
                                                           iDescritor, pDados, CXVChamadas::Corta(uiTamanho),
                                                           iOffset);
}

ssize_t write(int iDescritor, const void* pDados, size_t uiTamanho) {
    return Segue<ssize_t(int, const void*, size_t)>({EChamada::eWrite, Arquivo(iDescritor)}, "write",
                                                    iDescritor, pDados, CXVChamadas::Corta(uiTamanho));
}

int ftruncate(int iDescritor, off_t iTamanho) noexcept {
    return Segue<int(int, off_t)>({EChamada::eFtruncate, Arquivo(iDescritor)}, "ftruncate", iDescritor,
                                  iTamanho);
}

int fsync(int iDescritor) {
    return Segue<int(int)>({EChamada::eDescarrega, Arquivo(iDescritor)}, "fsync", iDescritor);
}

int fdatasync(int iDescritor) {
    return Segue<int(int)>({EChamada::eDescarrega, Arquivo(iDescritor)}, "fdatasync", iDescritor);
}

int flock(int iDescritor, int iOperacao) noexcept {
    return iOperacao == LOCK_UN ? Proxima<int(int, int)>("flock")(iDescritor, iOperacao)
                                : Segue<int(int, int)>({EChamada::eFlock, Arquivo(iDescritor)}, "flock",
                                                       iDescritor, iOperacao);
}

int rename(const char* pszOrigem, const char* pszDestino) noexcept {
    return Segue<int(const char*, const char*)>({EChamada::eRename}, "rename", pszOrigem, pszDestino);
}

int renameat2(int iOrigem, const char* pszOrigem, int iDestino, const char* pszDestino,
              unsigned int ulOpcoes) noexcept {
    return Segue<int(int, const char*, int, const char*, unsigned int)>(
        {EChamada::eRename}, "renameat2", iOrigem, pszOrigem, iDestino, pszDestino, ulOpcoes);
}

int unlink(const char* pszCaminho) noexcept {
    return Segue<int(const char*)>({EChamada::eUnlink}, "unlink", pszCaminho);
}

int fstat(int iDescritor, struct stat* pEstado) noexcept {
    return Segue<int(int, struct stat*)>({EChamada::eFstat}, "fstat", iDescritor, pEstado);
}

dirent* readdir(DIR* pDiretorio) {
    return Segue<dirent*(DIR*)>({EChamada::eReaddir}, "readdir", pDiretorio);
}

int close(int iDescritor) {
    const SChamada chamada{EChamada::eClose, Arquivo(iDescritor)};
    const int iResultado = Proxima<int(int)>("close")(iDescritor);
    const int iErrno = CXVChamadas::Passa(chamada);
    errno = iErrno != 0 ? iErrno : errno;
    return iErrno != 0 ? -1 : iResultado;
}

// Interrupted, it leaves a third of the time.
int nanosleep(const timespec* pTempo, timespec* pResto) {
    if (!CXVChamadas::EstaVivo()) {
        return Proxima<int(const timespec*, timespec*)>("nanosleep")(pTempo, pResto);
    }
    const long lNanossegundos = static_cast<long>(pTempo->tv_sec) * 1000000000L + pTempo->tv_nsec;
    const int iErrno = CXVChamadas::Passa({EChamada::eNanosleep, 0, lNanossegundos});
    if (iErrno == 0) {
        return 0;
    }
    if (pResto != nullptr) {
        *pResto = {lNanossegundos / 3 / 1000000000L, lNanossegundos / 3 % 1000000000L};
    }
    errno = iErrno;
    return -1;
}

}  // extern "C"
