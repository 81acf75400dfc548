#include "platform/posix/XVArquivoPosix.h"

#include <sys/stat.h>
#include <algorithm>
#include <limits>

#include "platform/posix/XVErroPosix.h"
#include "platform/posix/XVJanelaPosix.h"

namespace {

constexpr XVUInt64 k_uiOffsetMaximo = static_cast<XVUInt64>(std::numeric_limits<off_t>::max());
constexpr std::size_t k_uiTransferenciaMaxima = std::size_t{1} << 30;  // below what one call may move

constexpr CXVErroArquivo k_erroAcesso(ECausaArquivo::eAcessoNegado, 0);
constexpr CXVErroArquivo k_erroOffset(ECausaArquivo::ePosicionamentoInvalido, 0);

bool CabeNoArquivo(XVUInt64 uiOffset, std::size_t uiTamanho) {
    return uiOffset <= k_uiOffsetMaximo && uiTamanho <= k_uiOffsetMaximo - uiOffset;
}

}  // namespace

CXVErroArquivo CXVArquivoPosix::Le(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) {
    if (m_eAcesso == EAcessoArquivo::eAnexacao) {
        return k_erroAcesso;
    }
    if (!CabeNoArquivo(uiOffset, uiTamanho)) {
        return k_erroOffset;
    }
    std::byte* pDestino = static_cast<std::byte*>(pDados);
    while (uiTamanho > 0) {
        const ssize_t iLidos = XVRepeteInterrompida([&] {
            return pread(m_descritor.Get(), pDestino, std::min(uiTamanho, k_uiTransferenciaMaxima),
                         static_cast<off_t>(uiOffset));
        });
        if (iLidos < 0) {
            return XVErroPosix::DeErrno(errno);
        }
        if (iLidos == 0) {
            return {ECausaArquivo::eFimDeArquivo, 0};
        }
        const std::size_t uiLidos = static_cast<std::size_t>(iLidos);
        pDestino += uiLidos;
        uiOffset += uiLidos;
        uiTamanho -= uiLidos;
    }
    return {};
}

CXVErroArquivo CXVArquivoPosix::Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) {
    if (m_eAcesso == EAcessoArquivo::eLeitura) {
        return k_erroAcesso;
    }
    const bool bAnexa = m_eAcesso == EAcessoArquivo::eAnexacao;
    if (!bAnexa && !CabeNoArquivo(uiOffset, uiTamanho)) {
        return k_erroOffset;
    }
    const std::byte* pOrigem = static_cast<const std::byte*>(pDados);
    while (uiTamanho > 0) {
        const std::size_t uiParte = std::min(uiTamanho, k_uiTransferenciaMaxima);
        const ssize_t iGravados = XVRepeteInterrompida([&] {
            return bAnexa ? write(m_descritor.Get(), pOrigem, uiParte)
                          : pwrite(m_descritor.Get(), pOrigem, uiParte, static_cast<off_t>(uiOffset));
        });
        if (iGravados < 0) {
            return XVErroPosix::DeErrnoGravacao(errno, bAnexa ? k_uiOffsetMaximo : uiOffset + uiTamanho);
        }
        const std::size_t uiGravados = static_cast<std::size_t>(iGravados);
        pOrigem += uiGravados;
        uiOffset += uiGravados;
        uiTamanho -= uiGravados;
    }
    return {};
}

CXVErroArquivo CXVArquivoPosix::GetTamanho(XVUInt64& uiTamanho) {
    uiTamanho = 0;
    struct stat estado;
    if (fstat(m_descritor.Get(), &estado) != 0) {
        return XVErroPosix::DeErrno(errno);
    }
    uiTamanho = static_cast<XVUInt64>(estado.st_size);
    return {};
}

CXVErroArquivo CXVArquivoPosix::SetTamanho(XVUInt64 uiTamanho) {
    if (m_eAcesso != EAcessoArquivo::eLeituraEscrita) {
        return k_erroAcesso;
    }
    if (!CabeNoArquivo(uiTamanho, 0)) {
        return k_erroOffset;
    }
    if (EncurtariaJanela(uiTamanho)) {
        return {ECausaArquivo::eViolacaoCompartilhamento, 0};
    }
    if (XVRepeteInterrompida([&] { return ftruncate(m_descritor.Get(), static_cast<off_t>(uiTamanho)); }) !=
        0) {
        // Some file systems call a length beyond their limit an invalid argument.
        return XVErroPosix::DeErrnoGravacao(errno == EINVAL ? EFBIG : errno, uiTamanho);
    }
    return {};
}

// Touching a page of a window that lies behind the end of its file ends the process.
bool CXVArquivoPosix::EncurtariaJanela(XVUInt64 uiTamanho) {
    XVUInt64 uiAtual = 0;
    return m_ulJanelas.load() > 0 && (!GetTamanho(uiAtual).Ok() || uiTamanho < uiAtual);
}

// Content, length and where the blocks are; the times of the file, which this leaves out, cost a second
// write. Pages that were written through a mapping are pages of the file like any other.
CXVErroArquivo CXVArquivoPosix::Sincroniza() {
    if (m_eAcesso == EAcessoArquivo::eLeitura) {
        return {};
    }
    if (XVRepeteInterrompida([&] { return fdatasync(m_descritor.Get()); }) != 0) {
        return XVErroPosix::DeErrno(errno);
    }
    return {};
}

CXVErroArquivo CXVArquivoPosix::AbreJanela(XVUInt64 uiTamanho, std::unique_ptr<IXVJanela>& pJanela) {
    pJanela.reset();
    if (m_eAcesso == EAcessoArquivo::eLeituraEscrita) {
        pJanela = XVJanelaPosix::AbreJanela(m_descritor.Get(), uiTamanho, m_ulJanelas);
    }
    return pJanela ? CXVErroArquivo() : IXVArquivo::AbreJanela(uiTamanho, pJanela);
}
