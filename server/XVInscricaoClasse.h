// The component's entries in the registry: class, application, programmatic identifiers and the
// proxy/stub library of its interface, machine-wide or for the current user alone.
#pragma once

#include "server/XVOpcoesInscricao.h"
#include "server/XVResultadoInscricao.h"

enum class EEscopoInscricao {
    eMaquina,  // HKEY_LOCAL_MACHINE\Software\Classes; needs an administrator
    eUsuario,  // HKEY_CURRENT_USER\Software\Classes
};

// Writes all entries for the running program and the proxy/stub library beside it, reads every one back and
// compares. When a step fails, every entry is what it was before. Account and permissions that are not asked
// for stay as they are. An account or permissions are the machine's alone.
SResultadoInscricao XVInscreveClasse(EEscopoInscricao eEscopo, const SOpcoesInscricao& rOpcoes = {});

// Removes the entries of the running program, verifies that none of them is left, and removes the keys that
// are empty then. What another copy or a later version has registered stays, as do values of others and the
// account and permissions of the server. Nothing registered: S_OK.
SResultadoInscricao XVRemoveClasse(EEscopoInscricao eEscopo);
