#include "support/XVProfilerFiltro.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array<std::string_view, 7> k_aClassesXVDataBase{
    "CXVDataBase",        "CXVFile",     "CXVGroupFile", "CXVGroupTextFile",
    "T_XVGroupFileChave", "CXVTextFile", "CXVFileCopia"};

bool Contem(std::string_view sTexto, std::string_view sTrecho) {
    return sTexto.find(sTrecho) != std::string_view::npos;
}

// Whether sTexto contains any piece of a list separated by ';', ',' or blank; empty pieces match nothing.
bool ContemAlgum(std::string_view sTexto, std::string_view sLista) {
    while (!sLista.empty()) {
        const std::size_t uiFim = std::min(sLista.find_first_of(";, "), sLista.size());
        const std::string_view sTrecho = sLista.substr(0, uiFim);
        if (!sTrecho.empty() && Contem(sTexto, sTrecho)) return true;
        sLista.remove_prefix(std::min(uiFim + 1, sLista.size()));
    }
    return false;
}

}  // namespace

namespace XVProfilerFiltro {

bool DeveLogarProcesso(const SConfiguracaoTrace& rConfiguracao, std::string_view sProcesso) {
    return Contem(rConfiguracao.sProcessos, "todos") || ContemAlgum(sProcesso, rConfiguracao.sProcessos);
}

bool DeveLogarXVDataBase(const SConfiguracaoTrace& rConfiguracao, std::string_view sFuncao) {
    if (rConfiguracao.bLogaTudoXVDataBase || ContemAlgum(sFuncao, rConfiguracao.sXVDataBase)) return true;
    for (const std::string_view sClasse : k_aClassesXVDataBase)
        if (Contem(sFuncao, sClasse)) return false;
    return true;
}

}  // namespace XVProfilerFiltro
