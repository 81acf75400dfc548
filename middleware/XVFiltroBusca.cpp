#include "middleware/XVFiltroBusca.h"

#include <algorithm>

namespace {

// Date and time of day are bounded apart: a later day with an earlier time does not pass a lower bound.
bool PassaLimiteInferior(REG_XVDMAHMSUTC regDataHora, REG_XVDMAHMSUTC regLimite) {
    if (regLimite.EhNula()) return true;
    return regDataHora.GetDma() >= regLimite.GetDma() &&
           (regLimite.GetSegundos() == 0 || regDataHora.GetSegundos() >= regLimite.GetSegundos());
}

bool PassaLimiteSuperior(REG_XVDMAHMSUTC regDataHora, REG_XVDMAHMSUTC regLimite) {
    if (regLimite.EhNula()) return true;
    return regDataHora.GetDma() <= regLimite.GetDma() &&
           (regLimite.GetSegundos() == 0 || regDataHora.GetSegundos() <= regLimite.GetSegundos());
}

bool LimitaDataHora(const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS& reg) {
    return !reg.regDataHoraInicialInclusao.EhNula() || !reg.regDataHoraFinalInclusao.EhNula() ||
           !reg.regDataHoraInicialAlteracaoStatus.EhNula() || !reg.regDataHoraFinalAlteracaoStatus.EhNula();
}

}  // namespace

CXVValoresAdmitidos::CXVValoresAdmitidos(std::span<const XVUInt> aLista) : m_bRestringe(!aLista.empty()) {
    for (const XVUInt eValor : aLista) {
        if (eValor < k_ulNaMascara)
            m_uiMascara |= XVUInt64{1} << eValor;
        else
            m_listaMaiores.push_back(eValor);
    }
    std::sort(m_listaMaiores.begin(), m_listaMaiores.end());
}

bool CXVValoresAdmitidos::AdmiteMaior(XVUInt eValor) const {
    return std::binary_search(m_listaMaiores.begin(), m_listaMaiores.end(), eValor);
}

HRESULT CXVFiltroBusca::Interpreta(const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS& reg) {
    if (const HRESULT hr = CXVDadosCR_FiltroIntegracaoMiddleware::Valida(reg); FAILED(hr)) return hr;
    m_reg = reg;
    const auto admite = [](CXVValoresAdmitidos& rValores, const XVUInt* pLista, XVUInt ulQuantidade) {
        if (ulQuantidade > 0) rValores = CXVValoresAdmitidos({pLista, ulQuantidade});
    };
    admite(m_status, reg.pListaStatusIntegracao, reg.ulQuantidadeStatusIntegracao);
    admite(m_sistemas, reg.pListaSistemaIntegracao, reg.ulQuantidadeSistemaIntegracao);
    admite(m_tipos, reg.pListaTipoIntegracao, reg.ulQuantidadeTipoIntegracao);
    admite(m_transacoes, reg.pListaTipoTransacao, reg.ulQuantidadeTipoTransacao);
    m_uiChaveFinal = reg.uiChaveIntegracaoSistemaTerceiroFinal == 0
                         ? std::numeric_limits<XVUInt64>::max()
                         : reg.uiChaveIntegracaoSistemaTerceiroFinal;
    m_bLimitaDatas = LimitaDataHora(reg);
    m_bTemNivel2 = m_tipos.RestringeAlgo() || m_transacoes.RestringeAlgo() || m_bLimitaDatas;
    return S_OK;
}

bool CXVFiltroBusca::PassaNivel2(const REG_CR_INTEGRACAO_MIDDLEWARE_V2& reg) const {
    return m_tipos.Admite(reg.eTipoIntegracao) && m_transacoes.Admite(reg.eTipoTransacao) &&
           PassaDatas(reg.regDataHoraInclusao, reg.regDataHoraAlteracaoStatus);
}

bool CXVFiltroBusca::PassaDatas(REG_XVDMAHMSUTC regInclusao, REG_XVDMAHMSUTC regAlteracaoStatus) const {
    return PassaLimiteInferior(regInclusao, m_reg.regDataHoraInicialInclusao) &&
           PassaLimiteSuperior(regInclusao, m_reg.regDataHoraFinalInclusao) &&
           PassaLimiteInferior(regAlteracaoStatus, m_reg.regDataHoraInicialAlteracaoStatus) &&
           PassaLimiteSuperior(regAlteracaoStatus, m_reg.regDataHoraFinalAlteracaoStatus);
}
