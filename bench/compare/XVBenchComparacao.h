// The works of the comparison, done by all opponents in turns: in every round each of them has its block, in
// an order that changes, so that what else the machine does meets all of them alike. What makes the stores
// does not count. Between the works the opponents answer the same questions, and a difference ends the
// program.
#pragma once

#include <map>
#include <vector>

#include "bench/compare/IXVBenchAdversario.h"
#include "bench/compare/XVBenchMedidas.h"

struct SOpcoesBench {
    unsigned uiIntegracoes = 100000;  // of the large store
    unsigned uiDias = 100;            // over which it extends
    unsigned uiGravacoes = 100000;    // of the store over ten days, recorded anew in every round
    unsigned uiDiasGravacao = 10;
    unsigned uiRodadas = 5;
    unsigned uiDuraveis = 200;  // recordings that reach the device, a round
    unsigned uiStatus = 400;    // a round
    unsigned uiLeituras = 2000;
    unsigned uiMilissegundosBusca = 30;  // a search is repeated at least for so long in a block
    std::string sPasta;                  // exists and is empty
};

class CXVComparacao {
  public:
    CXVComparacao(const SOpcoesBench& rOpcoes, std::vector<SAdversarioBench> listaAdversarios);

    // All works. The large stores stay in their folders, closed: PastaGrande.
    CXVMedidasBench Mede();
    static std::string PastaGrande(const std::string& sPasta, const std::string& sAdversario);

  private:
    using CAbertos = std::vector<std::unique_ptr<IXVBenchAdversario>>;

    template <class TBloco>
    void EmRodadas(TBloco bloco);
    std::unique_ptr<IXVBenchAdversario> Abre(std::size_t i, const std::string& sPasta, unsigned uiIntegracoes,
                                             EDuracaoBench eDuracao = EDuracaoBench::eSistema);
    std::string Pasta(const char* pszTrabalho, std::size_t i) const;
    void RemovePastas(const char* pszTrabalho) const;

    void MedeGravacao();
    void MedeDuravel();
    void MedeDuravelEmThreads();
    void MedeGrande();
    void MedeEmbaralhado();
    void MedeStatus(const char* pszTrabalho, CAbertos& rAbertos, CXVGeradorBench& rGerador, unsigned uiAte);
    void MedeLeitura(const char* pszTrabalho, CAbertos& rAbertos, CXVGeradorBench& rGerador,
                     unsigned uiPrimeiro, unsigned uiQuantos);
    void MedeBusca(const std::string& sTrabalho, CAbertos& rAbertos, const SFiltroBench& rFiltro);
    void ComparaLeituras(CAbertos& rAbertos, CXVGeradorBench& rGerador) const;
    void ComparaBusca(CAbertos& rAbertos, const SFiltroBench& rFiltro) const;

    SOpcoesBench m_opcoes;
    std::vector<SAdversarioBench> m_listaAdversarios;
    CXVMedidasBench m_medidas;
};
