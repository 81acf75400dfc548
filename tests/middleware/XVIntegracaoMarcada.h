// Integrations that bear a version number in every field and text, so that a half operation shows: what was
// read either belongs to one version as a whole or does not.
#pragma once

#include <string>

#include "tests/middleware/XVCenarioLoja.h"

namespace XVIntegracaoMarcada {

// A new one, with its DMC in *pRegDmc, and the same in a later version. uiNumero names the integration for
// its whole life; it is under 2^32, the version under 2^24.
HRESULT GravaNova(CBaseMiddleware& rLoja, XVUInt64 uiNumero, XVUInt64 uiVersao, REG_XVDMC* pRegDmc);
HRESULT GravaAlterada(CBaseMiddleware& rLoja, REG_XVDMC regDmc, XVUInt64 uiNumero, XVUInt64 uiVersao);

// The version that what was read belongs to; what in it does not, and "" when all does.
std::string Confere(const SIntegracaoLida& rLida, XVUInt64* puiVersao);

}  // namespace XVIntegracaoMarcada
