// Directories: listing, looking a name up without regard to case, creating.
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <cerrno>

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

bool EhDiretorio(DIR* pDiretorio, const dirent& rEntrada) {
    if (rEntrada.d_type != DT_UNKNOWN && rEntrada.d_type != DT_LNK) {
        return rEntrada.d_type == DT_DIR;
    }
    struct stat estado;
    return fstatat(dirfd(pDiretorio), rEntrada.d_name, &estado, 0) == 0 && S_ISDIR(estado.st_mode);
}

CXVErroArquivo CriaUm(const std::string& sDiretorio) {
    if (mkdir(sDiretorio.c_str(), S_IRWXU | S_IRWXG | S_IRWXO) == 0) {
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
    const CXVDiretorioAberto pDiretorio(opendir(sDiretorio.c_str()));
    if (!pDiretorio) {
        return errno == ENOENT ? CXVErroArquivo(ECausaArquivo::eCaminhoInvalido, ENOENT)
                               : XVErroPosix::DeErrno(errno);
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

bool CXVSistemaArquivosPosix::BuscaNomeReal(const std::string& sCaminho, std::string& sNomeReal) {
    sNomeReal.clear();
    const XVCaminho::SPartes partes = XVCaminho::Separa(sCaminho, "/");
    if (!XVCaminho::EhNomeSimples(partes.sNome) || !XVCaminho::PodeNomearDiretorio(sCaminho)) {
        return false;
    }
    struct stat estado;
    if (lstat(sCaminho.c_str(), &estado) == 0) {
        sNomeReal = partes.sNome;
        return true;
    }
    const CXVDiretorioAberto pDiretorio(opendir(partes.sDiretorio.c_str()));
    while (const dirent* pEntrada = pDiretorio ? readdir(pDiretorio.get()) : nullptr) {
        if (XVMascara::NomesIguais(pEntrada->d_name, partes.sNome)) {
            sNomeReal = pEntrada->d_name;
            return true;
        }
    }
    return false;
}

CXVErroArquivo CXVSistemaArquivosPosix::SincronizaDiretorio(const std::string& sDiretorio) {
    const CXVDescritor descritor(
        XVRepeteInterrompida([&] { return open(sDiretorio.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (!descritor.EhValido() || XVRepeteInterrompida([&] { return fsync(descritor.Get()); }) != 0) {
        return XVErroPosix::DeErrno(errno);
    }
    return {};
}

CXVErroArquivo CXVSistemaArquivosPosix::CriaDiretorio(const std::string& sDiretorio) {
    return XVCriaDiretorios(sDiretorio, "/", CriaUm);
}
