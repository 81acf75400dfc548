#include <algorithm>

#include "contract/XVDadosCR.h"

namespace {

bool EhListaValida(XVUInt ulQuantidade, const XVUInt* pLista) {
    return ulQuantidade == 0 || pLista != nullptr;
}

std::vector<XVUInt> Lista(XVUInt ulQuantidade, const XVUInt* pLista) {
    if (ulQuantidade == 0) return {};
    return {pLista, pLista + ulQuantidade};
}

}  // namespace

HRESULT CXVDadosCR_FiltroIntegracaoMiddleware::CopiarDe(const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS& reg) {
    if (!EhListaValida(reg.ulQuantidadeTipoIntegracao, reg.pListaTipoIntegracao) ||
        !EhListaValida(reg.ulQuantidadeStatusIntegracao, reg.pListaStatusIntegracao) ||
        !EhListaValida(reg.ulQuantidadeSistemaIntegracao, reg.pListaSistemaIntegracao) ||
        !EhListaValida(reg.ulQuantidadeTipoTransacao, reg.pListaTipoTransacao))
        return E_INVALIDARG;
    for (const REG_XVDMAHMSUTC& rDataHora :
         {reg.regDataHoraInicialInclusao, reg.regDataHoraFinalInclusao, reg.regDataHoraInicialAlteracaoStatus,
          reg.regDataHoraFinalAlteracaoStatus})
        if (!rDataHora.EhValida()) return E_INVALIDARG;
    m_uiChaveInicial = reg.uiChaveIntegracaoSistemaTerceiroInicial;
    m_uiChaveFinal = reg.uiChaveIntegracaoSistemaTerceiroFinal;
    m_regInicialInclusao = reg.regDataHoraInicialInclusao;
    m_regFinalInclusao = reg.regDataHoraFinalInclusao;
    m_regInicialAlteracao = reg.regDataHoraInicialAlteracaoStatus;
    m_regFinalAlteracao = reg.regDataHoraFinalAlteracaoStatus;
    m_listaTipo = Lista(reg.ulQuantidadeTipoIntegracao, reg.pListaTipoIntegracao);
    m_listaStatus = Lista(reg.ulQuantidadeStatusIntegracao, reg.pListaStatusIntegracao);
    m_listaSistema = Lista(reg.ulQuantidadeSistemaIntegracao, reg.pListaSistemaIntegracao);
    m_listaTransacao = Lista(reg.ulQuantidadeTipoTransacao, reg.pListaTipoTransacao);
    return S_OK;
}

bool CXVDadosCR_FiltroIntegracaoMiddleware::Find(const std::vector<XVUInt>& lista, XVUInt e) {
    return std::find(lista.begin(), lista.end(), e) != lista.end();
}
