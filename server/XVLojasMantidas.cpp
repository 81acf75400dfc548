#include "server/XVLojasMantidas.h"

#include <algorithm>
#include <iterator>

#include "support/values/XVTextoAscii.h"

namespace {

// What fails has told itself in the error log; nobody is left to take a code.
void Fecha(const CXVLojasMantidas::PLogica& pLogica) {
    if (pLogica != nullptr) XVIgnora(XVNaFronteira([&] { return pLogica->Finaliza(); }));
}

}  // namespace

void CXVLojasMantidas::Guarda(PLogica pLogica) {
    if (pLogica == nullptr) return;
    if (m_ulTempo.load() == 0 || !pLogica->EstaInicializado()) return Fecha(pLogica);
    {
        const std::lock_guard trava(m_Mutex);
        const auto it = std::find_if(m_lista.begin(), m_lista.end(), [&](const SMantida& r) {
            return XVIgualSemCaixa(r.pLogica->GetEmpresa(), pLogica->GetEmpresa());
        });
        const XVUInt ulAgora = XVPlataforma::Relogio().GetTicks();
        if (it == m_lista.end()) {
            m_lista.push_back({std::move(pLogica), ulAgora});
        } else {
            it->ulDesde = ulAgora;
            it->pLogica.swap(pLogica);
        }
    }
    Fecha(pLogica);
    // Between the question above and the entry in the list the server may have begun to end.
    if (m_ulTempo.load() == 0) FechaTodas();
}

std::vector<CXVLojasMantidas::SMantida> CXVLojasMantidas::Toma(XVUInt ulLimite) {
    std::vector<SMantida> lista;
    const std::lock_guard trava(m_Mutex);
    const XVUInt ulAgora = XVPlataforma::Relogio().GetTicks();
    const auto it = std::stable_partition(m_lista.begin(), m_lista.end(),
                                          [&](const SMantida& r) { return ulAgora - r.ulDesde < ulLimite; });
    lista.assign(std::make_move_iterator(it), std::make_move_iterator(m_lista.end()));
    m_lista.erase(it, m_lista.end());
    return lista;
}

void CXVLojasMantidas::FechaVencidas() {
    for (const SMantida& rMantida : Toma(m_ulTempo.load())) Fecha(rMantida.pLogica);
}

void CXVLojasMantidas::FechaTodas() {
    m_ulTempo = 0;
    FechaVencidas();
}
