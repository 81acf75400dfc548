// operator new of this program can be told to fail once. In a source of its own, so that no caller sees the
// two halves of the replacement at once.
#pragma once

namespace XVFalhaMemoria {
// The allocation that throws, counted from now (1 is the next); 0: none.
void Programa(unsigned uiNumero);
// Ends the plan; whether the allocation came.
bool Termina();
}  // namespace XVFalhaMemoria
