// Deleting and replacing files of which nobody holds an opening.
#include "platform/XVDetencao.h"
#include "platform/win32/XVBuscaWindows.h"
#include "platform/win32/XVCaminhoWindows.h"
#include "platform/win32/XVErroWindows.h"
#include "platform/win32/XVHandleWindows.h"
#include "platform/win32/XVSistemaArquivosWindows.h"

namespace {

constexpr DWORD k_ulCompartilhaTudo = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// Attributes of a file, or why it is none that may be deleted or replaced.
CXVErroArquivo LeAtributos(const std::wstring& sCaminho, DWORD& ulAtributos) {
    ulAtributos = GetFileAttributesW(sCaminho.c_str());
    if (ulAtributos == INVALID_FILE_ATTRIBUTES) {
        return XVErroWindows::DeUltimo();
    }
    const bool bElo = (ulAtributos & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && CXVBuscaArquivos(sCaminho).EhElo();
    return bElo || (ulAtributos & FILE_ATTRIBUTE_DIRECTORY) != 0 ? XVErroWindows::De(ERROR_ACCESS_DENIED)
                                                                 : CXVErroArquivo();
}

// Replacing a file that is open is refused as "access denied"; this finds out what was meant.
CXVErroArquivo ErroDaTroca(DWORD ulErro, const std::wstring& sDestino) {
    if (ulErro == ERROR_ACCESS_DENIED) {
        const CXVHandleArquivo handle(CreateFileW(sDestino.c_str(), DELETE, k_ulCompartilhaTudo, nullptr,
                                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!handle.EhValido() && GetLastError() == ERROR_SHARING_VIOLATION) {
            return XVErroWindows::De(ERROR_SHARING_VIOLATION);
        }
    }
    return XVErroWindows::De(ulErro);
}

// The move itself is written through; the content must have reached the device before it.
CXVErroArquivo DescarregaConteudo(const std::wstring& sCaminho) {
    const CXVHandleArquivo handle(CreateFileW(sCaminho.c_str(), GENERIC_WRITE, k_ulCompartilhaTudo, nullptr,
                                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!handle.EhValido() || !FlushFileBuffers(handle.Get())) {
        return XVErroWindows::DeUltimo();
    }
    return {};
}

}  // namespace

CXVErroArquivo CXVSistemaArquivosWindows::Apaga(const std::string& sCaminho) {
    std::wstring sLargo;
    DWORD ulAtributos = 0;
    CXVErroArquivo erro = XVCaminhoWindows::ConverteArquivo(sCaminho, sLargo);
    if (erro.Ok()) {
        erro = LeAtributos(sLargo, ulAtributos);
    }
    if (!erro.Ok()) {
        return erro;
    }
    if ((ulAtributos & FILE_ATTRIBUTE_READONLY) != 0) {
        return XVErroWindows::De(ERROR_ACCESS_DENIED);
    }
    XVDetencao::Espera();
    return DeleteFileW(sLargo.c_str()) ? CXVErroArquivo() : XVErroWindows::DeUltimo();
}

CXVErroArquivo CXVSistemaArquivosWindows::Substitui(const std::string& sOrigem, const std::string& sDestino) {
    std::wstring sLargoOrigem;
    std::wstring sLargoDestino;
    CXVErroArquivo erro = XVCaminhoWindows::ConverteArquivo(sOrigem, sLargoOrigem);
    if (erro.Ok()) {
        erro = XVCaminhoWindows::ConverteArquivo(sDestino, sLargoDestino);
    }
    DWORD ulOrigem = 0;
    if (erro.Ok()) {
        erro = LeAtributos(sLargoOrigem, ulOrigem);
    }
    if (!erro.Ok()) {
        return erro;
    }
    DWORD ulDestino = 0;
    erro = LeAtributos(sLargoDestino, ulDestino);
    if (!erro.Ok() && erro.GetCausa() != ECausaArquivo::eArquivoNaoEncontrado) {
        return erro;
    }
    if (erro.Ok() && (ulDestino & FILE_ATTRIBUTE_READONLY) != 0) {
        return XVErroWindows::De(ERROR_ACCESS_DENIED);
    }
    if ((ulOrigem & FILE_ATTRIBUTE_READONLY) == 0) {
        erro = DescarregaConteudo(sLargoOrigem);
        if (!erro.Ok()) {
            return erro;
        }
    }
    XVDetencao::Espera();
    if (!MoveFileExW(sLargoOrigem.c_str(), sLargoDestino.c_str(),
                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        return ErroDaTroca(GetLastError(), sLargoDestino);
    }
    return {};
}
