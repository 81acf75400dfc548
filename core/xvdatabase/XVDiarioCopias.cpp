// CXVDiario: the copies that are written beside files.
#include <algorithm>

#include "core/xvdatabase/XVDiario.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigosArquivo.h"

namespace {

// Puts the entry of a copy together; it is not written yet.
void MontaCopia(CXVDiarioAnel& rAnel, const std::string& sNomeCopia) {
    rAnel.IniciaEntrada(ETipoEntrada::eCopia);
    rAnel.IncluiParte(sNomeCopia, SGravacao{});
}

}  // namespace

HRESULT CXVDiario::IniciaCopia(const IXVDF_Profiler* pDono, const std::string& sNomeCopia,
                               XVUInt64* puiNumero) {
    *puiNumero = 0;
    CXVOperacao resolvida(nullptr);
    const std::lock_guard lock(m_Mutex);
    if (!m_bAberto) return S_OK;
    XV_CHECK_DONO(pDono, GarantePronto());
    XV_CHECK_DONO(pDono, ResolvePendente(resolvida));
    CXVErroArquivo erro = ApagaCopias();
    if (erro.Ok()) erro = SincronizaAlterados();
    if (erro.Ok()) erro = DispensaSeguras();
    MontaCopia(m_anel, sNomeCopia);
    // The entry may not take the place of one that protects another copy, nor of an operation that waits.
    if (erro.Ok() && (SubstituiCopia() || m_anel.GetSubstituida() > GetUltimaAplicada()))
        erro = {ECausaArquivo::eDiscoCheio, 0};
    XVUInt64 uiNumero = m_anel.GetUltima() + 1;
    const SCopia copia{sNomeCopia, XVPlataforma::SistemaArquivos().Junta(m_sDiretorio, sNomeCopia), uiNumero};
    m_mapCopias.emplace(uiNumero, copia);  // memory may run out: before the entry is written
    if (erro.Ok()) erro = m_anel.GravaEntrada(uiNumero);
    if (!erro.Ok()) m_mapCopias.erase(m_anel.GetUltima() + 1);
    if (erro.Ok() && m_bDuravel) {
        erro = m_pArquivo->Sincroniza();
        if (!erro.Ok()) {
            // The copy is not made. A later one of this name is another operation's and must not be deleted.
            m_mapCopias.erase(uiNumero);
            m_anel.MarcaEstado(uiNumero, EEstadoEntrada::eNula).Ignora();
        }
    }
    XV_CHECK_DONO(pDono, XVCodigosArquivo::CodigoDeExcecao(erro));
    *puiNumero = uiNumero;
    return S_OK;
}

void CXVDiario::TerminaCopia(XVUInt64 uiNumero) noexcept {
    const std::lock_guard lock(m_Mutex);
    const auto it = m_mapCopias.find(uiNumero);
    if (it == m_mapCopias.end()) return;
    it->second.bEmCurso = false;
    ApagaCopias().Ignora();
}

CXVErroArquivo CXVDiario::ApagaCopias() {
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    for (auto it = m_mapCopias.begin(); it != m_mapCopias.end();) {
        if (it->second.bEmCurso) {
            ++it;
            continue;
        }
        if (rSistema.Existe(it->second.sPath) != EExistencia::eAusente)
            if (const CXVErroArquivo erro = rSistema.Apaga(it->second.sPath); !erro.Ok()) return erro;
        m_anel.MarcaEstado(it->second.uiEntrada, EEstadoEntrada::eNula).Ignora();
        it = m_mapCopias.erase(it);
    }
    return {};
}

// Whether the entry put together would take the place of one that still protects a copy.
bool CXVDiario::SubstituiCopia() const {
    return !m_mapCopias.empty() && PrimeiraDeCopia() <= m_anel.GetSubstituida();
}

XVUInt64 CXVDiario::PrimeiraDeCopia() const {
    XVUInt64 uiPrimeira = ~XVUInt64{0};
    for (const auto& [uiNumero, rCopia] : m_mapCopias) uiPrimeira = std::min(uiPrimeira, rCopia.uiEntrada);
    return uiPrimeira;
}

// The ring has gone round while a copy is being made: its entry is written again, as the newest.
CXVErroArquivo CXVDiario::RegravaCopias() {
    CXVErroArquivo erro = SincronizaAlterados();
    if (erro.Ok()) erro = DispensaAte(m_anel.GetUltima());
    for (auto it = m_mapCopias.begin(); erro.Ok() && it != m_mapCopias.end(); ++it) {
        MontaCopia(m_anel, it->second.sNome);
        XVUInt64 uiNumero = 0;
        erro = m_anel.GravaEntrada(uiNumero);
        if (erro.Ok()) it->second.uiEntrada = uiNumero;
    }
    return erro.Ok() && m_bDuravel ? m_pArquivo->Sincroniza() : erro;
}
