#include "platform/posix/XVErroPosix.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <cerrno>

#include "platform/XVCaminho.h"

namespace XVErroPosix {
namespace {

ECausaArquivo CausaDeErrno(int iErrno) {
    switch (iErrno) {
        case ENOENT:
            return ECausaArquivo::eArquivoNaoEncontrado;
        case ENOTDIR:
        case ENAMETOOLONG:
        case ELOOP:
        case EILSEQ:
            return ECausaArquivo::eCaminhoInvalido;
        case EMFILE:
        case ENFILE:
            return ECausaArquivo::eMuitosArquivosAbertos;
        case EACCES:
        case EPERM:
        case EROFS:
        case EISDIR:
            return ECausaArquivo::eAcessoNegado;
        case EBADF:
        case ENXIO:
        case ENODEV:
            return ECausaArquivo::eArquivoInvalido;
        case EMLINK:
            return ECausaArquivo::eDiretorioCheio;
        case ESPIPE:
        case EFBIG:
        case EOVERFLOW:
            return ECausaArquivo::ePosicionamentoInvalido;
        case EIO:
            return ECausaArquivo::eErroFisico;
        case ETXTBSY:
        case EBUSY:
            return ECausaArquivo::eViolacaoCompartilhamento;
        case EAGAIN:
        case EDEADLK:
            return ECausaArquivo::eViolacaoBloqueio;
        case ENOSPC:
        case EDQUOT:
            return ECausaArquivo::eDiscoCheio;
        default:
            return ECausaArquivo::eGenerica;
    }
}

}  // namespace

CXVErroArquivo DeErrno(int iErrno) {
    return {CausaDeErrno(iErrno), static_cast<XVUInt>(iErrno)};
}

CXVErroArquivo DeErrnoCaminho(int iErrno, const std::string& sCaminho) {
    struct stat estado;
    if (iErrno == ENOENT && stat(XVCaminho::Separa(sCaminho, "/").sDiretorio.c_str(), &estado) != 0) {
        return {ECausaArquivo::eCaminhoInvalido, ENOENT};
    }
    if (iErrno == ELOOP && lstat(sCaminho.c_str(), &estado) == 0) {
        return {ECausaArquivo::eAcessoNegado, ELOOP};
    }
    return DeErrno(iErrno);
}

CXVErroArquivo DeErrnoGravacao(int iErrno, XVUInt64 uiFim) {
    if (iErrno == EFBIG) {
        rlimit limite{};
        if (getrlimit(RLIMIT_FSIZE, &limite) == 0 && limite.rlim_cur != RLIM_INFINITY &&
            uiFim > limite.rlim_cur) {
            return {ECausaArquivo::eDiscoCheio, EFBIG};
        }
    }
    return DeErrno(iErrno);
}

}  // namespace XVErroPosix
