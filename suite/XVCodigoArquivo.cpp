#include "suite/XVCodigoArquivo.h"

#include "support/XVCodigos.h"

HRESULT XVCodigoArquivo(const CXVErroArquivo& rErro) {
    switch (rErro.GetCausa()) {
        case ECausaArquivo::eNenhuma:
            return S_OK;
        case ECausaArquivo::eArquivoNaoEncontrado:
            return eFileNotFound;
        case ECausaArquivo::eCaminhoInvalido:
            return eBadPath;
        case ECausaArquivo::eMuitosArquivosAbertos:
            return eTooManyOpenFiles;
        case ECausaArquivo::eAcessoNegado:
            return eAccessDenied;
        case ECausaArquivo::eArquivoInvalido:
            return eInvalidFile;
        case ECausaArquivo::eDiretorioCheio:
            return eDirectoryFull;
        case ECausaArquivo::ePosicionamentoInvalido:
            return eBadSeek;
        case ECausaArquivo::eErroFisico:
            return eHardIO;
        case ECausaArquivo::eViolacaoCompartilhamento:
            return eSharingViolation;
        case ECausaArquivo::eViolacaoBloqueio:
            return eLockViolation;
        case ECausaArquivo::eDiscoCheio:
            return eDiskFull;
        case ECausaArquivo::eFimDeArquivo:
            return eEndOfFile;
        case ECausaArquivo::eGenerica:
            break;
    }
    return eXVGenericError;
}
