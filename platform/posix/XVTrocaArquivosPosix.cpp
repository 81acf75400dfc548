// Deleting and replacing files of which nobody holds an opening.
#include <fcntl.h>
#include <sys/stat.h>

#include <cstdio>

#include "platform/XVCaminho.h"
#include "platform/XVPlataforma.h"
#include "platform/posix/XVCompartilhamentoPosix.h"
#include "platform/posix/XVDescritorPosix.h"
#include "platform/posix/XVErroPosix.h"
#include "platform/posix/XVSistemaArquivosPosix.h"

namespace {

// One file under its gate, found to be closed by everyone. Closing the descriptor opens the gate.
struct SArquivoReservado {
    CXVDescritor descritor;
    struct stat estado {};
};

CXVErroArquivo AbreParaReserva(const std::string& sCaminho, SArquivoReservado& rArquivo) {
    rArquivo.descritor = XVAbreDescritor(sCaminho, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW);
    if (!rArquivo.descritor.EhValido()) {
        return XVErroPosix::DeErrnoCaminho(errno, sCaminho);
    }
    if (fstat(rArquivo.descritor.Get(), &rArquivo.estado) != 0) {
        return XVErroPosix::DeErrno(errno);
    }
    if (S_ISDIR(rArquivo.estado.st_mode)) {
        return XVErroPosix::DeErrno(EISDIR);
    }
    if (!S_ISREG(rArquivo.estado.st_mode)) {
        return {ECausaArquivo::eArquivoInvalido, 0};
    }
    return {};
}

bool NinguemPodeGravar(const SArquivoReservado& rArquivo) {
    return (rArquivo.estado.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
}

// Takes the gate. bMudou: the name means another file by now, so the caller has to begin again.
CXVErroArquivo Reserva(const std::string& sCaminho, SArquivoReservado& rArquivo, bool& bMudou) {
    bMudou = false;
    const CXVErroArquivo erro = XVCompartilhamentoPosix::TomaPortao(rArquivo.descritor.Get());
    if (!erro.Ok()) {
        return erro;
    }
    if (!XVCompartilhamentoPosix::AindaEh(rArquivo.descritor.Get(), sCaminho)) {
        bMudou = true;
        return {};
    }
    return XVCompartilhamentoPosix::ExigeFechado(rArquivo.descritor.Get());
}

bool MesmoArquivo(const SArquivoReservado& r1, const SArquivoReservado& r2) {
    return r1.estado.st_dev == r2.estado.st_dev && r1.estado.st_ino == r2.estado.st_ino;
}

// Gates are always taken in the order of the files' numbers, so that two crossing moves cannot wait for
// each other.
CXVErroArquivo ReservaAmbos(const std::string& sOrigem, SArquivoReservado& rOrigem,
                            const std::string& sDestino, SArquivoReservado& rDestino, bool& bMudou) {
    const bool bOrigemPrimeiro = std::pair(rOrigem.estado.st_dev, rOrigem.estado.st_ino) <
                                 std::pair(rDestino.estado.st_dev, rDestino.estado.st_ino);
    CXVErroArquivo erro =
        bOrigemPrimeiro ? Reserva(sOrigem, rOrigem, bMudou) : Reserva(sDestino, rDestino, bMudou);
    if (!erro.Ok() || bMudou) {
        return erro;
    }
    return bOrigemPrimeiro ? Reserva(sDestino, rDestino, bMudou) : Reserva(sOrigem, rOrigem, bMudou);
}

// Moves; an absent destination must still be absent (EEXIST otherwise).
int Move(const std::string& sOrigem, const std::string& sDestino, bool bDestinoAusente) {
    if (bDestinoAusente) {
        const int iResultado =
            renameat2(AT_FDCWD, sOrigem.c_str(), AT_FDCWD, sDestino.c_str(), RENAME_NOREPLACE);
        if (iResultado == 0 || (errno != EINVAL && errno != ENOSYS)) {
            return iResultado;
        }
    }
    return rename(sOrigem.c_str(), sDestino.c_str());
}

CXVErroArquivo MoveDuravel(const std::string& sOrigem, int iOrigem, const std::string& sDestino,
                           bool bDestinoAusente, bool& bMudou) {
    if (XVRepeteInterrompida([&] { return fsync(iOrigem); }) != 0) {
        return XVErroPosix::DeErrno(errno);
    }
    if (Move(sOrigem, sDestino, bDestinoAusente) != 0) {
        bMudou = errno == EEXIST;
        return bMudou ? CXVErroArquivo() : XVErroPosix::DeErrnoCaminho(errno, sDestino);
    }
    const std::string sDiretorioOrigem = XVCaminho::Separa(sOrigem, "/").sDiretorio;
    const std::string sDiretorioDestino = XVCaminho::Separa(sDestino, "/").sDiretorio;
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivosNativo();
    const CXVErroArquivo erro = rSistema.SincronizaDiretorio(sDiretorioDestino);
    if (!erro.Ok() || sDiretorioOrigem == sDiretorioDestino) {
        return erro;
    }
    return rSistema.SincronizaDiretorio(sDiretorioOrigem);
}

// One attempt at the move; bMudou: someone changed one of the names meanwhile.
CXVErroArquivo TentaSubstituir(const std::string& sOrigem, const std::string& sDestino, bool& bMudou) {
    SArquivoReservado origem;
    CXVErroArquivo erro = AbreParaReserva(sOrigem, origem);
    if (!erro.Ok()) {
        return erro;
    }
    SArquivoReservado destino;
    erro = AbreParaReserva(sDestino, destino);
    const bool bDestinoAusente = erro.GetCausa() == ECausaArquivo::eArquivoNaoEncontrado;
    if (!erro.Ok() && !bDestinoAusente) {
        return erro;
    }
    if (!bDestinoAusente && NinguemPodeGravar(destino)) {
        return XVErroPosix::DeErrno(EACCES);
    }
    if (bDestinoAusente || MesmoArquivo(origem, destino)) {
        erro = Reserva(sOrigem, origem, bMudou);
    } else {
        erro = ReservaAmbos(sOrigem, origem, sDestino, destino, bMudou);
    }
    if (!erro.Ok() || bMudou) {
        return erro;
    }
    return MoveDuravel(sOrigem, origem.descritor.Get(), sDestino, bDestinoAusente, bMudou);
}

}  // namespace

CXVErroArquivo CXVSistemaArquivosPosix::Apaga(const std::string& sCaminho) {
    if (!XVCaminho::PodeNomearArquivo(sCaminho, "/")) {
        return {ECausaArquivo::eCaminhoInvalido, 0};
    }
    while (true) {
        SArquivoReservado arquivo;
        CXVErroArquivo erro = AbreParaReserva(sCaminho, arquivo);
        if (!erro.Ok()) {
            return erro;
        }
        if (NinguemPodeGravar(arquivo)) {
            return XVErroPosix::DeErrno(EACCES);
        }
        bool bMudou = false;
        erro = Reserva(sCaminho, arquivo, bMudou);
        if (!erro.Ok()) {
            return erro;
        }
        if (!bMudou) {
            return unlink(sCaminho.c_str()) == 0 ? CXVErroArquivo()
                                                 : XVErroPosix::DeErrnoCaminho(errno, sCaminho);
        }
    }
}

CXVErroArquivo CXVSistemaArquivosPosix::Substitui(const std::string& sOrigem, const std::string& sDestino) {
    if (!XVCaminho::PodeNomearArquivo(sOrigem, "/") || !XVCaminho::PodeNomearArquivo(sDestino, "/")) {
        return {ECausaArquivo::eCaminhoInvalido, 0};
    }
    while (true) {
        bool bMudou = false;
        const CXVErroArquivo erro = TentaSubstituir(sOrigem, sDestino, bMudou);
        if (!erro.Ok() || !bMudou) {
            return erro;
        }
    }
}
