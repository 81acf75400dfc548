// Share modes between openings of one file, inside a process as between processes.
//
// Every opening holds shared locks of its open file description on marker bytes far behind any content:
// one says "has read access", one "has write access", one "denies reading", one "denies writing". The
// kernel drops them with the last reference to the description, whatever ends the process. Testing and
// placing are one step because both happen under flock(LOCK_EX), which is never held longer than that by
// this system. A foreign program may hold a flock of its own for as long as it likes: nobody waits for it
// without end.
#pragma once

#include <string>

#include "platform/XVSistemaArquivos.h"

namespace XVCompartilhamentoPosix {

// Waits for the gate of the file, which opens with LiberaPortao or when the descriptor is closed. One that
// stays shut is eViolacaoCompartilhamento.
CXVErroArquivo TomaPortao(int iDescritor);
void LiberaPortao(int iDescritor);

// Under the gate: places the marks of this opening, or eViolacaoCompartilhamento.
CXVErroArquivo Marca(int iDescritor, EAcessoArquivo eAcesso, ECompartilhamentoArquivo eCompartilhamento);

// Under the gate: eViolacaoCompartilhamento when any opening of the file exists.
CXVErroArquivo ExigeFechado(int iDescritor);

// Whether sCaminho still names the open file, which another process may have deleted or replaced
// between the opening and the gate.
bool AindaEh(int iDescritor, const std::string& sCaminho);

}  // namespace XVCompartilhamentoPosix
