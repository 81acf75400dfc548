#include "platform/win32/XVErroWindows.h"

#include <windows.h>

namespace XVErroWindows {
namespace {

constexpr DWORD k_ulCotaExcedida = 1295;  // ERROR_DISK_QUOTA_EXCEEDED, which not every header names

ECausaArquivo CausaDe(DWORD ulErro) {
    switch (ulErro) {
        case ERROR_FILE_NOT_FOUND:
            return ECausaArquivo::eArquivoNaoEncontrado;
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_DRIVE:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
        case ERROR_BAD_PATHNAME:
        case ERROR_INVALID_NAME:
        case ERROR_FILENAME_EXCED_RANGE:
        case ERROR_DIRECTORY:
            return ECausaArquivo::eCaminhoInvalido;
        case ERROR_TOO_MANY_OPEN_FILES:
        case ERROR_SHARING_BUFFER_EXCEEDED:
            return ECausaArquivo::eMuitosArquivosAbertos;
        case ERROR_ACCESS_DENIED:
        case ERROR_NETWORK_ACCESS_DENIED:
        case ERROR_WRITE_PROTECT:
        case ERROR_PRIVILEGE_NOT_HELD:
            return ECausaArquivo::eAcessoNegado;
        case ERROR_INVALID_HANDLE:
            return ECausaArquivo::eArquivoInvalido;
        case ERROR_CANNOT_MAKE:
            return ECausaArquivo::eDiretorioCheio;
        case ERROR_SEEK:
        case ERROR_NEGATIVE_SEEK:
        case ERROR_FILE_TOO_LARGE:
            return ECausaArquivo::ePosicionamentoInvalido;
        case ERROR_CRC:
        case ERROR_SECTOR_NOT_FOUND:
        case ERROR_WRITE_FAULT:
        case ERROR_READ_FAULT:
        case ERROR_GEN_FAILURE:
        case ERROR_NOT_READY:
        case ERROR_IO_DEVICE:
        case ERROR_DISK_OPERATION_FAILED:
        case ERROR_FILE_CORRUPT:
        case ERROR_DISK_CORRUPT:
            return ECausaArquivo::eErroFisico;
        case ERROR_SHARING_VIOLATION:
        case ERROR_DELETE_PENDING:    // the last handle of a deleted file is about to close
        case ERROR_USER_MAPPED_FILE:  // a scanner maps the file
            return ECausaArquivo::eViolacaoCompartilhamento;
        case ERROR_LOCK_VIOLATION:
        case ERROR_LOCKED:
        case ERROR_DRIVE_LOCKED:
            return ECausaArquivo::eViolacaoBloqueio;
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
        case k_ulCotaExcedida:
            return ECausaArquivo::eDiscoCheio;
        case ERROR_HANDLE_EOF:
            return ECausaArquivo::eFimDeArquivo;
        default:
            return ECausaArquivo::eGenerica;
    }
}

}  // namespace

CXVErroArquivo De(XVUInt ulErro) {
    return {CausaDe(ulErro), ulErro};
}
CXVErroArquivo DeUltimo() {
    return De(GetLastError());
}

}  // namespace XVErroWindows
