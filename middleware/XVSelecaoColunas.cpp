#include "middleware/XVSelecaoColunas.h"

#include <algorithm>
#include <array>

namespace {

using TColunas = TXVColunas<REG_CR_INTEGRACAO_MIDDLEWARE_V2>;
using TParte = std::span<const REG_XVDMC>;

constexpr std::size_t k_uiPorVez = 1024;

// How many of the first k_uiPorVez are at neighbouring positions.
std::size_t ContaVizinhas(TParte aDmcs) {
    const std::size_t uiNoMaximo = std::min(aDmcs.size(), k_uiPorVez);
    const XVUInt64 uiPrimeira = aDmcs.front().GetPonteiro();
    std::size_t i = 1;
    while (i < uiNoMaximo && aDmcs[i].GetPonteiro() == uiPrimeira + i) ++i;
    return i;
}

// First by the bytes alone, without a branch that chance decides; dates are looked at only where these pass.
void SelecionaVizinhas(const CXVFiltroBusca& rFiltro, const TColunas::SParte& rParte, TParte aDmcs,
                       CXVListaAchadas& rAchadas) {
    std::array<XVUShort, k_uiPorVez> aIndices;
    std::size_t uiAdmitidas = 0;
    for (std::size_t i = 0; i < aDmcs.size(); ++i) {
        aIndices[uiAdmitidas] = static_cast<XVUShort>(i);
        const bool bTipo = rFiltro.AdmiteTipo(rParte.pucTipos[i]);
        const bool bTransacao = rFiltro.AdmiteTransacao(rParte.pucTransacoes[i]);
        uiAdmitidas += (bTipo ? 1U : 0U) & (bTransacao ? 1U : 0U);
    }
    REG_XVDMC* pDmcs = rAchadas.Amplia(uiAdmitidas);
    std::size_t uiAchadas = 0;
    for (std::size_t k = 0; k < uiAdmitidas; ++k) {
        const std::size_t i = aIndices[k];
        pDmcs[uiAchadas] = aDmcs[i];
        uiAchadas +=
            !rFiltro.LimitaDatas() || rFiltro.PassaDatas(rParte.pInclusoes[i], rParte.pAlteracoesStatus[i])
                ? 1U
                : 0U;
    }
    rAchadas.Encurta(uiAdmitidas - uiAchadas);
}

}  // namespace

bool XVSelecionaPorColunas(const CXVFiltroBusca& rFiltro, const TColunas& rColunas, TParte aDmcs,
                           CXVListaAchadas& rAchadas) {
    if (rColunas.TemOutros()) return false;
    const std::size_t uiAntes = rAchadas.size();
    while (!aDmcs.empty()) {
        const XVUInt uiPosicao = aDmcs.front().GetPonteiro();
        if (uiPosicao == 0 || uiPosicao > rColunas.size()) {
            rAchadas.Encurta(rAchadas.size() - uiAntes);
            return false;
        }
        const TColunas::SParte parte = rColunas.GetParte(uiPosicao - 1);
        const std::size_t uiQtd = std::min(ContaVizinhas(aDmcs), parte.uiQuantidade);
        SelecionaVizinhas(rFiltro, parte, aDmcs.first(uiQtd), rAchadas);
        aDmcs = aDmcs.subspan(uiQtd);
    }
    return true;
}
