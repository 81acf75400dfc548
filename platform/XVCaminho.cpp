#include "platform/XVCaminho.h"

namespace XVCaminho {

bool PodeNomearDiretorio(std::string_view sCaminho) {
    return !sCaminho.empty() && sCaminho.find('\0') == std::string_view::npos;
}

bool PodeNomearArquivo(std::string_view sCaminho, std::string_view sSeparadores) {
    return PodeNomearDiretorio(sCaminho) && sSeparadores.find(sCaminho.back()) == std::string_view::npos;
}

bool EhNomeSimples(std::string_view sNome) {
    constexpr std::string_view k_sProibidos("/\\:*?\0", 6);
    return !sNome.empty() && sNome != "." && sNome != ".." &&
           sNome.find_first_of(k_sProibidos) == std::string_view::npos;
}

SPartes Separa(std::string_view sCaminho, std::string_view sSeparadores) {
    const std::size_t uiUltimo = sCaminho.find_last_of(sSeparadores);
    if (uiUltimo == std::string_view::npos) {
        return {".", std::string(sCaminho)};
    }
    std::size_t uiFimDiretorio = uiUltimo;
    while (uiFimDiretorio > 0 && sSeparadores.find(sCaminho[uiFimDiretorio - 1]) != std::string_view::npos) {
        --uiFimDiretorio;
    }
    const bool bRaiz = uiFimDiretorio == 0 || sCaminho[uiFimDiretorio - 1] == ':';
    return {std::string(sCaminho.substr(0, bRaiz ? uiUltimo + 1 : uiFimDiretorio)),
            std::string(sCaminho.substr(uiUltimo + 1))};
}

std::string Junta(std::string_view sDiretorio, std::string_view sNome, char cSeparador,
                  std::string_view sSeparadores) {
    const std::size_t uiInicioNome = sNome.find_first_not_of(sSeparadores);
    const std::string_view sNomeLimpo =
        uiInicioNome == std::string_view::npos ? std::string_view() : sNome.substr(uiInicioNome);
    if (sDiretorio.empty()) {
        return std::string(sNomeLimpo);
    }
    const std::size_t uiUltimo = sDiretorio.find_last_not_of(sSeparadores);
    std::string sCaminho(uiUltimo == std::string_view::npos ? std::string_view()
                                                            : sDiretorio.substr(0, uiUltimo + 1));
    sCaminho.reserve(sCaminho.size() + 1 + sNomeLimpo.size());
    sCaminho += cSeparador;
    sCaminho += sNomeLimpo;
    return sCaminho;
}

}  // namespace XVCaminho
