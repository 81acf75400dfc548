// The wish of a person or of the system that a program of the command line ends: Ctrl-C, SIGTERM, a console
// that is closed. A program that works without end asks for it between two steps.
#pragma once

namespace XVInterrupcao {

// From now on the first such wish is only noted; the second ends the program at once, as it does otherwise. A
// pipe whose reader is gone shows as a failure of writing. Thread rule: called once, while the program starts
// its work.
void Observa();

// Thread rule: any thread.
bool FoiPedida();

}  // namespace XVInterrupcao
