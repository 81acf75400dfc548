// File-exception causes as result codes, with the names that traces show.
#pragma once

#include "platform/XVErroArquivo.h"

struct SCodigoArquivo {
    HRESULT hr;
    const char* pszNome;  // "eDiskFull"
};

namespace XVCodigosArquivo {

// While reading or writing an open file. Causes without a row are eXVGenericError.
SCodigoArquivo DeExcecao(ECausaArquivo eCausa);
// A failed opening: causes that end it at once; null name: try again.
SCodigoArquivo DeAberturaImediata(ECausaArquivo eCausa);
// A failed opening after the last attempt.
SCodigoArquivo DeAberturaFinal(ECausaArquivo eCausa, bool bSomenteLeitura);

}  // namespace XVCodigosArquivo
