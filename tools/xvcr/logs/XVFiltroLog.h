// Which lines of a trace log are wanted. Empty members restrict nothing.
#pragma once

#include <string>

#include "tools/xvcr/logs/XVLinhaLog.h"

struct SFiltroLog {
    std::string sDe;  // local times as the log writes them, "2026-11-21T13:05:09"
    std::string sAte;
    std::string sFuncao;  // a part of the name, any case
    std::string sCodigo;  // "0x81080AAA"
    std::string sEmpresa;
    std::string sUsuario;
    std::string sSessao;

    bool Aceita(const SLinhaLog& rLinha) const;

    // Readers of option values; the explanation of what is wrong, or an empty text.
    [[nodiscard]] static std::string LeMomento(std::string_view sTexto, bool bFim, std::string* psMomento);
    // A code in any form of XVLeituraCodigo.
    [[nodiscard]] static std::string LeCodigo(std::string_view sTexto, std::string* psCodigo);
};
