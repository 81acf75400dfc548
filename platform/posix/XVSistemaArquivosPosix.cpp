#include "platform/posix/XVSistemaArquivosPosix.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/XVCaminho.h"
#include "platform/XVPlataforma.h"
#include "platform/posix/XVArquivoPosix.h"
#include "platform/posix/XVCompartilhamentoPosix.h"
#include "platform/posix/XVErroPosix.h"

namespace {

constexpr mode_t k_modoEscrita = S_IWUSR | S_IWGRP | S_IWOTH;
constexpr mode_t k_modoCriacao = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP;

// Creating counts: the target of a link would come to be in a place of the link's choice.
bool PodeAlterar(const SAberturaArquivo& rAbertura) {
    return rAbertura.eAcesso != EAcessoArquivo::eLeitura ||
           rAbertura.eCriacao != ECriacaoArquivo::eSomenteExistente;
}

int OpcoesDe(const SAberturaArquivo& rAbertura) {
    // The marks of the share modes need a descriptor that can read. Without O_NONBLOCK a pipe would
    // block the opening.
    int iOpcoes = O_NONBLOCK | O_NOCTTY;
    iOpcoes |= PodeAlterar(rAbertura) ? O_NOFOLLOW : 0;
    iOpcoes |= rAbertura.eAcesso == EAcessoArquivo::eLeitura ? O_RDONLY : O_RDWR;
    iOpcoes |= rAbertura.eAcesso == EAcessoArquivo::eAnexacao ? O_APPEND : 0;
    iOpcoes |= rAbertura.eCriacao == ECriacaoArquivo::eCriaSeAusente ? O_CREAT : 0;
    return iOpcoes;
}

// Refuses what is no regular file, and writing to a file without write permission for anyone, which a
// privileged user would be allowed.
CXVErroArquivo ConfereTipo(int iDescritor, bool bEscrita) {
    struct stat estado;
    if (fstat(iDescritor, &estado) != 0) {
        return XVErroPosix::DeErrno(errno);
    }
    if (S_ISDIR(estado.st_mode)) {
        return XVErroPosix::DeErrno(EISDIR);
    }
    if (!S_ISREG(estado.st_mode)) {
        return {ECausaArquivo::eArquivoInvalido, 0};
    }
    if (bEscrita && (estado.st_mode & k_modoEscrita) == 0) {
        return XVErroPosix::DeErrno(EACCES);
    }
    return {};
}

}  // namespace

CXVErroArquivo CXVSistemaArquivosPosix::Abre(const std::string& sCaminho, const SAberturaArquivo& rAbertura,
                                             std::unique_ptr<IXVArquivo>& pArquivo) {
    pArquivo.reset();
    if (!XVCaminho::PodeNomearArquivo(sCaminho, "/")) {
        return {ECausaArquivo::eCaminhoInvalido, 0};
    }
    const int iOpcoes = OpcoesDe(rAbertura);
    // Repeated only when another process deleted or replaced the file between the opening and the gate.
    while (true) {
        CXVDescritor descritor = XVAbreDescritor(sCaminho, iOpcoes, k_modoCriacao);
        if (!descritor.EhValido()) {
            return XVErroPosix::DeErrnoCaminho(errno, sCaminho);
        }
        CXVErroArquivo erro = ConfereTipo(descritor.Get(), rAbertura.eAcesso != EAcessoArquivo::eLeitura);
        if (!erro.Ok()) {
            return erro;
        }
        erro = XVCompartilhamentoPosix::TomaPortao(descritor.Get());
        if (!erro.Ok()) {
            return erro;
        }
        if (!XVCompartilhamentoPosix::AindaEh(descritor.Get(), sCaminho)) {
            continue;
        }
        erro =
            XVCompartilhamentoPosix::Marca(descritor.Get(), rAbertura.eAcesso, rAbertura.eCompartilhamento);
        if (!erro.Ok()) {
            return erro;
        }
        XVCompartilhamentoPosix::LiberaPortao(descritor.Get());
        pArquivo = std::make_unique<CXVArquivoPosix>(std::move(descritor), rAbertura.eAcesso);
        return {};
    }
}

EExistencia CXVSistemaArquivosPosix::Existe(const std::string& sCaminho) {
    if (!XVCaminho::PodeNomearDiretorio(sCaminho)) {
        return EExistencia::eAusente;
    }
    struct stat estado;
    if (lstat(sCaminho.c_str(), &estado) != 0) {
        const bool bAusente = errno == ENOENT || errno == ENOTDIR || errno == ENAMETOOLONG;
        return bAusente ? EExistencia::eAusente : EExistencia::eSemAcesso;
    }
    if (S_ISLNK(estado.st_mode)) {
        struct stat alvo;
        return stat(sCaminho.c_str(), &alvo) == 0 && S_ISDIR(alvo.st_mode) ? EExistencia::eDiretorio
                                                                           : EExistencia::eArquivo;
    }
    return S_ISDIR(estado.st_mode) ? EExistencia::eDiretorio : EExistencia::eArquivo;
}

bool CXVSistemaArquivosPosix::EhSomenteLeitura(const std::string& sCaminho) {
    struct stat estado;
    return XVCaminho::PodeNomearArquivo(sCaminho, "/") && stat(sCaminho.c_str(), &estado) == 0 &&
           !S_ISDIR(estado.st_mode) && (estado.st_mode & k_modoEscrita) == 0;
}

std::string CXVSistemaArquivosPosix::Junta(std::string_view sDiretorio, std::string_view sNome) const {
    return XVCaminho::Junta(sDiretorio, sNome, '/', "/");
}

IXVSistemaArquivos& XVPlataforma::SistemaArquivosNativo() {
    // Never destroyed: objects with static lifetime may still close files after it.
    static CXVSistemaArquivosPosix& rSistema = *new CXVSistemaArquivosPosix;
    return rSistema;
}
