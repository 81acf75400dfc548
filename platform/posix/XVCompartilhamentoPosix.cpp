#include "platform/posix/XVCompartilhamentoPosix.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <cerrno>
#include <ctime>

#include "platform/posix/XVDescritorPosix.h"
#include "platform/posix/XVErroPosix.h"

namespace XVCompartilhamentoPosix {
namespace {

constexpr off_t k_iBase = off_t{1} << 62;

// The order keeps the bytes of the usual openings next to each other: one call tests them, one marks them.
constexpr unsigned k_uiNegaLeitura = 1U << 0;
constexpr unsigned k_uiTemEscrita = 1U << 1;
constexpr unsigned k_uiNegaEscrita = 1U << 2;
constexpr unsigned k_uiTemLeitura = 1U << 3;
constexpr int k_iBytes = 4;

struct SMarcas {
    unsigned uiPropria = 0;    // bytes that this opening marks
    unsigned uiContraria = 0;  // bytes that nobody else may have marked
};

SMarcas MarcasDe(EAcessoArquivo eAcesso, ECompartilhamentoArquivo eCompartilhamento) {
    SMarcas marcas;
    if (eAcesso != EAcessoArquivo::eAnexacao) {
        marcas.uiPropria |= k_uiTemLeitura;
        marcas.uiContraria |= k_uiNegaLeitura;
    }
    if (eAcesso != EAcessoArquivo::eLeitura) {
        marcas.uiPropria |= k_uiTemEscrita;
        marcas.uiContraria |= k_uiNegaEscrita;
    }
    if (eCompartilhamento == ECompartilhamentoArquivo::eNegaTudo) {
        marcas.uiPropria |= k_uiNegaLeitura;
        marcas.uiContraria |= k_uiTemLeitura;
    }
    if (eCompartilhamento != ECompartilhamentoArquivo::eNegaNada) {
        marcas.uiPropria |= k_uiNegaEscrita;
        marcas.uiContraria |= k_uiTemEscrita;
    }
    return marcas;
}

struct flock Faixa(short sTipo, int iPrimeiro, int iQuantidade) {
    struct flock faixa {};
    faixa.l_type = sTipo;
    faixa.l_whence = SEEK_SET;
    faixa.l_start = k_iBase + iPrimeiro;
    faixa.l_len = iQuantidade;
    return faixa;
}

CXVErroArquivo TestaFaixa(int iDescritor, int iPrimeiro, int iQuantidade) {
    struct flock faixa = Faixa(F_WRLCK, iPrimeiro, iQuantidade);
    if (fcntl(iDescritor, F_OFD_GETLK, &faixa) != 0) {
        return XVErroPosix::DeErrno(errno);
    }
    if (faixa.l_type != F_UNLCK) {
        return {ECausaArquivo::eViolacaoCompartilhamento, 0};
    }
    return {};
}

CXVErroArquivo MarcaFaixa(int iDescritor, int iPrimeiro, int iQuantidade) {
    struct flock faixa = Faixa(F_RDLCK, iPrimeiro, iQuantidade);
    if (XVRepeteInterrompida([&] { return fcntl(iDescritor, F_OFD_SETLK, &faixa); }) != 0) {
        return XVErroPosix::DeErrno(errno);
    }
    return {};
}

// Calls fnOperacao for every run of neighbouring bytes of uiBytes, up to the first failure.
template <class TOperacao>
CXVErroArquivo PercorreFaixas(unsigned uiBytes, TOperacao fnOperacao) {
    int iByte = 0;
    while (iByte < k_iBytes) {
        int iFim = iByte;
        while (iFim < k_iBytes && (uiBytes >> iFim & 1U) != 0) {
            ++iFim;
        }
        if (iFim > iByte) {
            const CXVErroArquivo erro = fnOperacao(iByte, iFim - iByte);
            if (!erro.Ok()) {
                return erro;
            }
        }
        iByte = iFim + 1;
    }
    return {};
}

}  // namespace

CXVErroArquivo TomaPortao(int iDescritor) {
    // A holder of this system is through after two system calls, or once it gets the processor again: the
    // first looks follow each other at once, the later ones after a sleep.
    constexpr int k_iTentativas = 45;
    constexpr int k_iSemDormir = 20;
    constexpr timespec k_pausa{0, 1'000'000};
    for (int i = 0; i < k_iTentativas; ++i) {
        if (flock(iDescritor, LOCK_EX | LOCK_NB) == 0) {
            return {};
        }
        if (errno != EWOULDBLOCK && errno != EINTR) {
            return XVErroPosix::DeErrno(errno);
        }
        if (i < k_iSemDormir) {
            sched_yield();
        } else {
            nanosleep(&k_pausa, nullptr);
        }
    }
    return {ECausaArquivo::eViolacaoCompartilhamento, 0};
}

void LiberaPortao(int iDescritor) {
    flock(iDescritor, LOCK_UN);
}

CXVErroArquivo Marca(int iDescritor, EAcessoArquivo eAcesso, ECompartilhamentoArquivo eCompartilhamento) {
    const SMarcas marcas = MarcasDe(eAcesso, eCompartilhamento);
    const CXVErroArquivo erro = PercorreFaixas(marcas.uiContraria, [&](int iPrimeiro, int iQuantidade) {
        return TestaFaixa(iDescritor, iPrimeiro, iQuantidade);
    });
    if (!erro.Ok()) {
        return erro;
    }
    return PercorreFaixas(marcas.uiPropria, [&](int iPrimeiro, int iQuantidade) {
        return MarcaFaixa(iDescritor, iPrimeiro, iQuantidade);
    });
}

CXVErroArquivo ExigeFechado(int iDescritor) {
    return TestaFaixa(iDescritor, 0, k_iBytes);
}

bool AindaEh(int iDescritor, const std::string& sCaminho) {
    struct stat aberto;
    struct stat atual;
    return fstat(iDescritor, &aberto) == 0 && stat(sCaminho.c_str(), &atual) == 0 &&
           aberto.st_dev == atual.st_dev && aberto.st_ino == atual.st_ino;
}

}  // namespace XVCompartilhamentoPosix
