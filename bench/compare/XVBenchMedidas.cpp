#include "bench/compare/XVBenchMedidas.h"

#include <algorithm>

void CXVMedidasBench::Anota(const std::string& sTrabalho, const std::string& sAdversario, double dValor,
                            const char* pszUnidade) {
    auto it = std::find_if(m_lista.begin(), m_lista.end(), [&](const SMedidaBench& r) {
        return r.sTrabalho == sTrabalho && r.sAdversario == sAdversario;
    });
    if (it == m_lista.end()) it = m_lista.insert(it, {sTrabalho, sAdversario, pszUnidade});
    it->listaRodadas.push_back(dValor);
}
