// The store's door to the external systems. Where a system has no provider the operations that need one
// answer E_NOTIMPL. What happens around an exchange is optional: a provider that does not offer it has
// nothing to do. The exchange itself and direct queries are not. Positive results of providers are successes.
// Thread rule: one object is used by one thread.
#pragma once

#include <vector>

#include "suite/XVInicializador.h"
#include "suite/providers/XVProvedorIntegracao.h"

class CXVMiddlewareFacade : public CXVInicializador {
  public:
    XV_CLASSE("CXVMiddlewareFacade", "XVMiddlewareFacade")

    // Each is a call of the provider of the system named by the data (0: E_INVALIDARG).
    HRESULT RealizaOperacaoAnterior(CXVDadosCR_IntegracaoMiddleware& rDados);
    HRESULT RealizaOperacaoPosterior(const CXVDadosCR_ParametrosIntegracao& rParametros);
    HRESULT AtualizaParametrosIntegracao(CXVDadosCR_ParametrosIntegracao& rParametros);
    // The pending items of the system named by the parameters, or of all installed providers when it is 0.
    HRESULT BuscaIntegracoes(const CXVDadosCR_ParametrosIntegracao& rParametros,
                             std::vector<CXVDadosCR_PendenciaIntegracaoSistema>& listaDados);
    // The first installed provider that answers queries of the kind; none: E_NOTIMPL.
    HRESULT BuscaDadosSistemaTerceiro(const CXVDadosCR_ConsultaSistemaTerceiro& rConsulta,
                                      CXVDadosCR_StatusConsultaSistemaTerceiro& rStatus);
};

// The exchange itself. The system is the one that the data names; E_NOTIMPL: it has no provider, or one that
// does not offer this exchange, and nothing was sent.
class CXVMiddlewareIntegracaoSistemas {
  public:
    XV_CLASSE("CXVMiddlewareIntegracaoSistemas", "XVMiddlewareIntegracaoSistemas")

    static HRESULT EnviaJsonIntegracaoSistemasTerceiros(CXVDadosCR_IntegracaoMiddleware& rDados,
                                                        const IXVDF_Profiler* pDono);
    // pParametros may be null; when given it receives the parameters of the integration as the system
    // answered.
    static HRESULT BuscaDadosIntegracaoSistemasTerceiros(CXVDadosCR_IntegracaoMiddleware& rDados,
                                                         CXVDadosCR_ParametrosIntegracao* pParametros,
                                                         const IXVDF_Profiler* pDono);
    // One query per integration, in list order; the first failure ends it.
    static HRESULT BuscaDadosIntegracaoSistemasTerceiros(
        std::vector<CXVDadosCR_IntegracaoMiddleware>& listaDados, const IXVDF_Profiler* pDono);
    static HRESULT ExcluiDadosIntegracaoSistemasTerceiros(CXVDadosCR_IntegracaoMiddleware& rDados,
                                                          const IXVDF_Profiler* pDono);
};
