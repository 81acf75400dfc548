// Directories: listing, looking a name up without regard to case, creating.
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <cerrno>
#include <cstdlib>

#include "platform/XVCaminho.h"
#include "platform/XVCriaDiretorios.h"
#include "platform/XVMascara.h"
#include "platform/posix/XVDescritorPosix.h"
#include "platform/posix/XVErroPosix.h"
#include "platform/posix/XVSistemaArquivosPosix.h"

namespace {

struct SFechaDiretorio {
    void operator()(DIR* pDiretorio) const { closedir(pDiretorio); }
};
using CXVDiretorioAberto = std::unique_ptr<DIR, SFechaDiretorio>;

struct SLibera {
    void operator()(char* psz) const { std::free(psz); }
};

// Null on failure, with errno set.
CXVDiretorioAberto AbreDiretorio(const std::string& sDiretorio) {
    CXVDescritor descritor = XVAbreDescritor(sDiretorio, O_RDONLY | O_DIRECTORY | O_NONBLOCK);
    CXVDiretorioAberto pDiretorio(descritor.EhValido() ? fdopendir(descritor.Get()) : nullptr);
    if (pDiretorio) {
        descritor.Solta();
    }
    return pDiretorio;
}

CXVErroArquivo ErroDiretorio() {
    return errno == ENOENT ? CXVErroArquivo(ECausaArquivo::eCaminhoInvalido, ENOENT)
                           : XVErroPosix::DeErrno(errno);
}

bool EhDiretorio(DIR* pDiretorio, const dirent& rEntrada) {
    if (rEntrada.d_type != DT_UNKNOWN && rEntrada.d_type != DT_LNK) {
        return rEntrada.d_type == DT_DIR;
    }
    struct stat estado;
    return fstatat(dirfd(pDiretorio), rEntrada.d_name, &estado, 0) == 0 && S_ISDIR(estado.st_mode);
}

CXVErroArquivo CriaUm(const std::string& sDiretorio) {
    if (mkdir(sDiretorio.c_str(), S_IRWXU | S_IRWXG) == 0) {
        return {};
    }
    const int iErrno = errno;
    struct stat estado;
    if (iErrno != ENOENT && stat(sDiretorio.c_str(), &estado) == 0) {
        return S_ISDIR(estado.st_mode) ? CXVErroArquivo() : XVErroPosix::DeErrno(ENOTDIR);
    }
    return XVErroPosix::DeErrno(iErrno);
}

}  // namespace

CXVErroArquivo CXVSistemaArquivosPosix::Lista(const std::string& sDiretorio, const std::string& sMascara,
                                              std::vector<std::string>& listaNomes) {
    listaNomes.clear();
    if (!XVCaminho::PodeNomearDiretorio(sDiretorio)) {
        return {ECausaArquivo::eCaminhoInvalido, 0};
    }
    const CXVDiretorioAberto pDiretorio = AbreDiretorio(sDiretorio);
    if (!pDiretorio) {
        return ErroDiretorio();
    }
    errno = 0;
    while (const dirent* pEntrada = readdir(pDiretorio.get())) {
        if (XVMascara::Confere(sMascara, pEntrada->d_name) && !EhDiretorio(pDiretorio.get(), *pEntrada)) {
            listaNomes.emplace_back(pEntrada->d_name);
        }
        errno = 0;
    }
    if (errno != 0) {
        listaNomes.clear();
        return XVErroPosix::DeErrno(errno);
    }
    return {};
}

CXVErroArquivo CXVSistemaArquivosPosix::BuscaNomeReal(const std::string& sCaminho, std::string& sNomeReal) {
    sNomeReal.clear();
    const XVCaminho::SPartes partes = XVCaminho::Separa(sCaminho, "/");
    if (!XVCaminho::EhNomeSimples(partes.sNome) || !XVCaminho::PodeNomearDiretorio(sCaminho)) {
        return {ECausaArquivo::eArquivoNaoEncontrado, 0};
    }
    struct stat estado;
    if (lstat(sCaminho.c_str(), &estado) == 0) {
        sNomeReal = partes.sNome;
        return {};
    }
    if (errno != ENOENT) {
        return XVErroPosix::DeErrno(errno);
    }
    const CXVDiretorioAberto pDiretorio = AbreDiretorio(partes.sDiretorio);
    if (!pDiretorio) {
        return ErroDiretorio();
    }
    errno = 0;
    while (const dirent* pEntrada = readdir(pDiretorio.get())) {
        if (XVMascara::NomesIguais(pEntrada->d_name, partes.sNome)) {
            sNomeReal = pEntrada->d_name;
            return {};
        }
    }
    return XVErroPosix::DeErrno(errno == 0 ? ENOENT : errno);
}

CXVErroArquivo CXVSistemaArquivosPosix::SincronizaDiretorio(const std::string& sDiretorio) {
    const CXVDescritor descritor = XVAbreDescritor(sDiretorio, O_RDONLY | O_DIRECTORY | O_NONBLOCK);
    if (!descritor.EhValido()) {
        return ErroDiretorio();
    }
    if (XVRepeteInterrompida([&] { return fsync(descritor.Get()); }) != 0) {
        return XVErroPosix::DeErrno(errno);
    }
    return {};
}

CXVErroArquivo CXVSistemaArquivosPosix::CriaDiretorio(const std::string& sDiretorio) {
    return XVCriaDiretorios(sDiretorio, "/", CriaUm);
}

CXVErroArquivo CXVSistemaArquivosPosix::GetCaminhoReal(const std::string& sDiretorio, std::string& sReal) {
    sReal.clear();
    if (!XVCaminho::PodeNomearDiretorio(sDiretorio)) {
        return {ECausaArquivo::eCaminhoInvalido, 0};
    }
    const std::unique_ptr<char, SLibera> pszReal(realpath(sDiretorio.c_str(), nullptr));
    if (pszReal == nullptr) {
        return ErroDiretorio();
    }
    sReal = pszReal.get();
    return {};
}
