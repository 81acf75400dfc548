// The text report of a crash. Written without the heap and without a lock of this program: the state of
// both is unknown by then.
#pragma once

#include <windows.h>

// Writes exception, registers and the stack of the context (at most 64 frames, each as module + offset).
// ulThread is the thread that crashed.
void XVGravaRelatorioCrash(HANDLE hArquivo, const EXCEPTION_POINTERS& rExcecao, DWORD ulThread);

// The path of the module that holds the address and its beginning; "?" and null where it is in none.
HMODULE XVModuloDoEndereco(const void* pEndereco, char (&szModulo)[MAX_PATH]);
