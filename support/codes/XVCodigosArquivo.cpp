#include "support/codes/XVCodigosArquivo.h"

#include <algorithm>
#include <iterator>

#include "support/codes/XVCodigos.h"

namespace {

#define XV_CODIGO(nome) \
    SCodigoArquivo {    \
        nome, #nome     \
    }

template <std::size_t N>
bool Contem(const ECausaArquivo (&aCausas)[N], ECausaArquivo eCausa) {
    return std::find(std::begin(aCausas), std::end(aCausas), eCausa) != std::end(aCausas);
}

}  // namespace

namespace XVCodigosArquivo {

SCodigoArquivo De(ECausaArquivo eCausa) {
    switch (eCausa) {
        case ECausaArquivo::eNenhuma:
            return {S_OK, nullptr};
        case ECausaArquivo::eArquivoNaoEncontrado:
            return XV_CODIGO(eFileNotFound);
        case ECausaArquivo::eCaminhoInvalido:
            return XV_CODIGO(eBadPath);
        case ECausaArquivo::eMuitosArquivosAbertos:
            return XV_CODIGO(eTooManyOpenFiles);
        case ECausaArquivo::eAcessoNegado:
            return XV_CODIGO(eAccessDenied);
        case ECausaArquivo::eArquivoInvalido:
            return XV_CODIGO(eInvalidFile);
        case ECausaArquivo::eDiretorioCheio:
            return XV_CODIGO(eDirectoryFull);
        case ECausaArquivo::ePosicionamentoInvalido:
            return XV_CODIGO(eBadSeek);
        case ECausaArquivo::eErroFisico:
            return XV_CODIGO(eHardIO);
        case ECausaArquivo::eViolacaoCompartilhamento:
            return XV_CODIGO(eSharingViolation);
        case ECausaArquivo::eViolacaoBloqueio:
            return XV_CODIGO(eLockViolation);
        case ECausaArquivo::eDiscoCheio:
            return XV_CODIGO(eDiskFull);
        case ECausaArquivo::eFimDeArquivo:
            return XV_CODIGO(eEndOfFile);
        case ECausaArquivo::eGenerica:
            break;
    }
    return XV_CODIGO(eXVGenericError);
}

SCodigoArquivo DeExcecao(ECausaArquivo eCausa) {
    constexpr ECausaArquivo k_aOutras[] = {ECausaArquivo::eNenhuma, ECausaArquivo::eMuitosArquivosAbertos,
                                           ECausaArquivo::eDiretorioCheio};
    return De(Contem(k_aOutras, eCausa) ? ECausaArquivo::eGenerica : eCausa);
}

HRESULT CodigoDeExcecao(const CXVErroArquivo& rErro) {
    return rErro.Ok() ? S_OK : DeExcecao(rErro.GetCausa()).hr;
}

SCodigoArquivo DeAberturaImediata(ECausaArquivo eCausa) {
    constexpr ECausaArquivo k_aImediatas[] = {
        ECausaArquivo::eCaminhoInvalido, ECausaArquivo::eArquivoInvalido, ECausaArquivo::eDiretorioCheio};
    return Contem(k_aImediatas, eCausa) ? De(eCausa) : SCodigoArquivo{S_OK, nullptr};
}

SCodigoArquivo DeAberturaFinal(ECausaArquivo eCausa, bool bSomenteLeitura) {
    constexpr ECausaArquivo k_aFinais[] = {ECausaArquivo::eMuitosArquivosAbertos,
                                           ECausaArquivo::eAcessoNegado,
                                           ECausaArquivo::eViolacaoCompartilhamento,
                                           ECausaArquivo::eViolacaoBloqueio, ECausaArquivo::eDiscoCheio};
    if (bSomenteLeitura && eCausa == ECausaArquivo::eAcessoNegado) return XV_CODIGO(eXVReadOnly);
    return De(Contem(k_aFinais, eCausa) ? eCausa : ECausaArquivo::eGenerica);
}

}  // namespace XVCodigosArquivo

HRESULT XVCodigoArquivo(const CXVErroArquivo& rErro) {
    return XVCodigosArquivo::De(rErro.GetCausa()).hr;
}
