#include "core/xvdatabase/XVNomesControlados.h"

#include <algorithm>
#include <utility>

#include "support/values/XVTextoAscii.h"

bool CXVNomesControlados::Contem(const std::vector<std::string>& rLista, std::string_view sNome) {
    return std::any_of(rLista.begin(), rLista.end(),
                       [sNome](const std::string& s) { return XVIgualSemCaixa(s, sNome); });
}

std::optional<bool> CXVNomesControlados::Possui(std::string_view sNome) const {
    const std::lock_guard lock(m_Mutex);
    return m_bConhecidos ? std::optional(Contem(m_listaNomes, sNome)) : std::nullopt;
}

XVUInt64 CXVNomesControlados::GetGeracao() const {
    const std::lock_guard lock(m_Mutex);
    return m_uiGeracao;
}

void CXVNomesControlados::Guarda(XVUInt64 uiGeracao, std::vector<std::string> listaNomes) {
    const std::lock_guard lock(m_Mutex);
    if (uiGeracao != m_uiGeracao || m_iMudancas != 0) return;
    m_listaNomes = std::move(listaNomes);
    m_bConhecidos = true;
}

void CXVNomesControlados::Esquece() {
    const std::lock_guard lock(m_Mutex);
    ++m_uiGeracao;
    m_bConhecidos = false;
}

void CXVNomesControlados::CMudanca::Soma(int i) const {
    if (m_pNomes == nullptr) return;
    m_pNomes->Esquece();
    const std::lock_guard lock(m_pNomes->m_Mutex);
    m_pNomes->m_iMudancas += i;
}
