#include "tests/middleware/XVCenarioVarredura.h"

#include <cstdlib>

#ifdef XV_EXECUCAO_LENTA
constexpr bool k_bExecucaoLenta = true;
#else
constexpr bool k_bExecucaoLenta = false;
#endif

bool XVVarreduraCompleta() {
    const char* psz = std::getenv("XV_VARREDURA");
    return psz != nullptr && std::string_view(psz) == "completa";
}

unsigned XVSaltoVarredura(unsigned uiBreve, unsigned uiLento) {
    if (XVVarreduraCompleta()) return 1;
    return k_bExecucaoLenta ? uiLento : uiBreve;
}
