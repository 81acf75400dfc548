// Last words of a crashing process: a minidump beside the logs or, where none can be had, a text report
// with the exception, the registers and the call stack; and one line of the error log. Then the process ends,
// so that no client goes on working with a server whose memory cannot be trusted, and the next creation
// starts a new one. A crash is a fault that nothing took (inside of a call as well, where the runtime of
// remote calls would take it), a full stack, std::terminate and abort; of this program, of a library that it
// loaded, on any thread.
//
// Switched off by the suite's registry value "DesabilitaTratamentoAppCrash".
#pragma once

#include <string>

namespace XVTratamentoCrash {

// Installs the handlers for the whole process; once, before anything else runs. The files are named
// "XVCR_Middleware_<date>_<time>_<process>" with the extension "dmp" or "txt" and go to sDiretorio
// (empty: the program's own directory). bComMinidump false: always the text report.
void Instala(const std::wstring& sDiretorio, bool bComMinidump = true);

// Whether the registry leaves the handler on.
bool EstaHabilitado();

}  // namespace XVTratamentoCrash
