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

bool LimitaDataHora(const CXVDadosCR_FiltroIntegracaoMiddleware& rFiltro) {
    return !rFiltro.GetDataHoraInicialInclusao().EhNula() || !rFiltro.GetDataHoraFinalInclusao().EhNula() ||
           !rFiltro.GetDataHoraInicialAlteracaoStatus().EhNula() ||
           !rFiltro.GetDataHoraFinalAlteracaoStatus().EhNula();
}

}  // namespace

CXVValoresAdmitidos::CXVValoresAdmitidos(const std::vector<XVUInt>& lista) : m_bRestringe(!lista.empty()) {
    for (const XVUInt eValor : lista) {
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

HRESULT CXVFiltroBusca::CopiarDe(const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS& reg) {
    if (const HRESULT hr = m_dados.CopiarDe(reg); FAILED(hr)) return hr;
    m_status = CXVValoresAdmitidos(m_dados.listaStatusIntegracao);
    m_sistemas = CXVValoresAdmitidos(m_dados.listaSistemaIntegracao);
    m_tipos = CXVValoresAdmitidos(m_dados.listaTipoIntegracao);
    m_transacoes = CXVValoresAdmitidos(m_dados.listaTipoTransacao);
    m_uiChaveFinal = m_dados.uiChaveIntegracaoSistemaTerceiroFinal == 0
                         ? std::numeric_limits<XVUInt64>::max()
                         : m_dados.uiChaveIntegracaoSistemaTerceiroFinal;
    m_bTemNivel2 = m_tipos.RestringeAlgo() || m_transacoes.RestringeAlgo() || LimitaDataHora(m_dados);
    return S_OK;
}

bool CXVFiltroBusca::PassaNivel2(const REG_CR_INTEGRACAO_MIDDLEWARE_V2& reg) const {
    return m_tipos.Admite(reg.eTipoIntegracao) && m_transacoes.Admite(reg.eTipoTransacao) &&
           PassaLimiteInferior(reg.regDataHoraInclusao, m_dados.GetDataHoraInicialInclusao()) &&
           PassaLimiteSuperior(reg.regDataHoraInclusao, m_dados.GetDataHoraFinalInclusao()) &&
           PassaLimiteInferior(reg.regDataHoraAlteracaoStatus, m_dados.GetDataHoraInicialAlteracaoStatus()) &&
           PassaLimiteSuperior(reg.regDataHoraAlteracaoStatus, m_dados.GetDataHoraFinalAlteracaoStatus());
}
