// Integrations that bear a version number in every field and text, so that a half operation shows: what was
// read either belongs to one version as a whole or does not.
#pragma once

#include <string>

#include "tests/middleware/XVCenarioLoja.h"

// What one integration of a store must hold. The external key is the number and the version together.
struct SIntegracaoMarcada {
    XVUInt64 uiNumero = 0;  // names the integration for its whole life; not 0, under 2^32
    REG_XVDMC regDmc{};
    XVUInt64 uiVersao = 0;  // of the last recording or update; under 2^24
    XVUInt64 uiVersaoMensagem = 0;
    XVUInt64 uiVersaoRetorno = 0;
    XVUInt eStatus = 0;
    XVUInt64 uiAlteracao = 0;  // date-time of the status
    XVUInt ulCancelador = 0;
};

namespace XVIntegracaoMarcada {

// The three operations: what the integration holds after them. uiAgora: the date-time at which the store
// performs them.
SIntegracaoMarcada Nova(XVUInt64 uiNumero, XVUInt64 uiVersao);
SIntegracaoMarcada Alterada(SIntegracaoMarcada antes, XVUInt64 uiVersao, XVUInt64 uiAgora);
SIntegracaoMarcada ComStatus(SIntegracaoMarcada antes, XVUInt64 uiVersao, XVUInt64 uiAgora,
                             XVUShort usUsuario);

// The same operations on a store. Nova returns the DMC in *pRegDmc.
HRESULT GravaNova(CBaseMiddleware& rLoja, XVUInt64 uiNumero, XVUInt64 uiVersao, REG_XVDMC* pRegDmc);
HRESULT GravaAlterada(CBaseMiddleware& rLoja, REG_XVDMC regDmc, XVUInt64 uiNumero, XVUInt64 uiVersao);
HRESULT GravaStatus(CBaseMiddleware& rLoja, REG_XVDMC regDmc, XVUInt64 uiVersao);

// The number that an external key holds, and the bounds of the external keys of a number.
constexpr XVUInt64 Chave(XVUInt64 uiNumero, XVUInt64 uiVersao) {
    return uiNumero << 24 | uiVersao;
}
constexpr XVUInt64 Numero(XVUInt64 uiChave) {
    return uiChave >> 24;
}

// Reads the integration and compares every field; empty when all is as expected, otherwise what differs.
std::string Confere(CBaseMiddleware& rLoja, const SIntegracaoMarcada& rEsperada);
// The same of what was read already.
std::string Confere(const SIntegracaoLida& lida, const SIntegracaoMarcada& rEsperada);

}  // namespace XVIntegracaoMarcada
