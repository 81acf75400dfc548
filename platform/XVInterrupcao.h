// Requests to end (Ctrl-C, a terminating signal, a window that closes) for a program that ends between two
// steps of its work. One reader at a time waits for input. Thread rule: any thread, except for Observa and
// Encerra, which the main thread calls.
#pragma once

namespace XVInterrupcao {

// From here on a request is noted, and a second one ends the process at once. A request that whoever started
// the program switched off (nohup) stays so. Called again it begins anew. False: the system has no means.
bool Observa();

bool Pedida();

// Whoever waits in a stream of input (platform/XVFluxoEntrada.h) is awakened and reads no more, as a request
// does it.
void Desperta();

// How main ends: where a request was noted as that request ends a process, by its signal or, on Windows, with
// the status 130 (Ctrl-C, Ctrl-Break) or 143; else with iSaida.
int Encerra(int iSaida);

}  // namespace XVInterrupcao
