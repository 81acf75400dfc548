#include "suite/XVMiddlewareFacade.h"

namespace {

// One exchange: the operation of the provider of the data's system.
using POperacao = HRESULT (IXVProvedorIntegracao::*)(const IXVDF_Profiler&, CXVDadosCR_IntegracaoMiddleware&);

HRESULT Executa(POperacao pOperacao, CXVDadosCR_IntegracaoMiddleware& rDados, const IXVDF_Profiler* pDono) {
    if (pDono == nullptr) return E_POINTER;
    if (rDados.eSistemaIntegracao == Tipo_Nenhum) return E_INVALIDARG;
    IXVProvedorIntegracao* pProvedor = XVProvedores::Busca(rDados.eSistemaIntegracao);
    return pProvedor != nullptr ? (pProvedor->*pOperacao)(*pDono, rDados) : E_NOTIMPL;
}

}  // namespace

HRESULT CXVMiddlewareIntegracaoSistemas::EnviaJsonIntegracaoSistemasTerceiros(
    CXVDadosCR_IntegracaoMiddleware& rDados, const IXVDF_Profiler* pDono) {
    XV_CHECK_DONO(pDono, Executa(&IXVProvedorIntegracao::EnviaJson, rDados, pDono));
    return S_OK;
}

HRESULT CXVMiddlewareIntegracaoSistemas::BuscaDadosIntegracaoSistemasTerceiros(
    CXVDadosCR_IntegracaoMiddleware& rDados, CXVDadosCR_ParametrosIntegracao* pParametros,
    const IXVDF_Profiler* pDono) {
    XV_CHECK_DONO(pDono, Executa(&IXVProvedorIntegracao::BuscaDados, rDados, pDono));
    if (pParametros != nullptr) {
        pParametros->regDmcOrigem = rDados.regDmcMovimentoOrigem;
        pParametros->regDmcIntegracao = rDados.regDmc;
        pParametros->uiChaveRegistroSistemaTerceiro = rDados.uiChaveRegistroSistemaTerceiro;
        pParametros->uiBaseDadosTerceiro = rDados.uiBaseDadosTerceiro;
        pParametros->eTipoIntegracao = rDados.eTipoIntegracao;
        pParametros->eSistemaIntegracao = rDados.eSistemaIntegracao;
        pParametros->eTipoTransacao = rDados.eTipoTransacao;
        pParametros->ulPonteiroFilial = rDados.ulPonteiroFilial;
        pParametros->ulPonteiroAuxiliar = rDados.ulPonteiroAuxiliar;
        pParametros->ucTipoPonteiroAuxiliar = rDados.ucTipoPonteiroAuxiliar;
    }
    return S_OK;
}

HRESULT CXVMiddlewareIntegracaoSistemas::BuscaDadosIntegracaoSistemasTerceiros(
    std::vector<CXVDadosCR_IntegracaoMiddleware>& listaDados, const IXVDF_Profiler* pDono) {
    for (CXVDadosCR_IntegracaoMiddleware& rDados : listaDados)
        XV_CHECK_DONO(pDono, BuscaDadosIntegracaoSistemasTerceiros(rDados, nullptr, pDono));
    return S_OK;
}

HRESULT CXVMiddlewareIntegracaoSistemas::ExcluiDadosIntegracaoSistemasTerceiros(
    CXVDadosCR_IntegracaoMiddleware& rDados, const IXVDF_Profiler* pDono) {
    XV_CHECK_DONO(pDono, Executa(&IXVProvedorIntegracao::ExcluiDados, rDados, pDono));
    return S_OK;
}
