// What the command line asks of the server process.
#pragma once

#include <string_view>
#include <vector>

#include "server/XVOpcoesInscricao.h"

enum class EComandoServidor {
    eServe,         // started by hand: serves until its last client has left
    eServeAtivado,  // started by COM for a client that is waiting: leaves by itself when none comes
    eRegistra,
    eDesregistra,
    eRegistraUsuario,
    eDesregistraUsuario,
    ePara,  // ends the server that runs
    eDesconhecido,
};

// Switches begin with '/' or '-', case does not count. No argument: eServe. Behind eRegistra may stand
// options of the registration, each once; anything else that is more than one, or not known: eDesconhecido.
EComandoServidor XVLeLinhaComando(const std::vector<std::wstring_view>& listaArgumentos,
                                  SOpcoesInscricao* pOpcoes = nullptr);
