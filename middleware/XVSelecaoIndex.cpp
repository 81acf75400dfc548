#include "middleware/XVSelecaoIndex.h"

void CXVSelecaoIndex::Ve(TParte aRegistros, std::size_t uiPrimeiro, const TResumo* pResumo) {
    if (pResumo == nullptr) return VeCadaUm(aRegistros);
    if (uiPrimeiro == 0) Prepara(*pResumo);
    constexpr std::size_t k_uiPorVez = 16 * k_uiGrupo;
    const XVByte* pClasses = pResumo->GetClasses(uiPrimeiro);
    for (std::size_t i = 0; i < aRegistros.size(); i += k_uiPorVez) {
        const TParte aVez = aRegistros.subspan(i, std::min(k_uiPorVez, aRegistros.size() - i));
        REG_XVDMC* pDmcs = m_rAchadas.Amplia(aVez.size());
        const std::size_t uiAchadas =
            m_bTodas && m_bTodasExatas ? CopiaTodos(aVez, pDmcs) : Seleciona(aVez, pClasses + i, pDmcs);
        m_rAchadas.Encurta(aVez.size() - uiAchadas);
    }
}

void CXVSelecaoIndex::Prepara(const TResumo& rResumo) {
    std::size_t uiNoMaximo = 0;
    for (std::size_t uiClasse = 0; uiClasse < TResumo::k_uiClasses; ++uiClasse) {
        if (rResumo.GetQuantos(uiClasse) == 0) continue;
        const bool bExata = TResumo::EhExata(uiClasse);
        if (bExata &&
            !m_rFiltro.AdmiteStatusESistema(TResumo::GetStatus(uiClasse), TResumo::GetSistema(uiClasse))) {
            m_bTodas = false;
            continue;
        }
        m_bTodasExatas = m_bTodasExatas && bExata;
        m_aAdmite[uiClasse] = 1;
        m_listaAdmitidas.push_back(static_cast<XVByte>(uiClasse));
        uiNoMaximo += rResumo.GetQuantos(uiClasse);
    }
    m_bEmOrdem = rResumo.EmOrdem();
    // A range of keys may leave next to nothing; without one this is what comes out, the last step apart.
    if (!m_rFiltro.LimitaChave() && uiNoMaximo > 0) m_rAchadas.Reserva(uiNoMaximo + 16 * k_uiGrupo);
}

void CXVSelecaoIndex::VeCadaUm(TParte aRegistros) {
    for (const REG_CR_INDEX_INTEGRACAO_V1& reg : aRegistros) {
        if (!m_rFiltro.PassaNivel1(reg)) continue;
        m_bEmOrdem = m_bEmOrdem && m_uiUltimo <= reg.regDmcIntegracao.uiValor;
        m_uiUltimo = reg.regDmcIntegracao.uiValor;
        m_rAchadas.Inclui(reg.regDmcIntegracao);
    }
}

// Only the key decides, if anything does. The loops store each DMC and keep it by counting it: what passes is
// no matter of chance to a branch.
std::size_t CXVSelecaoIndex::CopiaTodos(TParte aRegistros, REG_XVDMC* pDmcs) const {
    if (!m_rFiltro.LimitaChave()) {
        for (const REG_CR_INDEX_INTEGRACAO_V1& reg : aRegistros) *pDmcs++ = reg.regDmcIntegracao;
        return aRegistros.size();
    }
    std::size_t uiAchadas = 0;
    for (const REG_CR_INDEX_INTEGRACAO_V1& reg : aRegistros) {
        pDmcs[uiAchadas] = reg.regDmcIntegracao;
        uiAchadas += m_rFiltro.AdmiteChave(reg.uiChaveIntegracaoSistemaTerceiro) ? 1U : 0U;
    }
    return uiAchadas;
}

std::size_t CXVSelecaoIndex::Seleciona(TParte aRegistros, const XVByte* pClasses, REG_XVDMC* pDmcs) const {
    std::size_t uiAchadas = 0;
    for (std::size_t i = 0; i < aRegistros.size(); i += k_uiGrupo) {
        const std::size_t uiQtd = std::min(k_uiGrupo, aRegistros.size() - i);
        if (uiQtd < k_uiGrupo || TemAlguma(pClasses + i))
            uiAchadas += SelecionaGrupo(aRegistros.subspan(i, uiQtd), pClasses + i, pDmcs + uiAchadas);
    }
    return uiAchadas;
}

// Of few classes each is compared with a whole group at once.
bool CXVSelecaoIndex::TemAlguma(const XVByte* pClasses) const {
    constexpr std::size_t k_uiPoucas = 4;
    if (m_listaAdmitidas.size() > k_uiPoucas) return true;
    XVByte ucAlguma = 0;
    for (const XVByte ucClasse : m_listaAdmitidas)
        for (std::size_t i = 0; i < k_uiGrupo; ++i)
            ucAlguma = static_cast<XVByte>(ucAlguma | (pClasses[i] == ucClasse ? 1 : 0));
    return ucAlguma != 0;
}

// First by the classes alone: records that do not pass are not fetched from memory.
std::size_t CXVSelecaoIndex::SelecionaGrupo(TParte aRegistros, const XVByte* pClasses,
                                            REG_XVDMC* pDmcs) const {
    std::array<XVByte, k_uiGrupo> aIndices;
    std::size_t uiAdmitidas = 0;
    for (std::size_t i = 0; i < aRegistros.size(); ++i) {
        aIndices[uiAdmitidas] = static_cast<XVByte>(i);
        uiAdmitidas += m_aAdmite[pClasses[i]];
    }
    std::size_t uiAchadas = 0;
    for (std::size_t k = 0; k < uiAdmitidas; ++k) {
        const REG_CR_INDEX_INTEGRACAO_V1& reg = aRegistros[aIndices[k]];
        pDmcs[uiAchadas] = reg.regDmcIntegracao;
        const bool bPassa = m_bTodasExatas ? m_rFiltro.AdmiteChave(reg.uiChaveIntegracaoSistemaTerceiro)
                                           : m_rFiltro.PassaNivel1(reg);
        uiAchadas += bPassa ? 1U : 0U;
    }
    return uiAchadas;
}
