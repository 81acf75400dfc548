#include "suite/XVMiddlewareFacade.h"

namespace {

// E_INVALIDARG: no system named. E_NOTIMPL: the system has no provider here.
HRESULT BuscaProvedor(XVUInt eSistema, IXVProvedorIntegracao** ppProvedor) {
    if (eSistema == Tipo_Nenhum) return E_INVALIDARG;
    *ppProvedor = XVProvedores::Busca(eSistema);
    return *ppProvedor != nullptr ? S_OK : E_NOTIMPL;
}

// An operation that a provider does not offer has nothing to do there.
HRESULT SeOferecida(HRESULT hr) {
    return hr == E_NOTIMPL ? S_OK : hr;
}

HRESULT ValidaConsulta(const CXVDadosCR_ConsultaSistemaTerceiro& rConsulta) {
    const bool bValida = rConsulta.eTipoConsulta != eXVSMiddleware_NenhumaConsulta &&
                         rConsulta.eTipoConsulta < eXVSMiddleware_QuantidadeTipoConsulta;
    return bValida ? S_OK : E_INVALIDARG;
}

// A system that keeps no pending items has none to add.
HRESULT BuscaEmTodos(const IXVDF_Profiler& rDono, const CXVDadosCR_ParametrosIntegracao& rParametros,
                     std::vector<CXVDadosCR_PendenciaIntegracaoSistema>& listaDados) {
    for (IXVProvedorIntegracao* pProvedor : XVProvedores::Lista()) {
        const HRESULT hr = SeOferecida(pProvedor->BuscaIntegracoes(rDono, rParametros, listaDados));
        if (FAILED(hr)) return hr;
    }
    return S_OK;
}

HRESULT ConsultaProvedores(const IXVDF_Profiler& rDono, const CXVDadosCR_ConsultaSistemaTerceiro& rConsulta,
                           CXVDadosCR_StatusConsultaSistemaTerceiro& rStatus) {
    for (IXVProvedorIntegracao* pProvedor : XVProvedores::Lista()) {
        rStatus = {};
        const HRESULT hr = pProvedor->BuscaDadosSistemaTerceiro(rDono, rConsulta, rStatus);
        if (hr != E_NOTIMPL) return hr;
    }
    rStatus = {};
    return E_NOTIMPL;
}

}  // namespace

HRESULT CXVMiddlewareFacade::RealizaOperacaoAnterior(CXVDadosCR_IntegracaoMiddleware& rDados) {
    IXVProvedorIntegracao* pProvedor = nullptr;
    XV_CHECK(BuscaProvedor(rDados.eSistemaIntegracao, &pProvedor));
    XV_CHECK(SeOferecida(pProvedor->RealizaOperacaoAnterior(*this, rDados)));
    return S_OK;
}

HRESULT CXVMiddlewareFacade::RealizaOperacaoPosterior(const CXVDadosCR_ParametrosIntegracao& rParametros) {
    IXVProvedorIntegracao* pProvedor = nullptr;
    XV_CHECK(BuscaProvedor(rParametros.eSistemaIntegracao, &pProvedor));
    XV_CHECK(SeOferecida(pProvedor->RealizaOperacaoPosterior(*this, rParametros)));
    return S_OK;
}

HRESULT CXVMiddlewareFacade::AtualizaParametrosIntegracao(CXVDadosCR_ParametrosIntegracao& rParametros) {
    IXVProvedorIntegracao* pProvedor = nullptr;
    XV_CHECK(BuscaProvedor(rParametros.eSistemaIntegracao, &pProvedor));
    XV_CHECK(SeOferecida(pProvedor->AtualizaParametrosIntegracao(*this, rParametros)));
    return S_OK;
}

HRESULT CXVMiddlewareFacade::BuscaIntegracoes(
    const CXVDadosCR_ParametrosIntegracao& rParametros,
    std::vector<CXVDadosCR_PendenciaIntegracaoSistema>& listaDados) {
    listaDados.clear();
    if (rParametros.eSistemaIntegracao != Tipo_Nenhum) {
        IXVProvedorIntegracao* pProvedor = nullptr;
        XV_CHECK(BuscaProvedor(rParametros.eSistemaIntegracao, &pProvedor));
        XV_CHECK(SeOferecida(pProvedor->BuscaIntegracoes(*this, rParametros, listaDados)));
        return S_OK;
    }
    XV_CHECK(BuscaEmTodos(*this, rParametros, listaDados));
    return S_OK;
}

HRESULT CXVMiddlewareFacade::BuscaDadosSistemaTerceiro(const CXVDadosCR_ConsultaSistemaTerceiro& rConsulta,
                                                       CXVDadosCR_StatusConsultaSistemaTerceiro& rStatus) {
    XV_CHECK(ValidaConsulta(rConsulta));
    XV_CHECK(ConsultaProvedores(*this, rConsulta, rStatus));
    return S_OK;
}
