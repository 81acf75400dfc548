// Times, in milliseconds, that an ending server and whoever waits for its end agree on.
#pragma once

#include <windows.h>

// What calls in progress get to finish, counted from the moment in which the end begins.
inline constexpr DWORD k_ulEsperaChamadasEmCurso = 18000;
// The whole end: whatever is still under way by then is cut off, and recovered at the next opening of a
// store.
inline constexpr DWORD k_ulFimMaximo = 22000;
// What a crash, which is an end as well, gets for its report.
inline constexpr DWORD k_ulTempoRelatorioCrash = 20000;
// How long a successor waits for its predecessor to be gone, and "/Stop" for the server.
inline constexpr DWORD k_ulEsperaFimDoAnterior = 25000;
// COM gives the waiting client a failure when the class is not offered within this time of the start.
inline constexpr DWORD k_ulLimiteDeInicioDoCom = 30000;

static_assert(k_ulEsperaChamadasEmCurso < k_ulFimMaximo && k_ulFimMaximo < k_ulEsperaFimDoAnterior &&
              k_ulTempoRelatorioCrash < k_ulEsperaFimDoAnterior &&
              k_ulEsperaFimDoAnterior < k_ulLimiteDeInicioDoCom);
