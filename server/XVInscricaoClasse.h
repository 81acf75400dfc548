// The component's entries in the registry: class, application, programmatic identifiers and the
// proxy/stub library of its interface, machine-wide or for the current user alone.
#pragma once

#include <string>

#include "platform/XVTipos.h"

enum class EEscopoInscricao {
    eMaquina,  // HKEY_LOCAL_MACHINE\Software\Classes; needs an administrator
    eUsuario,  // HKEY_CURRENT_USER\Software\Classes
};

// How a registration ended; sPasso names the step that failed, in Portuguese, empty on success.
struct SResultadoInscricao {
    HRESULT hr = S_OK;
    std::string sPasso;
};

// Writes all entries for the running program and the proxy/stub library beside it, reads every one back and
// compares. When a step fails, what had been written is removed again.
SResultadoInscricao XVInscreveClasse(EEscopoInscricao eEscopo);

// Removes all entries and verifies that none is left. Nothing registered: S_OK.
SResultadoInscricao XVRemoveClasse(EEscopoInscricao eEscopo);
