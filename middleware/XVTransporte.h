// An integration on its way from one store to another: all that the store answers of it, and what of its
// place has to be kept.
#pragma once

#include "contract/XVDadosCR.h"

struct SIntegracaoTransportada {
    enum class ETipo : std::uint8_t {
        eInteira,
        eSubstituida,  // a later integration of the bank took its index record; only its files know it
        eVaga,         // nothing of it can be told, but its key must never become another's
    };
    ETipo eTipo = ETipo::eInteira;
    // Of its index record: among integrations with one external key the lowest is the one that a status
    // meets. 0 where it has none.
    XVUInt ulPosicaoIndice = 0;
    CXVDadosCR_IntegracaoMiddleware dados{};
};

// What became of an integration that was to be recorded under the key that it brings.
enum class EImportada : std::uint8_t {
    eNova,
    eJaEstava,      // the same, in all that the store answers
    eConflito,      // its key is that of another integration
    eLacuna,        // its position is not the next one of its day
    eChaveDoBanco,  // an integration of the bank holds its external key
};

// Whether the store could have recorded this itself: impossible keys, date-times and enumerations, texts
// with NUL, and what it never keeps, are refused.
bool XVPodeSerImportada(const SIntegracaoTransportada& rIntegracao);
