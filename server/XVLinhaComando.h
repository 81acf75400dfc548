// What the command line asks of the server process.
#pragma once

#include <string_view>
#include <vector>

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

// Switches begin with '/' or '-', case does not count. No argument: eServe. More than one, or one that
// is not known: eDesconhecido.
EComandoServidor XVLeLinhaComando(const std::vector<std::wstring_view>& listaArgumentos);
