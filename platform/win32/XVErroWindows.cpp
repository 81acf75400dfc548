#include "platform/win32/XVErroWindows.h"

#include <windows.h>

#include <algorithm>
#include <iterator>

namespace XVErroWindows {
namespace {

constexpr DWORD k_ulCotaExcedida = 1295;  // ERROR_DISK_QUOTA_EXCEEDED, which not every header names

struct SCausa {
    DWORD ulErro;
    ECausaArquivo eCausa;
};
constexpr SCausa k_aCausas[] = {
    {ERROR_FILE_NOT_FOUND, ECausaArquivo::eArquivoNaoEncontrado},
    {ERROR_PATH_NOT_FOUND, ECausaArquivo::eCaminhoInvalido},
    {ERROR_INVALID_DRIVE, ECausaArquivo::eCaminhoInvalido},
    {ERROR_BAD_NETPATH, ECausaArquivo::eCaminhoInvalido},
    {ERROR_BAD_NET_NAME, ECausaArquivo::eCaminhoInvalido},
    {ERROR_BAD_PATHNAME, ECausaArquivo::eCaminhoInvalido},
    {ERROR_INVALID_NAME, ECausaArquivo::eCaminhoInvalido},
    {ERROR_FILENAME_EXCED_RANGE, ECausaArquivo::eCaminhoInvalido},
    {ERROR_DIRECTORY, ECausaArquivo::eCaminhoInvalido},
    {ERROR_TOO_MANY_OPEN_FILES, ECausaArquivo::eMuitosArquivosAbertos},
    {ERROR_SHARING_BUFFER_EXCEEDED, ECausaArquivo::eMuitosArquivosAbertos},
    {ERROR_ACCESS_DENIED, ECausaArquivo::eAcessoNegado},
    {ERROR_NETWORK_ACCESS_DENIED, ECausaArquivo::eAcessoNegado},
    {ERROR_WRITE_PROTECT, ECausaArquivo::eAcessoNegado},
    {ERROR_PRIVILEGE_NOT_HELD, ECausaArquivo::eAcessoNegado},
    {ERROR_INVALID_HANDLE, ECausaArquivo::eArquivoInvalido},
    {ERROR_CANNOT_MAKE, ECausaArquivo::eDiretorioCheio},
    {ERROR_SEEK, ECausaArquivo::ePosicionamentoInvalido},
    {ERROR_NEGATIVE_SEEK, ECausaArquivo::ePosicionamentoInvalido},
    {ERROR_FILE_TOO_LARGE, ECausaArquivo::ePosicionamentoInvalido},
    {ERROR_CRC, ECausaArquivo::eErroFisico},
    {ERROR_SECTOR_NOT_FOUND, ECausaArquivo::eErroFisico},
    {ERROR_WRITE_FAULT, ECausaArquivo::eErroFisico},
    {ERROR_READ_FAULT, ECausaArquivo::eErroFisico},
    {ERROR_GEN_FAILURE, ECausaArquivo::eErroFisico},
    {ERROR_NOT_READY, ECausaArquivo::eErroFisico},
    {ERROR_IO_DEVICE, ECausaArquivo::eErroFisico},
    {ERROR_DISK_OPERATION_FAILED, ECausaArquivo::eErroFisico},
    {ERROR_FILE_CORRUPT, ECausaArquivo::eErroFisico},
    {ERROR_DISK_CORRUPT, ECausaArquivo::eErroFisico},
    {ERROR_SHARING_VIOLATION, ECausaArquivo::eViolacaoCompartilhamento},
    {ERROR_DELETE_PENDING,
     ECausaArquivo::eViolacaoCompartilhamento},  // the last handle of a deleted file is about to close
    {ERROR_USER_MAPPED_FILE, ECausaArquivo::eViolacaoCompartilhamento},  // a scanner maps the file
    {ERROR_LOCK_VIOLATION, ECausaArquivo::eViolacaoBloqueio},
    {ERROR_LOCKED, ECausaArquivo::eViolacaoBloqueio},
    {ERROR_DRIVE_LOCKED, ECausaArquivo::eViolacaoBloqueio},
    {ERROR_DISK_FULL, ECausaArquivo::eDiscoCheio},
    {ERROR_HANDLE_DISK_FULL, ECausaArquivo::eDiscoCheio},
    {k_ulCotaExcedida, ECausaArquivo::eDiscoCheio},
    {ERROR_HANDLE_EOF, ECausaArquivo::eFimDeArquivo},
};

ECausaArquivo CausaDe(DWORD ulErro) {
    const auto* pCausa = std::find_if(std::begin(k_aCausas), std::end(k_aCausas),
                                      [ulErro](const SCausa& rCausa) { return rCausa.ulErro == ulErro; });
    return pCausa == std::end(k_aCausas) ? ECausaArquivo::eGenerica : pCausa->eCausa;
}

}  // namespace

CXVErroArquivo De(XVUInt ulErro) {
    return {CausaDe(ulErro), ulErro};
}
CXVErroArquivo DeUltimo() {
    return De(GetLastError());
}

}  // namespace XVErroWindows
