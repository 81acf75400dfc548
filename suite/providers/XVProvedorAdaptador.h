// A provider that lives in a plug-in library: translates between the data classes and the records of
// suite/providers/XVProvedorPlugin.h, waits for no call for ever (XVVigiaProvedor.h) and trusts nothing that
// the library hands back.
#pragma once

#include <memory>
#include <string>

#include "suite/providers/XVProvedorIntegracao.h"
#include "suite/providers/XVProvedorPlugin.h"
#include "suite/providers/XVVigiaProvedor.h"

class CXVProvedorAdaptador final : public IXVProvedorIntegracao {
  public:
    // A library whose answer breaks the rules of the interface: wrong size, null pointer, value out of its
    // range, NUL in a text. Nothing of such an answer is used.
    static constexpr HRESULT k_hrRespostaInvalida = E_UNEXPECTED;

    // Asks the library's exported function (null: it exports none) for its table; null when version, sizes,
    // system or required functions do not fit, and then *psMotivo says what.
    static std::unique_ptr<IXVProvedorIntegracao> Cria(PFXVProvedorObtem pfnObtem, XVUInt eSistema,
                                                       std::string* psMotivo);

    XVUInt GetSistema() const override { return m_Tabela.eSistema; }
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
    explicit CXVProvedorAdaptador(const XVProvedorTabela& rTabela)
        : m_Tabela(rTabela), m_vigia(rTabela.eSistema) {}
    HRESULT Executa(const char* pszFuncao, PFXVProvedorDados pfnOperacao, const IXVDF_Profiler& rDono,
                    CXVDadosCR_IntegracaoMiddleware& rDados) const;

    XVProvedorTabela m_Tabela;
    CXVVigiaProvedor m_vigia;
};
