#include "platform/win32/XVArquivoWindows.h"

#include <algorithm>
#include <limits>

#include "platform/XVDetencao.h"
#include "platform/win32/XVErroWindows.h"

namespace {

constexpr XVUInt64 k_uiOffsetMaximo = static_cast<XVUInt64>(std::numeric_limits<LONGLONG>::max());
constexpr XVUInt64 k_uiOffsetFim = std::numeric_limits<XVUInt64>::max();  // "at the end of the file"
constexpr std::size_t k_uiTransferenciaMaxima = std::size_t{1} << 30;

constexpr CXVErroArquivo k_erroAcesso(ECausaArquivo::eAcessoNegado, 0);
constexpr CXVErroArquivo k_erroOffset(ECausaArquivo::ePosicionamentoInvalido, 0);

bool CabeNoArquivo(XVUInt64 uiOffset, std::size_t uiTamanho) {
    return uiOffset <= k_uiOffsetMaximo && uiTamanho <= k_uiOffsetMaximo - uiOffset;
}

OVERLAPPED PosicaoDe(XVUInt64 uiOffset) {
    OVERLAPPED posicao{};
    posicao.Offset = static_cast<DWORD>(uiOffset);
    posicao.OffsetHigh = static_cast<DWORD>(uiOffset >> 32);
    return posicao;
}

DWORD ParteDe(std::size_t uiTamanho) {
    return static_cast<DWORD>(std::min(uiTamanho, k_uiTransferenciaMaxima));
}

// One append at a time. The local file system appends in one step by itself; network file systems and
// other layers may first ask for the end and then write there, so the writers agree on a byte far behind
// any content. Without the lock the append is still made: it is what the caller asked for.
class CXVTravaAnexacao {
  public:
    explicit CXVTravaAnexacao(HANDLE hArquivo) : m_hArquivo(hArquivo) {
        OVERLAPPED posicao = PosicaoDe(k_uiOffsetTrava);
        m_bTravado = LockFileEx(m_hArquivo, LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &posicao) != FALSE;
    }
    ~CXVTravaAnexacao() {
        if (m_bTravado) {
            OVERLAPPED posicao = PosicaoDe(k_uiOffsetTrava);
            UnlockFileEx(m_hArquivo, 0, 1, 0, &posicao);
        }
    }
    CXVTravaAnexacao(const CXVTravaAnexacao&) = delete;
    CXVTravaAnexacao& operator=(const CXVTravaAnexacao&) = delete;

  private:
    static constexpr XVUInt64 k_uiOffsetTrava = XVUInt64{1} << 62;

    HANDLE m_hArquivo;
    bool m_bTravado;
};

}  // namespace

// A file that is let go of is another process's to open, beside what this one still holds of its store.
CXVArquivoWindows::~CXVArquivoWindows() {
    if (m_eAcesso != EAcessoArquivo::eLeitura) {
        XVDetencao::Espera();
    }
}

CXVErroArquivo CXVArquivoWindows::Le(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) {
    if (m_eAcesso == EAcessoArquivo::eAnexacao) {
        return k_erroAcesso;
    }
    if (!CabeNoArquivo(uiOffset, uiTamanho)) {
        return k_erroOffset;
    }
    std::byte* pDestino = static_cast<std::byte*>(pDados);
    while (uiTamanho > 0) {
        OVERLAPPED posicao = PosicaoDe(uiOffset);
        DWORD ulLidos = 0;
        if (!ReadFile(m_handle.Get(), pDestino, ParteDe(uiTamanho), &ulLidos, &posicao)) {
            return XVErroWindows::DeUltimo();
        }
        if (ulLidos == 0) {
            return XVErroWindows::De(ERROR_HANDLE_EOF);
        }
        pDestino += ulLidos;
        uiOffset += ulLidos;
        uiTamanho -= ulLidos;
    }
    return {};
}

CXVErroArquivo CXVArquivoWindows::Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) {
    if (m_eAcesso == EAcessoArquivo::eLeitura) {
        return k_erroAcesso;
    }
    if (m_eAcesso == EAcessoArquivo::eAnexacao) {
        const CXVTravaAnexacao trava(m_handle.Get());
        return GravaEm(k_uiOffsetFim, pDados, uiTamanho);
    }
    return CabeNoArquivo(uiOffset, uiTamanho) ? GravaEm(uiOffset, pDados, uiTamanho) : k_erroOffset;
}

CXVErroArquivo CXVArquivoWindows::GravaEm(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) {
    const std::byte* pOrigem = static_cast<const std::byte*>(pDados);
    while (uiTamanho > 0) {
        XVDetencao::Espera();
        OVERLAPPED posicao = PosicaoDe(uiOffset);
        DWORD ulGravados = 0;
        if (!WriteFile(m_handle.Get(), pOrigem, ParteDe(uiTamanho), &ulGravados, &posicao)) {
            return XVErroWindows::DeUltimo();
        }
        if (ulGravados == 0) {
            return XVErroWindows::De(ERROR_DISK_FULL);
        }
        pOrigem += ulGravados;
        uiOffset += uiOffset == k_uiOffsetFim ? 0 : ulGravados;
        uiTamanho -= ulGravados;
    }
    return {};
}

CXVErroArquivo CXVArquivoWindows::GetTamanho(XVUInt64& uiTamanho) {
    uiTamanho = 0;
    LARGE_INTEGER tamanho{};
    if (!GetFileSizeEx(m_handle.Get(), &tamanho)) {
        return XVErroWindows::DeUltimo();
    }
    uiTamanho = static_cast<XVUInt64>(tamanho.QuadPart);
    return {};
}

CXVErroArquivo CXVArquivoWindows::SetTamanho(XVUInt64 uiTamanho) {
    if (m_eAcesso != EAcessoArquivo::eLeituraEscrita) {
        return k_erroAcesso;
    }
    if (!CabeNoArquivo(uiTamanho, 0)) {
        return k_erroOffset;
    }
    XVDetencao::Espera();
    FILE_END_OF_FILE_INFO fim{};
    fim.EndOfFile.QuadPart = static_cast<LONGLONG>(uiTamanho);
    if (!SetFileInformationByHandle(m_handle.Get(), FileEndOfFileInfo, &fim, sizeof(fim))) {
        // A length beyond the file system's limit is called an invalid argument.
        const DWORD ulErro = GetLastError();
        return XVErroWindows::De(ulErro == ERROR_INVALID_PARAMETER ? ERROR_FILE_TOO_LARGE : ulErro);
    }
    return {};
}

CXVErroArquivo CXVArquivoWindows::Sincroniza() {
    if (m_eAcesso == EAcessoArquivo::eLeitura) {
        return {};
    }
    const CXVErroArquivo erro = m_janelas.Descarrega();
    if (!erro.Ok()) {
        return erro;
    }
    return FlushFileBuffers(m_handle.Get()) ? CXVErroArquivo() : XVErroWindows::DeUltimo();
}

CXVErroArquivo CXVArquivoWindows::AbreJanela(XVUInt64 uiTamanho, std::unique_ptr<IXVJanela>& pJanela) {
    pJanela.reset();
    if (m_eAcesso == EAcessoArquivo::eLeituraEscrita) {
        pJanela = XVJanelaWindows::AbreJanela(m_handle.Get(), uiTamanho, m_janelas);
    }
    return pJanela ? CXVErroArquivo() : IXVArquivo::AbreJanela(uiTamanho, pJanela);
}
