#include "support/trace/XVProfilerFiltro.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array<std::string_view, 7> k_aClassesXVDataBase{
    "CXVDataBase",        "CXVFile",     "CXVGroupFile", "CXVGroupTextFile",
    "T_XVGroupFileChave", "CXVTextFile", "CXVFileCopia"};

bool Contem(std::string_view sTexto, std::string_view sTrecho) {
    return sTexto.find(sTrecho) != std::string_view::npos;
}

// Where the first piece of a list separated by ';', ',' or blank ends. The blank inside the name of a
// template's function ("CXVFile<struct REG_X") separates nothing.
std::size_t FimPrimeiroTrecho(std::string_view sLista) {
    constexpr std::string_view k_sSeparadores = ";, ";
    std::size_t uiFim = sLista.find_first_of(k_sSeparadores);
    while (uiFim < sLista.size() && sLista[uiFim] == ' ' && sLista.substr(0, uiFim).ends_with("<struct"))
        uiFim = sLista.find_first_of(k_sSeparadores, uiFim + 1);
    return std::min(uiFim, sLista.size());
}

// Whether sTexto contains any piece of the list; empty pieces match nothing.
bool ContemAlgum(std::string_view sTexto, std::string_view sLista) {
    while (!sLista.empty()) {
        const std::size_t uiFim = FimPrimeiroTrecho(sLista);
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
