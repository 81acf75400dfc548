// Checks in the private parts of an operation: the failure is recorded under the operation's own name,
// the one that its documentation and the people who read the log know.
#pragma once

#include "support/trace/XVCheck.h"

#define XV_CHECK_TEXTO_EM(funcao, chamada, texto)                                                         \
    do {                                                                                                  \
        const HRESULT hrXV = (chamada);                                                                   \
        if (FAILED(hrXV)) [[unlikely]] {                                                                  \
            static constexpr SPontoFalha pontoXV{texto, XVNomeClasse(), funcao, XVNomeFonte(), __LINE__}; \
            return XVRegistraFalha(hrXV, pontoXV, this);                                                  \
        }                                                                                                 \
    } while (false)
#define XV_CHECK_EM(funcao, chamada) XV_CHECK_TEXTO_EM(funcao, chamada, #chamada)
#define XV_FALHA_EM(funcao, hr) XV_CHECK_TEXTO_EM(funcao, hr, #hr)
