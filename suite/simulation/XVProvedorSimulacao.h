// The built-in provider of the system SimulacaoSistemaTerceiro: an external system that lives in the folder
// "simulacao" of the company's data directory and does what the documents there say (docs/simulation.md).
#pragma once

#include <optional>

#include "suite/providers/XVProvedorIntegracao.h"
#include "suite/simulation/XVDocumentoExterno.h"

class CXVProvedorSimulacao final : public IXVProvedorIntegracao {
  public:
    XV_CLASSE("CXVProvedorSimulacao", "suite/simulation/XVProvedorSimulacao")

    XVUInt GetSistema() const override;
    HRESULT RealizaOperacaoAnterior(const IXVDF_Profiler& rDono,
                                    CXVDadosCR_IntegracaoMiddleware& rDados) override;
    HRESULT RealizaOperacaoPosterior(const IXVDF_Profiler& rDono,
                                     const CXVDadosCR_ParametrosIntegracao& rParametros) override;
    HRESULT AtualizaParametrosIntegracao(const IXVDF_Profiler& rDono,
                                         CXVDadosCR_ParametrosIntegracao& rParametros) override;
    HRESULT BuscaIntegracoes(const IXVDF_Profiler& rDono, const CXVDadosCR_ParametrosIntegracao& rParametros,
                             std::vector<CXVDadosCR_PendenciaIntegracaoSistema>& listaDados) override;
    HRESULT EnviaJson(const IXVDF_Profiler& rDono, CXVDadosCR_IntegracaoMiddleware& rDados) override;
    HRESULT BuscaDados(const IXVDF_Profiler& rDono, CXVDadosCR_IntegracaoMiddleware& rDados) override;
    HRESULT ExcluiDados(const IXVDF_Profiler& rDono, CXVDadosCR_IntegracaoMiddleware& rDados) override;
    HRESULT BuscaDadosSistemaTerceiro(const IXVDF_Profiler& rDono,
                                      const CXVDadosCR_ConsultaSistemaTerceiro& rConsulta,
                                      CXVDadosCR_StatusConsultaSistemaTerceiro& rStatus) override;

  private:
    // Opens the folder, finds the call's rule and carries its outcome out.
    static HRESULT Prepara(const IXVDF_Profiler& rDono, const SChamadaSimulada& rChamada,
                           CXVPastaSimulacao* pPasta, std::optional<SRegraSimulacao>* pRegra);
    // The document of the integration: by key or, without key, the newest of the same origin and type that
    // is not cancelled. *puiChave 0: there is none.
    static HRESULT Localiza(const IXVDF_Profiler& rDono, const CXVPastaSimulacao& rPasta,
                            const CXVDadosCR_IntegracaoMiddleware& rDados, XVUInt64* puiChave,
                            SDocumentoExterno* pDocumento);
    static HRESULT ProcuraOrigem(const IXVDF_Profiler& rDono, const CXVPastaSimulacao& rPasta,
                                 const CXVDadosCR_IntegracaoMiddleware& rDados, XVUInt64* puiChave);
    static HRESULT LePendencia(const IXVDF_Profiler& rDono, const CXVPastaSimulacao& rPasta,
                               const std::string& sNome, const CXVDadosCR_ParametrosIntegracao& rParametros,
                               std::vector<CXVDadosCR_PendenciaIntegracaoSistema>& listaDados);
};
