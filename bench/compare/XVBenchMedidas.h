// What was measured: for each work and opponent one figure a round, and for times also what the processors
// spent, which a loaded machine disturbs less.
#pragma once

#include <chrono>
#include <ctime>
#include <string>
#include <vector>

// Since it was made; microseconds.
class CXVCronometro {
  public:
    double Decorridos() const {
        return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - m_inicio).count();
    }
    // Of all threads of the process.
    double Processador() const {
        return static_cast<double>(std::clock() - m_inicioProcessador) * 1e6 / CLOCKS_PER_SEC;
    }

  private:
    std::chrono::steady_clock::time_point m_inicio = std::chrono::steady_clock::now();
    std::clock_t m_inicioProcessador = std::clock();
};

struct SMedidaBench {
    std::string sTrabalho;
    std::string sAdversario;
    std::string sUnidade;
    std::vector<double> listaRodadas{};
    std::vector<double> listaProcessador{};  // times only
};

class CXVMedidasBench {
  public:
    // The time of one operation, of so many since rDesde.
    void AnotaTempo(const std::string& sTrabalho, const std::string& sAdversario, const CXVCronometro& rDesde,
                    std::size_t uiOperacoes);
    void AnotaBytes(const std::string& sTrabalho, const std::string& sAdversario, double dBytes);
    const std::vector<SMedidaBench>& Lista() const { return m_lista; }

  private:
    SMedidaBench& Medida(const std::string& sTrabalho, const std::string& sAdversario,
                         const char* pszUnidade);

    std::vector<SMedidaBench> m_lista;
};
