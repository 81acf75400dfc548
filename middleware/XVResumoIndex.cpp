#include "middleware/XVResumoIndex.h"

void TXVResumo<REG_CR_INDEX_INTEGRACAO_V1>::Carrega(const TRegistros& aRegistros) {
    XVByte* pClasse = m_aClasses.PreparaBase(aRegistros.size());
    m_aulQuantos = {};
    XVUInt64 uiAnterior = 0;
    XVUInt64 uiForaDeOrdem = 0;
    const auto anota = [&](std::span<const REG_CR_INDEX_INTEGRACAO_V1> aParte) {
        for (const REG_CR_INDEX_INTEGRACAO_V1& reg : aParte) {
            *pClasse = GetClasse(reg);
            ++m_aulQuantos[*pClasse++];
            uiForaDeOrdem += reg.regDmcIntegracao.uiValor < uiAnterior ? 1 : 0;
            uiAnterior = reg.regDmcIntegracao.uiValor;
        }
    };
    aRegistros.Percorre(anota);
    m_bEmOrdem = uiForaDeOrdem == 0;
}

// An order that was lost is found again at the next opening at the earliest.
void TXVResumo<REG_CR_INDEX_INTEGRACAO_V1>::Muda(const TRegistros& aRegistros, std::size_t i,
                                                 const REG_CR_INDEX_INTEGRACAO_V1& reg) noexcept {
    const XVUInt64 uiDmc = reg.regDmcIntegracao.uiValor;
    if ((i > 0 && aRegistros[i - 1].regDmcIntegracao.uiValor > uiDmc) ||
        (i + 1 < aRegistros.size() && aRegistros[i + 1].regDmcIntegracao.uiValor < uiDmc))
        m_bEmOrdem = false;
    const XVByte ucClasse = GetClasse(reg);
    ++m_aulQuantos[ucClasse];
    if (i == m_aClasses.size()) {
        m_aClasses.Inclui(ucClasse);
        return;
    }
    --m_aulQuantos[m_aClasses[i]];
    m_aClasses[i] = ucClasse;
}
