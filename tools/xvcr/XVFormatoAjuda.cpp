#include "tools/xvcr/XVFormatoAjuda.h"

#include "tools/xvcr/text/XVTextoTela.h"

CXVFormatoAjuda::CXVFormatoAjuda() {
    label("Usage", "Uso");
    label("OPTIONS", "OPÇÕES");
    label("SUBCOMMAND", "COMANDO");
    label("SUBCOMMANDS", "COMANDO");
    label("Positionals", "Argumentos");
    label("REQUIRED", "(obrigatória)");
    label("Excludes", "| não com");
    column_width(40);
}

std::string CXVFormatoAjuda::make_option(const CLI::Option* pOpcao, bool bPosicional) const {
    std::string sLinha = "  " + make_option_name(pOpcao, bPosicional) + make_option_opts(pOpcao);
    // An option is "uma opção", a positional "um argumento".
    if (const std::size_t uiFim = sLinha.find("ória)"); bPosicional && uiFim != std::string::npos)
        sLinha.replace(uiFim, sizeof("ória)") - 1, "ório)");
    const std::size_t uiLargura = XVTextoTela::GetLargura(sLinha);
    sLinha.append(uiLargura < get_column_width() ? get_column_width() - uiLargura : 1, ' ');
    return sLinha + make_option_desc(pOpcao) + '\n';
}
