#include "suite/providers/XVVigiaProvedor.h"

#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigos.h"
#include "support/faults/XVTrapParametroInvalido.h"
#include "support/trace/XVProfiler.h"

namespace {

constexpr const char* k_pszFonte = "suite/providers/XVVigiaProvedor";
constexpr XVUInt k_ulEsperaPadrao = 300;

std::chrono::seconds LeEspera() {
    return std::chrono::seconds(XVPlataforma::Registry()
                                    .LeNumero(k_sChaveRegistrySuite, "EsperaProvedor")
                                    .value_or(k_ulEsperaPadrao));
}

// What a library may answer: a success counts as S_OK, and the codes of the watch are not its to give.
HRESULT Codigo(std::int32_t iResultado) {
    const auto hr = static_cast<HRESULT>(iResultado);
    if (!CXVVigiaProvedor::Respondeu(hr)) return E_UNEXPECTED;
    return FAILED(hr) ? hr : S_OK;
}

}  // namespace

CXVChamadaProvedor::CXVChamadaProvedor(const char* pszFuncao, const IXVDF_Profiler& rDono)
    : m_pszFuncao(pszFuncao), m_dono(rDono) {}

void CXVChamadaProvedor::Trabalha() noexcept {
    try {
        // The trap of whoever asked is on that one's thread.
        const XVTrapParametroInvalido trap({&m_dono, m_pszFuncao, k_pszFonte, __LINE__, nullptr});
        m_hr = Codigo(Executa());
    } catch (...) {
        m_hr = E_UNEXPECTED;
        m_excecao = std::current_exception();
    }
    {
        const std::lock_guard trava(m_mutex);
        if (m_eEstado == EEstado::eEmCurso) {
            m_eEstado = EEstado::eRespondida;
            m_respondeu.notify_one();
            return;
        }
    }
    try {
        Descarta(m_hr);
    } catch (...) {  // nobody is left to hear of it but the log
        RegistraAtraso(m_hr, "resposta perdida");
    }
    m_puiPresas->fetch_sub(1);
}

void CXVChamadaProvedor::RegistraAtraso(HRESULT hr, const char* pszDetalhe) const noexcept {
    XVProfiler::RecordError(&m_dono, "CXVVigiaProvedor::Chama", k_pszFonte, __LINE__,
                            "Provedor do sistema %u voltou depois do prazo: %s, resultado 0x%08X%s%s",
                            static_cast<unsigned>(m_eSistema), m_pszFuncao, static_cast<unsigned>(hr),
                            *pszDetalhe != '\0' ? ", " : "", pszDetalhe);
}

bool CXVVigiaProvedor::Respondeu(HRESULT hr) {
    return hr != E_XVCR_PROVEDOR_SEM_RESPOSTA && hr != E_XVCR_PROVEDOR_SUSPENSO;
}

HRESULT CXVVigiaProvedor::Chama(const std::shared_ptr<CXVChamadaProvedor>& rpChamada) const {
    const std::chrono::seconds limite = LeEspera();
    if (m_puiPresas->load() != 0) return E_XVCR_PROVEDOR_SUSPENSO;
    if (limite.count() == 0) return Codigo(rpChamada->Executa());
    rpChamada->m_eSistema = m_eSistema;
    rpChamada->m_puiPresas = m_puiPresas;
    if (XVFiosDeChamada::Entrega(rpChamada)) return Espera(*rpChamada, limite);
    XVProfiler::RecordError(
        &rpChamada->m_dono, "CXVVigiaProvedor::Chama", k_pszFonte, __LINE__,
        "Provedor do sistema %u não foi chamado (%s): não foi possível criar outra thread",
        static_cast<unsigned>(m_eSistema), rpChamada->m_pszFuncao);
    return E_XVCR_PROVEDOR_SUSPENSO;
}

HRESULT CXVVigiaProvedor::Espera(CXVChamadaProvedor& rChamada, std::chrono::seconds limite) const {
    {
        std::unique_lock trava(rChamada.m_mutex);
        if (!rChamada.m_respondeu.wait_for(trava, limite, [&rChamada] {
                return rChamada.m_eEstado == CXVChamadaProvedor::EEstado::eRespondida;
            }))
            return Abandona(rChamada, limite);
    }
    if (rChamada.m_excecao != nullptr) std::rethrow_exception(std::move(rChamada.m_excecao));
    return rChamada.m_hr;
}

// The call's lock is held: the line stands before that of the call's return.
HRESULT CXVVigiaProvedor::Abandona(CXVChamadaProvedor& rChamada, std::chrono::seconds limite) const {
    m_puiPresas->fetch_add(1);
    rChamada.m_eEstado = CXVChamadaProvedor::EEstado::eAbandonada;
    XVProfiler::RecordError(
        &rChamada.m_dono, "CXVVigiaProvedor::Chama", k_pszFonte, __LINE__,
        "Provedor do sistema %u não respondeu em %lld s: %s foi abandonada, e o provedor fica suspenso até "
        "que ela volte",
        static_cast<unsigned>(m_eSistema), static_cast<long long>(limite.count()), rChamada.m_pszFuncao);
    return E_XVCR_PROVEDOR_SEM_RESPOSTA;
}
