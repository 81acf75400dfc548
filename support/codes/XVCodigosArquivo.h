// Causes of failed file operations as result codes, with the names that traces show: one table.
#pragma once

#include "platform/XVErroArquivo.h"

struct SCodigoArquivo {
    HRESULT hr;
    const char* pszNome;  // "eDiskFull"
};

namespace XVCodigosArquivo {

// The code of a cause, whatever failed. Causes without a code of their own are eXVGenericError.
SCodigoArquivo De(ECausaArquivo eCausa);
// While reading or writing an open file, where only some causes can occur; others are eXVGenericError.
SCodigoArquivo DeExcecao(ECausaArquivo eCausa);
// The same of an operation's result; S_OK for success.
HRESULT CodigoDeExcecao(const CXVErroArquivo& rErro);
// A failed opening: causes that end it at once; null name: try again.
SCodigoArquivo DeAberturaImediata(ECausaArquivo eCausa);
// A failed opening after the last attempt.
SCodigoArquivo DeAberturaFinal(ECausaArquivo eCausa, bool bSomenteLeitura);

}  // namespace XVCodigosArquivo

// S_OK for success.
HRESULT XVCodigoArquivo(const CXVErroArquivo& rErro);
