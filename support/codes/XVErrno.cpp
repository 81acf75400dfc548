#include "support/codes/XVErrno.h"

#include <cerrno>

#include "support/codes/XVCodigos.h"

namespace {

struct SErrno {
    int iNativo;
    int iWindows;
};

// In ascending order of the Windows runtime's numbers, which the codes follow.
constexpr SErrno k_aErrno[] = {
    {EPERM, 1},      {ENOENT, 2},  {ESRCH, 3},    {EINTR, 4},         {EIO, 5},     {ENXIO, 6},
    {E2BIG, 7},      {ENOEXEC, 8}, {EBADF, 9},    {ECHILD, 10},       {EAGAIN, 11}, {ENOMEM, 12},
    {EACCES, 13},    {EFAULT, 14}, {EBUSY, 16},   {EEXIST, 17},       {EXDEV, 18},  {ENODEV, 19},
    {ENOTDIR, 20},   {EISDIR, 21}, {EINVAL, 22},  {ENFILE, 23},       {EMFILE, 24}, {ENOTTY, 25},
    {EFBIG, 27},     {ENOSPC, 28}, {ESPIPE, 29},  {EROFS, 30},        {EMLINK, 31}, {EPIPE, 32},
    {EDOM, 33},      {ERANGE, 34}, {EDEADLK, 36}, {ENAMETOOLONG, 38}, {ENOLCK, 39}, {ENOSYS, 40},
    {ENOTEMPTY, 41}, {EILSEQ, 42},
#ifdef STRUNCATE
    {STRUNCATE, 80},
#else
    {-1, 80},  // this runtime has no such error
#endif
};

HRESULT Busca(int SErrno::*piNumero, int iErrno) {
    HRESULT hr = E_XV_ERRNO_PRIMEIRO;
    for (const SErrno& r : k_aErrno) {
        if (r.*piNumero == iErrno && iErrno > 0) return hr;
        ++hr;
    }
    return E_XV_ERRNO_DESCONHECIDO;
}

}  // namespace

HRESULT XVHResultDeErrnoWindows(int iErrno) {
    return Busca(&SErrno::iWindows, iErrno);
}

HRESULT XVHResultDeErrno(int iErrno) {
    return Busca(&SErrno::iNativo, iErrno);
}

HRESULT XVHResultDoErrnoAtual() {
    return XVHResultDeErrno(errno);
}
