#include "core/xvdatabase/XVMemoriaMembros.h"

#include "platform/XVAmbienteSO.h"
#include "platform/XVPlataforma.h"

namespace {

constexpr XVUInt k_ulOrcamentoPadrao = 256;          // MB
constexpr XVUInt64 k_uiMegabyte = 1U << 20;          // bytes
constexpr XVUInt64 k_uiCrescimentoVisto = 1U << 20;  // bytes by which the budget may be exceeded unseen

// The group whose member that may close was used longest ago.
struct SMaisAntigo {
    IXVMembrosAbertos* pGrupo = nullptr;
    XVUInt64 uiUso = IXVMembrosAbertos::k_uiNenhumUso;

    void Compara(IXVMembrosAbertos* p, XVUInt64 uiUsoDoGrupo) {
        if (uiUsoDoGrupo >= uiUso) return;
        pGrupo = p;
        uiUso = uiUsoDoGrupo;
    }
};

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
    constexpr XVUInt64 k_uiQualquer = std::numeric_limits<XVUInt64>::max();
    return m_idCarrega == std::this_thread::get_id() && FechaAte(m_pGrupoCarrega, k_uiQualquer, 0);
}

bool CXVMemoriaMembros::Cresce(XVUInt64 uiBytes) {
    if (m_uiCrescimento.fetch_add(uiBytes, std::memory_order_relaxed) + uiBytes < k_uiCrescimentoVisto)
        return false;
    m_uiCrescimento.store(0, std::memory_order_relaxed);
    return true;
}

bool CXVMemoriaMembros::FechaAte(const IXVMembrosAbertos* pAbre, XVUInt64 uiMemoria, std::size_t uiAbertos) {
    for (bool bFechou = false;; bFechou = true) {
        XVUInt64 uiTotal = 0;
        SMaisAntigo deTodos;
        SMaisAntigo comHandle;
        for (IXVMembrosAbertos* p : m_listaGrupos) {
            IXVMembrosAbertos::SResumo resumo = p->Resume();
            if (p == pAbre) ++resumo.uiAbertos;
            uiTotal += resumo.uiMemoria;
            if (resumo.uiAbertos <= p->GetMinimoAbertos()) continue;
            deTodos.Compara(p, resumo.uiUsoMaisAntigo);
            if (p->TemHandles()) comHandle.Compara(p, resumo.uiUsoMaisAntigo);
        }
        const std::size_t uiNoProcesso =
            s_uiAbertos.load(std::memory_order_relaxed) + (pAbre == nullptr ? 0 : 1);
        IXVMembrosAbertos* pGrupo = uiNoProcesso > uiAbertos ? comHandle.pGrupo : nullptr;
        if (pGrupo == nullptr && uiTotal > uiMemoria) pGrupo = deTodos.pGrupo;
        if (pGrupo == nullptr || !pGrupo->FechaMaisAntigo()) return bFechou;
    }
}
