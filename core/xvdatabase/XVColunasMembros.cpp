#include "core/xvdatabase/XVColunasMembros.h"

#include <algorithm>
#include <mutex>
#include <shared_mutex>

CXVColunasMembros::CXVColunasMembros(CXVMemoriaMembros& rMemoria, IXVDonoColunas& rDono)
    : m_rMemoria(rMemoria), m_rDono(rDono) {
    m_rMemoria.Inclui(*this);
}

CXVColunasMembros::~CXVColunasMembros() {
    m_rMemoria.Retira(*this);
}

void CXVColunasMembros::Usa(XVUInt64 uiChave) {
    {
        const std::shared_lock lock(m_Lock);
        if (const auto it = m_mapUsos.find(uiChave); it != m_mapUsos.end()) return m_rMemoria.Usa(it->second);
    }
    const std::unique_lock lock(m_Lock);
    m_rMemoria.Usa(m_mapUsos[uiChave]);
}

IXVMembrosAbertos::SResumo CXVColunasMembros::Resume() const {
    const std::shared_lock lock(m_Lock);
    SResumo resumo;
    resumo.uiAbertos = m_mapUsos.empty() ? 0 : 1;
    for (const auto& [uiChave, uiUso] : m_mapUsos) {
        resumo.uiMemoria += m_rDono.GetMemoriaColunas(uiChave);
        resumo.uiUsoMaisAntigo = std::min<XVUInt64>(resumo.uiUsoMaisAntigo, uiUso);
    }
    return resumo;
}

bool CXVColunasMembros::FechaMaisAntigo() {
    XVUInt64 uiChave = 0;
    {
        const std::unique_lock lock(m_Lock);
        const auto it =
            std::min_element(m_mapUsos.begin(), m_mapUsos.end(),
                             [](const auto& a, const auto& b) { return a.second.load() < b.second.load(); });
        if (it == m_mapUsos.end()) return false;
        uiChave = it->first;
        m_mapUsos.erase(it);
    }
    m_rDono.EsqueceColunas(uiChave);
    return true;
}
