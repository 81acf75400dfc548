#include "core/xvdatabase/XVCodigosArquivo.h"

#include "support/XVCodigos.h"

#define XV_CODIGO(nome) \
    SCodigoArquivo {    \
        nome, #nome     \
    }

namespace XVCodigosArquivo {

SCodigoArquivo DeExcecao(ECausaArquivo eCausa) {
    switch (eCausa) {
        case ECausaArquivo::eFimDeArquivo:
            return XV_CODIGO(eEndOfFile);
        case ECausaArquivo::ePosicionamentoInvalido:
            return XV_CODIGO(eBadSeek);
        case ECausaArquivo::eErroFisico:
            return XV_CODIGO(eHardIO);
        case ECausaArquivo::eArquivoNaoEncontrado:
            return XV_CODIGO(eFileNotFound);
        case ECausaArquivo::eCaminhoInvalido:
            return XV_CODIGO(eBadPath);
        case ECausaArquivo::eAcessoNegado:
            return XV_CODIGO(eAccessDenied);
        case ECausaArquivo::eArquivoInvalido:
            return XV_CODIGO(eInvalidFile);
        case ECausaArquivo::eViolacaoCompartilhamento:
            return XV_CODIGO(eSharingViolation);
        case ECausaArquivo::eViolacaoBloqueio:
            return XV_CODIGO(eLockViolation);
        case ECausaArquivo::eDiscoCheio:
            return XV_CODIGO(eDiskFull);
        default:
            return XV_CODIGO(eXVGenericError);
    }
}

SCodigoArquivo DeAberturaImediata(ECausaArquivo eCausa) {
    switch (eCausa) {
        case ECausaArquivo::eCaminhoInvalido:
            return XV_CODIGO(eBadPath);
        case ECausaArquivo::eArquivoInvalido:
            return XV_CODIGO(eInvalidFile);
        case ECausaArquivo::eDiretorioCheio:
            return XV_CODIGO(eDirectoryFull);
        default:
            return {S_OK, nullptr};
    }
}

SCodigoArquivo DeAberturaFinal(ECausaArquivo eCausa, bool bSomenteLeitura) {
    switch (eCausa) {
        case ECausaArquivo::eMuitosArquivosAbertos:
            return XV_CODIGO(eTooManyOpenFiles);
        case ECausaArquivo::eAcessoNegado:
            return bSomenteLeitura ? XV_CODIGO(eXVReadOnly) : XV_CODIGO(eAccessDenied);
        case ECausaArquivo::eViolacaoCompartilhamento:
            return XV_CODIGO(eSharingViolation);
        case ECausaArquivo::eViolacaoBloqueio:
            return XV_CODIGO(eLockViolation);
        case ECausaArquivo::eDiscoCheio:
            return XV_CODIGO(eDiskFull);
        default:
            return XV_CODIGO(eXVGenericError);
    }
}

}  // namespace XVCodigosArquivo
