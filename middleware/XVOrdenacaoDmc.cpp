#include "middleware/XVOrdenacaoDmc.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace {

// Below this many the counting of days costs more than comparing.
constexpr std::size_t k_uiMinimo = 1024;

bool EhMenor(REG_XVDMC reg1, REG_XVDMC reg2) {
    return reg1.uiValor < reg2.uiValor;
}

XVUInt Dia(REG_XVDMC reg) {
    return reg.GetDma().GetValor();
}

// Where the DMCs of each day begin, from the day ulPrimeiro on, and the end of all.
std::vector<std::size_t> ContaDias(std::span<const REG_XVDMC> lista, XVUInt ulPrimeiro, XVUInt ulUltimo) {
    std::vector<std::size_t> listaInicios(std::size_t{ulUltimo} - ulPrimeiro + 2);
    for (const REG_XVDMC reg : lista) ++listaInicios[Dia(reg) - ulPrimeiro + 1];
    for (std::size_t i = 1; i < listaInicios.size(); ++i) listaInicios[i] += listaInicios[i - 1];
    return listaInicios;
}

}  // namespace

// One move brings each DMC to its day. Within a day the order is that of the index, in which positions ascend
// but where a newer integration took over the record of an older one.
void XVOrdenaDmcs(CXVListaAchadas& lista) {
    const std::span<REG_XVDMC> aDmcs = lista.GetDmcs();
    if (aDmcs.size() < k_uiMinimo) return std::sort(aDmcs.begin(), aDmcs.end(), EhMenor);
    const auto [itPrimeiro, itUltimo] = std::minmax_element(aDmcs.begin(), aDmcs.end(), EhMenor);
    const XVUInt ulPrimeiro = Dia(*itPrimeiro);
    std::vector<std::size_t> listaInicios = ContaDias(aDmcs, ulPrimeiro, Dia(*itUltimo));
    CXVListaAchadas listaOrdenada;
    REG_XVDMC* pDmcs = listaOrdenada.Amplia(aDmcs.size());
    for (const REG_XVDMC reg : aDmcs) pDmcs[listaInicios[Dia(reg) - ulPrimeiro]++] = reg;
    std::size_t uiInicio = 0;  // each place now holds where its day ends
    for (const std::size_t uiFim : listaInicios) {
        if (!std::is_sorted(pDmcs + uiInicio, pDmcs + uiFim, EhMenor))
            std::sort(pDmcs + uiInicio, pDmcs + uiFim, EhMenor);
        uiInicio = uiFim;
    }
    lista = std::move(listaOrdenada);
}
