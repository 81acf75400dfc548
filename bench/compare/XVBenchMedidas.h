// What was measured: for each work and opponent one figure a round.
#pragma once

#include <string>
#include <vector>

struct SMedidaBench {
    std::string sTrabalho;
    std::string sAdversario;
    std::string sUnidade;
    std::vector<double> listaRodadas{};
};

class CXVMedidasBench {
  public:
    void Anota(const std::string& sTrabalho, const std::string& sAdversario, double dValor,
               const char* pszUnidade = "us");
    const std::vector<SMedidaBench>& Lista() const { return m_lista; }

  private:
    std::vector<SMedidaBench> m_lista;
};
