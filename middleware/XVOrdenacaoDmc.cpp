#include "middleware/XVOrdenacaoDmc.h"

#include <algorithm>
#include <array>

namespace {

constexpr unsigned k_uiDigitos = sizeof(XVUInt64);  // of one byte each
constexpr std::size_t k_uiValores = 256;
// Below this many the counting of digits costs more than comparing.
constexpr std::size_t k_uiMinimo = 1024;

using TContagem = std::array<std::array<std::size_t, k_uiValores>, k_uiDigitos>;

std::size_t Digito(REG_XVDMC reg, unsigned uiDigito) {
    return reg.uiValor >> (8 * uiDigito) & (k_uiValores - 1);
}

// Moves the list into another, ordered by one digit; what is equal there keeps its order.
void Distribui(const std::vector<REG_XVDMC>& de, std::vector<REG_XVDMC>& para, unsigned uiDigito,
               const std::array<std::size_t, k_uiValores>& aQuantidades) {
    std::array<std::size_t, k_uiValores> aProximo{};
    for (std::size_t v = 1; v < k_uiValores; ++v) aProximo[v] = aProximo[v - 1] + aQuantidades[v - 1];
    for (const REG_XVDMC reg : de) para[aProximo[Digito(reg, uiDigito)]++] = reg;
}

}  // namespace

void XVOrdenaDmcs(std::vector<REG_XVDMC>& lista) {
    if (lista.size() < k_uiMinimo) {
        std::sort(lista.begin(), lista.end(),
                  [](REG_XVDMC reg1, REG_XVDMC reg2) { return reg1.uiValor < reg2.uiValor; });
        return;
    }
    std::vector<REG_XVDMC> listaOutra(lista.size());
    TContagem aContagem{};
    for (const REG_XVDMC reg : lista)
        for (unsigned i = 0; i < k_uiDigitos; ++i) ++aContagem[i][Digito(reg, i)];
    for (unsigned i = 0; i < k_uiDigitos; ++i) {
        // Years and positions leave most digits the same in all.
        if (aContagem[i][Digito(lista.front(), i)] == lista.size()) continue;
        Distribui(lista, listaOutra, i, aContagem[i]);
        lista.swap(listaOutra);
    }
}
