// The request that a server end in order, made from outside: each serving process, and each that waits for
// its turn to serve, has a named event for it, which its owner, administrators and the system may set, in
// whatever session it runs.
#pragma once

#include <windows.h>

#include <string>

#include "platform/XVTipos.h"

// The event of this process, not signalled. Where its name cannot be had, one without a name: the server then
// ends by its other ways only.
HANDLE XVCriaPedidoFim();

struct SParada {
    HRESULT hr = S_OK;
    unsigned uiTerminados = 0;        // servers that ended
    unsigned uiDeOutrosUsuarios = 0;  // servers that this user may not end
};

// What a person is told of it, in Portuguese, where hr is a success.
std::string XVTextoDaParada(const SParada& rParada);

// "/Stop": asks every server that this user may end to do so, those included that take over from one of them,
// and returns when they are gone. The time limit is k_ulEsperaFimDoAnterior (hr: ERROR_TIMEOUT).
SParada XVParaServidores();
