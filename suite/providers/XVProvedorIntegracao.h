// Providers of the exchange with external systems: one object per system. The store calls them only
// through CXVMiddlewareFacade and CXVMiddlewareIntegracaoSistemas.
//
// Thread rule: a provider may be called from several threads at once. No lock of the store is held
// while a provider works.
#pragma once

#include <memory>
#include <vector>

#include "contract/XVDadosCR.h"
#include "support/trace/IXVDF_Profiler.h"

class IXVProvedorIntegracao {
  public:
    virtual ~IXVProvedorIntegracao() = default;

    virtual XVUInt GetSistema() const = 0;  // XVSMiddleware_SistemaIntegracao

    // Before and after an exchange; E_NOTIMPL: there is nothing to do. The first may complete the data.
    virtual HRESULT RealizaOperacaoAnterior(const IXVDF_Profiler& rDono,
                                            CXVDadosCR_IntegracaoMiddleware& rDados) = 0;
    virtual HRESULT RealizaOperacaoPosterior(const IXVDF_Profiler& rDono,
                                             const CXVDadosCR_ParametrosIntegracao& rParametros) = 0;
    // May change type, transaction, branch, origin and external key of a pending item before it is recorded.
    virtual HRESULT AtualizaParametrosIntegracao(const IXVDF_Profiler& rDono,
                                                 CXVDadosCR_ParametrosIntegracao& rParametros) = 0;
    // Appends the pending items of the record named by the parameters.
    virtual HRESULT BuscaIntegracoes(const IXVDF_Profiler& rDono,
                                     const CXVDadosCR_ParametrosIntegracao& rParametros,
                                     std::vector<CXVDadosCR_PendenciaIntegracaoSistema>& listaDados) = 0;

    // The exchange: send, query again, delete. A result of the external system (accepted, refused) is told by
    // status, message, returned JSON and key in rDados; an exchange that did not take place by the code, of
    // which E_NOTIMPL alone promises that nothing was sent.
    virtual HRESULT EnviaJson(const IXVDF_Profiler& rDono, CXVDadosCR_IntegracaoMiddleware& rDados) = 0;
    virtual HRESULT BuscaDados(const IXVDF_Profiler& rDono, CXVDadosCR_IntegracaoMiddleware& rDados) = 0;
    virtual HRESULT ExcluiDados(const IXVDF_Profiler& rDono, CXVDadosCR_IntegracaoMiddleware& rDados) = 0;

    // A direct query; E_NOTIMPL when this system answers no query of the kind.
    virtual HRESULT BuscaDadosSistemaTerceiro(const IXVDF_Profiler& rDono,
                                              const CXVDadosCR_ConsultaSistemaTerceiro& rConsulta,
                                              CXVDadosCR_StatusConsultaSistemaTerceiro& rStatus) = 0;
};

// The installed providers: the built-in simulation, and for each other system the library
// "XVProvedor<number of the system>" when it lies in the program's directory. Loaded once per process.
struct SSituacaoProvedor {
    XVUInt eSistema;
    std::string sBiblioteca;  // empty: part of this program
    std::string sMotivo;      // why a library that is there is not used; empty: it is
};

namespace XVProvedores {
// Every provider that there is, those included that cannot be used, in ascending order of their system.
const std::vector<SSituacaoProvedor>& Situacao();
// The provider of a system, or null. Valid until the process ends.
IXVProvedorIntegracao* Busca(XVUInt eSistema);
// All providers in ascending order of their system.
std::vector<IXVProvedorIntegracao*> Lista();
}  // namespace XVProvedores
