// How often a hot path may ask for the time. Windows answers the tick count from a shared page, for
// less than a thread-local counter would cost there; elsewhere reading the clock costs more than the rest of
// the path, and a thread-local counter next to nothing.
#pragma once

#ifdef _WIN32

constexpr bool XVDeveConsultarRelogio() {
    return true;
}

#else

namespace XVAmostraInterno {
inline constexpr unsigned k_uiPeriodo = 64;  // calls of one thread between two readings
inline constinit thread_local unsigned g_uiChamadas = 0;
}  // namespace XVAmostraInterno

// True for the first call of each thread and every 64th after it.
inline bool XVDeveConsultarRelogio() {
    return XVAmostraInterno::g_uiChamadas++ % XVAmostraInterno::k_uiPeriodo == 0;
}

#endif
