// The text report of a crash. Written without the heap and without a lock of this program: the state of
// both is unknown by then.
#pragma once

#include <windows.h>

// Writes exception, registers and the stack of the context (at most 64 frames, each as module + offset).
void XVGravaRelatorioCrash(HANDLE hArquivo, const EXCEPTION_POINTERS& rExcecao);
