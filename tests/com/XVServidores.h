// The server program: run with a switch, and its processes as the system sees them.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "tests/harness/XVExecucao.h"

namespace XVServidores {

std::string Programa();
// Runs it to its end; its exit code is a result code.
SExecucao Executa(const std::vector<std::string>& listaArgumentos = {});

// The server processes that run.
std::vector<DWORD> Lista();
// Waits until exactly that many run.
bool Espera(std::size_t uiQuantidade);
void Mata();
// Asks them to end as the system does: WM_CLOSE to the hidden window or, where there is no display for
// one, WM_QUIT to the thread that pumps.
void PedeFim();

}  // namespace XVServidores
