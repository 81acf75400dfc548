// CXVDiario: the queue of callers that share a flush.
#include <algorithm>
#include <utility>

#include "core/xvdatabase/XVDiario.h"

bool CXVDiario::TemFila() const {
    const std::lock_guard lock(m_Mutex);
    return !m_fila.empty();
}

bool CXVDiario::TemNaFila(XVUInt64 uiChave) const {
    const std::lock_guard lock(m_Mutex);
    return uiChave != 0 && std::any_of(m_fila.begin(), m_fila.end(), [uiChave](const SNaFila* p) {
               return p->pOperacao->GetChave() == uiChave;
           });
}

HRESULT CXVDiario::Enfileira(SNaFila& rNaFila) {
    CXVOperacao resolvida(nullptr);
    const std::lock_guard lock(m_Mutex);
    HRESULT hr = ResolvePendente(resolvida);
    // Memory may run out: before the entry is written.
    m_fila.reserve(m_fila.size() + 1);
    m_listaAnular.reserve(m_fila.size() + 1);
    if (SUCCEEDED(hr)) hr = RegistraEntrada(*rNaFila.pOperacao, &rNaFila.uiNumero);
    if (hr == S_OK) m_fila.push_back(&rNaFila);
    return hr;
}

HRESULT CXVDiario::Executa(CXVOperacao& rOperacao, std::unique_lock<std::mutex>& bloqueio, bool* pbRefaz) {
    *pbRefaz = false;
    if (!m_bDuravel || rOperacao.EhVazia()) {
        const HRESULT hr = rOperacao.EhVazia() ? S_OK : Executa(rOperacao);
        bloqueio.unlock();
        return hr;
    }
    SNaFila naFila{&rOperacao};
    const HRESULT hr = Enfileira(naFila);
    *pbRefaz = hr == S_FALSE;
    if (hr != S_OK) rOperacao.Termina();  // before anybody prepares again
    bloqueio.unlock();
    if (hr != S_OK) return hr;
    if (EsperaVez(&naFila)) {
        const CVez vez(this);
        DescarregaFila(bloqueio);
        bloqueio.unlock();
    }
    *pbRefaz = naFila.bRefaz;
    return naFila.hr;
}

void CXVDiario::EsvaziaFila(std::unique_lock<std::mutex>& bloqueio) {
    bloqueio.unlock();
    EsperaVez(nullptr);
    const CVez vez(this);
    DescarregaFila(bloqueio);
    while (TemFila()) DescarregaFila(bloqueio);  // nobody adds to it: the callers' lock is held
}

// A caller whose operation is over does not wait for the next flush. It goes back to prepare its next
// operation, which then shares the flush after that one.
bool CXVDiario::EsperaVez(const SNaFila* pNaFila) {
    std::unique_lock lock(m_mutexVez);
    const auto terminou = [pNaFila] { return pNaFila != nullptr && pNaFila->bTerminada; };
    m_avisaVez.wait(lock, [&] { return !m_bDescarregando || terminou(); });
    if (terminou()) return false;
    m_bDescarregando = true;
    return true;
}

// What describes an operation that is over lies on its caller's stack, and the caller goes on after this. So
// nothing may touch it later.
void CXVDiario::PassaVez() noexcept {
    {
        const std::lock_guard lock(m_mutexVez);
        for (; m_pTerminadas != nullptr; m_pTerminadas = m_pTerminadas->pProxima)
            m_pTerminadas->bTerminada = true;
        m_bDescarregando = false;
    }
    m_avisaVez.notify_all();
}

// One flush for all that are waiting; those that come while the device works wait for the next. bloqueio,
// held or not, is held afterwards.
void CXVDiario::DescarregaFila(std::unique_lock<std::mutex>& bloqueio) {
    std::size_t uiQuantidade = 0;
    {
        const std::lock_guard lock(m_Mutex);
        uiQuantidade = m_fila.size();
    }
    CXVErroArquivo erro;
    if (uiQuantidade > 0) erro = m_pArquivo->Sincroniza();
    if (!bloqueio.owns_lock()) bloqueio.lock();
    if (uiQuantidade > 0) ConcluiFila(uiQuantidade, erro);
}

void CXVDiario::ConcluiFila(std::size_t uiQuantidade, const CXVErroArquivo& rErroDescarga) {
    for (; uiQuantidade > 0; --uiQuantidade) {
        SNaFila* pTerminada = nullptr;
        {
            const std::lock_guard lock(m_Mutex);
            if (m_fila.empty()) break;  // given up behind one that failed
            if (!rErroDescarga.Ok()) {
                for (SNaFila* p : m_fila) p->hr = Codigo(rErroDescarga, "m_pArquivo->Sincroniza()");
                AnulaFila();
                break;
            }
            pTerminada = m_fila.front();
            m_fila.erase(m_fila.begin());
            pTerminada->hr = Conclui(*pTerminada->pOperacao, pTerminada->uiNumero, true);
        }
        Devolve(*pTerminada);  // outside of the lock: a group may have to forget a member
    }
    DevolveAnuladas();
}

// The operations in the queue were prepared on top of one that did not take place, so they are void. Where
// their entries cannot be marked as void now, that is done before the next operation is recorded.
void CXVDiario::AnulaFila() {
    for (const SNaFila* p : m_fila) m_listaAnular.push_back(p->uiNumero);
    for (; !m_fila.empty(); m_fila.pop_back()) {
        SNaFila* p = m_fila.back();
        p->bRefaz = SUCCEEDED(p->hr);
        p->pProxima = std::exchange(m_pAnuladas, p);
    }
    MarcaAnuladas().Ignora();
}

// The newest first, and each on the device before the one below it: a power failure in between must not leave
// an entry without the one that it was prepared on top of. Rare, and worth the flushes.
CXVErroArquivo CXVDiario::MarcaAnuladas() {
    while (!m_listaAnular.empty()) {
        CXVErroArquivo erro = m_anel.MarcaEstado(m_listaAnular.back(), EEstadoEntrada::eNula);
        if (erro.Ok()) erro = m_pArquivo->Sincroniza();
        if (!erro.Ok()) return erro;
        m_listaAnular.pop_back();
    }
    return {};
}

// Called before anybody prepares again, because these operations must no longer count with their files.
void CXVDiario::DevolveAnuladas() {
    while (m_pAnuladas != nullptr) Devolve(*std::exchange(m_pAnuladas, m_pAnuladas->pProxima));
}

void CXVDiario::Devolve(SNaFila& rNaFila) {
    rNaFila.pOperacao->Termina();
    rNaFila.pProxima = std::exchange(m_pTerminadas, &rNaFila);
}
