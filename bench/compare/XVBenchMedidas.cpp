#include "bench/compare/XVBenchMedidas.h"

#include <algorithm>

SMedidaBench& CXVMedidasBench::Medida(const std::string& sTrabalho, const std::string& sAdversario,
                                      const char* pszUnidade) {
    auto it = std::find_if(m_lista.begin(), m_lista.end(), [&](const SMedidaBench& r) {
        return r.sTrabalho == sTrabalho && r.sAdversario == sAdversario;
    });
    if (it == m_lista.end()) it = m_lista.insert(it, {sTrabalho, sAdversario, pszUnidade});
    return *it;
}

void CXVMedidasBench::AnotaTempo(const std::string& sTrabalho, const std::string& sAdversario,
                                 const CXVCronometro& rDesde, std::size_t uiOperacoes) {
    const auto dOperacoes = static_cast<double>(uiOperacoes);
    const double dDecorridos = rDesde.Decorridos();
    const double dProcessador = rDesde.Processador();
    SMedidaBench& rMedida = Medida(sTrabalho, sAdversario, "us");
    rMedida.listaRodadas.push_back(dDecorridos / dOperacoes);
    rMedida.listaProcessador.push_back(dProcessador / dOperacoes);
}

void CXVMedidasBench::AnotaBytes(const std::string& sTrabalho, const std::string& sAdversario,
                                 double dBytes) {
    Medida(sTrabalho, sAdversario, "bytes").listaRodadas.push_back(dBytes);
}
