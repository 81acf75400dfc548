#include "core/xvdatabase/XVMemoriaMembros.h"

#include "platform/XVAmbienteSO.h"
#include "platform/XVPlataforma.h"

namespace {

constexpr XVUInt k_ulOrcamentoPadrao = 256;          // MB
constexpr XVUInt64 k_uiMegabyte = 1U << 20;          // bytes
constexpr XVUInt64 k_uiCrescimentoVisto = 1U << 20;  // bytes by which the budget may be exceeded unseen

}  // namespace

void CXVMemoriaMembros::LeOrcamento(EModulo eModulo) {
    if (m_listaGrupos.empty()) return;
    m_uiOrcamento = XVPlataforma::Registry()
                        .LeNumero(CAmbienteXV::GetChaveRegistry(eModulo), "MemoriaMembros")
                        .value_or(k_ulOrcamentoPadrao) *
                    k_uiMegabyte;
    // The other half is for whatever else the process opens.
    m_uiMaximoAbertos = XVAmbienteSO::GetMaximoArquivosAbertos() / 2;
}

bool CXVMemoriaMembros::CedeHandles() {
    return m_idCarrega == std::this_thread::get_id() && FechaAte(m_pGrupoCarrega, 0, 0);
}

bool CXVMemoriaMembros::Cresce(XVUInt64 uiBytes) {
    if (m_uiCrescimento.fetch_add(uiBytes, std::memory_order_relaxed) + uiBytes < k_uiCrescimentoVisto)
        return false;
    m_uiCrescimento.store(0, std::memory_order_relaxed);
    return true;
}

bool CXVMemoriaMembros::FechaAte(const IXVMembrosAbertos* pAbre, XVUInt64 uiMemoria, std::size_t uiAbertos) {
    for (bool bFechou = false;; bFechou = true) {
        IXVMembrosAbertos::SResumo total;
        total.uiAbertos = s_uiAbertos.load(std::memory_order_relaxed) + (pAbre == nullptr ? 0 : 1);
        IXVMembrosAbertos* pGrupo = nullptr;
        for (IXVMembrosAbertos* p : m_listaGrupos) {
            IXVMembrosAbertos::SResumo resumo = p->Resume();
            if (p == pAbre) ++resumo.uiAbertos;
            total.uiMemoria += resumo.uiMemoria;
            if (resumo.uiAbertos <= p->GetMinimoAbertos() || resumo.uiUsoMaisAntigo >= total.uiUsoMaisAntigo)
                continue;
            total.uiUsoMaisAntigo = resumo.uiUsoMaisAntigo;
            pGrupo = p;
        }
        if (total.uiMemoria <= uiMemoria && total.uiAbertos <= uiAbertos) return bFechou;
        if (pGrupo == nullptr || !pGrupo->FechaMaisAntigo()) return bFechou;
    }
}
