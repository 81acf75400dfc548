// The calls of a provider library, each with its own copy of all that the library is lent and writes into.
//
// Thread rule: a call is handed to the watch once; what the library wrote is looked at when the watch says
// so.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "contract/XVDadosCR.h"
#include "suite/providers/XVProvedorPlugin.h"
#include "suite/providers/XVVigiaProvedor.h"

// The entry of a library. What came too late is not used: the table holds nothing to give back.
class CXVChamadaObtem final : public CXVChamadaProvedor {
  public:
    CXVChamadaObtem(const IXVDF_Profiler& rDono, PFXVProvedorObtem pfnObtem);

    XVProvedorTabela tabela{};
    bool bExcecao = false;

  protected:
    std::int32_t Executa() override;
    void Descarta(HRESULT hr) override { RegistraAtraso(hr, ""); }

  private:
    PFXVProvedorObtem m_pfnObtem;
};

// Send, query, deletion, and what comes before them.
class CXVChamadaDados final : public CXVChamadaProvedor {
  public:
    CXVChamadaDados(const char* pszFuncao, const IXVDF_Profiler& rDono, const XVProvedorTabela& rTabela,
                    PFXVProvedorDados pfnOperacao, const CXVDadosCR_IntegracaoMiddleware& rDados);

    XVProvedorDados reg{};

  protected:
    std::int32_t Executa() override;
    void Descarta(HRESULT hr) override;

  private:
    XVProvedorTabela m_Tabela;
    PFXVProvedorDados m_pfnOperacao;
    CXVDadosCR_IntegracaoMiddleware m_dados;  // whose texts reg lends
};

// TParametros: const for a function that only reads them.
template <class TParametros>
class TXVChamadaParametros final : public CXVChamadaProvedor {
  public:
    using PFuncao = std::int32_t(XVPROVEDOR_CHAMADA*)(void*, const XVProvedorDono*, TParametros*);

    TXVChamadaParametros(const char* pszFuncao, const IXVDF_Profiler& rDono, const XVProvedorTabela& rTabela,
                         PFuncao pfnOperacao, const CXVDadosCR_ParametrosIntegracao& rParametros);

    XVProvedorParametros reg;

  protected:
    std::int32_t Executa() override;
    void Descarta(HRESULT hr) override { RegistraAtraso(hr, ""); }

  private:
    void* m_pContexto;
    PFuncao m_pfnOperacao;
};

class CXVChamadaLista final : public CXVChamadaProvedor {
  public:
    CXVChamadaLista(const IXVDF_Profiler& rDono, const XVProvedorTabela& rTabela,
                    const CXVDadosCR_ParametrosIntegracao& rParametros);

    // The items of an answer to which the watch said hr; every buffer goes back. Once.
    HRESULT Toma(HRESULT hr, std::vector<CXVDadosCR_PendenciaIntegracaoSistema>* pLista);

  protected:
    std::int32_t Executa() override;
    void Descarta(HRESULT hr) override;

  private:
    XVProvedorTabela m_Tabela;
    XVProvedorParametros m_reg;
    XVProvedorListaPendencias m_lista{};
};

class CXVChamadaConsulta final : public CXVChamadaProvedor {
  public:
    CXVChamadaConsulta(const IXVDF_Profiler& rDono, const XVProvedorTabela& rTabela,
                       const CXVDadosCR_ConsultaSistemaTerceiro& rConsulta);

    XVProvedorStatusConsulta status{};

  protected:
    std::int32_t Executa() override;
    void Descarta(HRESULT hr) override;

  private:
    XVProvedorTabela m_Tabela;
    CXVDadosCR_ConsultaSistemaTerceiro m_consulta;
};
