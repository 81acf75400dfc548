// CXVDiario: operations carried out, one by one or together.
#include <algorithm>
#include <exception>
#include <utility>

#include "core/xvdatabase/XVDiario.h"
#include "core/xvdatabase/XVFileBase.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigos.h"
#include "support/codes/XVCodigosArquivo.h"

namespace {
constexpr int k_iTentativas = 50;
constexpr XVUInt k_ulEsperaTentativa = 10;  // ms
}  // namespace

XVUInt64 CXVDiario::GetUltimaAplicada() const {
    return m_fila.empty() ? m_anel.GetUltima() : m_fila.front()->uiNumero - 1;
}

void CXVDiario::MarcaAlterado(CXVFileBase& rFile) {
    if (rFile.EstaMarcadoNoDiario()) return;
    m_mapAlterados[rFile.GetNomeArquivo()] = &rFile;
    rFile.SetMarcadoNoDiario(true);
}

// A file that nobody has open any more is flushed through an opening of its own.
CXVErroArquivo CXVDiario::SincronizaAlterados() {
    constexpr SAberturaArquivo k_abertura{EAcessoArquivo::eLeituraEscrita,
                                          ECompartilhamentoArquivo::eNegaNada,
                                          ECriacaoArquivo::eSomenteExistente};
    if (m_mapAlterados.empty()) return {};
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    for (const auto& [sNome, pFile] : m_mapAlterados) {
        CXVErroArquivo erro;
        if (pFile != nullptr) {
            erro = pFile->Sincroniza();
        } else {
            std::unique_ptr<IXVArquivo> pArquivo;
            const std::string sPath = rSistema.Junta(m_sDiretorio, sNome);
            erro = rSistema.Abre(sPath, k_abertura, pArquivo);
            // A backup may be reading the file.
            for (int i = 1; i < k_iTentativas && erro.GetCausa() == ECausaArquivo::eViolacaoCompartilhamento;
                 ++i) {
                XVPlataforma::Relogio().Dorme(k_ulEsperaTentativa);
                erro = rSistema.Abre(sPath, k_abertura, pArquivo);
            }
            if (erro.Ok())
                erro = pArquivo->Sincroniza();
            else if (erro.GetCausa() == ECausaArquivo::eArquivoNaoEncontrado)
                erro = {};  // undone or deleted since
        }
        if (!erro.Ok()) return erro;
    }
    if (const CXVErroArquivo erro = rSistema.SincronizaDiretorio(m_sDiretorio); !erro.Ok()) return erro;
    for (const auto& [sNome, pFile] : m_mapAlterados)
        if (pFile != nullptr) pFile->SetMarcadoNoDiario(false);
    m_mapAlterados.clear();
    m_uiSegura = GetUltimaAplicada();
    return {};
}

// Written, and on the device before the place of an entry that it gives up is used: an opening must never
// look for an entry that is not there any more.
CXVErroArquivo CXVDiario::DispensaSeguras() {
    return DispensaAte(std::min(m_uiSegura, PrimeiraDeCopia() - 1));
}

CXVErroArquivo CXVDiario::DispensaAte(XVUInt64 uiAte) {
    CXVErroArquivo erro = m_anel.Dispensa(uiAte);
    if (erro.Ok() && m_bDuravel) erro = m_pArquivo->Sincroniza();
    if (erro.Ok()) m_uiDispensada = uiAte;
    return erro;
}

void CXVDiario::MontaEntrada(CXVOperacao& rOperacao) {
    m_anel.IniciaEntrada(ETipoEntrada::eGravacao);
    for (const CXVGravacaoPreparada* p : rOperacao.GetPartes()) {
        MarcaAlterado(p->GetArquivo());
        m_anel.IncluiParte(p->GetArquivo().GetNomeArquivo(), p->m_gravacao);
    }
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
        m_anel.IniciaEntrada(ETipoEntrada::eCopia);
        m_anel.IncluiParte(it->second.sNome, SGravacao{});
        XVUInt64 uiNumero = 0;
        erro = m_anel.GravaEntrada(uiNumero);
        if (erro.Ok()) it->second.uiEntrada = uiNumero;
    }
    return erro.Ok() && m_bDuravel ? m_pArquivo->Sincroniza() : erro;
}

// S_FALSE: there is no place before the queue is empty.
HRESULT CXVDiario::RegistraEntrada(CXVOperacao& rOperacao, XVUInt64* puiNumero) {
    const HRESULT hr = GarantePronto();
    if (FAILED(hr)) return hr;
    CXVErroArquivo erro = ApagaCopias();
    if (!erro.Ok()) return Codigo(erro, "ApagaCopias()");
    MontaEntrada(rOperacao);
    while (SubstituiCopia()) {
        if (!m_fila.empty()) return S_FALSE;
        erro = RegravaCopias();
        if (!erro.Ok()) return Codigo(erro, "RegravaCopias()");
        MontaEntrada(rOperacao);
    }
    const XVUInt64 uiSubstituida = m_anel.GetSubstituida();
    if (uiSubstituida > GetUltimaAplicada()) return S_FALSE;
    if (m_bDuravel && uiSubstituida > m_uiDispensada) {
        erro = SincronizaAlterados();
        if (erro.Ok()) erro = DispensaSeguras();
        if (erro.Ok())
            for (const CXVGravacaoPreparada* p : rOperacao.GetPartes()) MarcaAlterado(p->GetArquivo());
    }
    if (erro.Ok()) erro = m_anel.GravaEntrada(*puiNumero);
    return erro.Ok() ? S_OK : Codigo(erro, "m_anel.GravaEntrada(*puiNumero)");
}

HRESULT CXVDiario::Executa(CXVOperacao& rOperacao) {
    CXVOperacao resolvida(nullptr);
    HRESULT hr = S_OK;
    {
        const std::lock_guard lock(m_Mutex);
        hr = ResolvePendente(resolvida);
        XVUInt64 uiNumero = 0;
        if (SUCCEEDED(hr)) hr = RegistraEntrada(rOperacao, &uiNumero);
        if (hr == S_FALSE) hr = eDiskFull;
        if (SUCCEEDED(hr) && m_bDuravel)
            if (const CXVErroArquivo erro = m_pArquivo->Sincroniza(); !erro.Ok()) {
                Desfaz(rOperacao, uiNumero);
                hr = Codigo(erro, "m_pArquivo->Sincroniza()");
            }
        if (SUCCEEDED(hr)) hr = Conclui(rOperacao, uiNumero, false);
    }
    rOperacao.Termina();
    return hr;
}

// To the files, then to memory; or undone.
HRESULT CXVDiario::Conclui(CXVOperacao& rOperacao, XVUInt64 uiNumero, bool bDaFila) {
    if (const CXVErroArquivo erro = m_anel.MarcaEmCurso(uiNumero); !erro.Ok()) {
        if (bDaFila) AnulaFila();
        Desfaz(rOperacao, uiNumero);  // of the files nothing; of the journal the entry
        return Codigo(erro, "m_anel.MarcaEmCurso(uiNumero)");
    }
    const HRESULT hr = rOperacao.Escreve();
    if (FAILED(hr)) {
        if (bDaFila) AnulaFila();
        Desfaz(rOperacao, uiNumero);
        return hr;
    }
    rOperacao.Publica();
    m_anel.MarcaConcluida(uiNumero).Ignora();
    return S_OK;
}

void CXVDiario::Desfaz(CXVOperacao& rOperacao, XVUInt64 uiNumero) {
    if (TentaDesfazer(rOperacao, uiNumero).Ok()) return;
    m_pendente.Assume(rOperacao);
    m_uiPendente = uiNumero;
}

// The entry says that it is to be undone before the first byte is taken back, and that it is nothing any more
// when all bytes are back where a power failure cannot lose them.
CXVErroArquivo CXVDiario::TentaDesfazer(CXVOperacao& rOperacao, XVUInt64 uiNumero) {
    CXVErroArquivo erro = m_anel.MarcaEstado(uiNumero, EEstadoEntrada::eDesfazer);
    // Rare, and worth a flush whatever the durability: an operation that failed must not come back.
    if (erro.Ok()) erro = m_pArquivo->Sincroniza();
    if (erro.Ok()) erro = rOperacao.Desfaz();
    try {
        if (erro.Ok() && m_bDuravel) erro = SincronizaAlterados();
    } catch (const std::exception&) {  // out of memory: tried again later
        erro = {ECausaArquivo::eGenerica, 0};
    }
    if (erro.Ok()) erro = m_anel.MarcaEstado(uiNumero, EEstadoEntrada::eNula);
    if (erro.Ok()) m_anel.MarcaConcluida(uiNumero).Ignora();
    return erro;
}

HRESULT CXVDiario::ConcluiPendente() {
    CXVOperacao resolvida(nullptr);
    const std::lock_guard lock(m_Mutex);
    return ResolvePendente(resolvida);
}

// rResolvida takes the operation that is over; it ends when the lock is released.
HRESULT CXVDiario::ResolvePendente(CXVOperacao& rResolvida) {
    if (m_uiPendente == 0) return S_OK;
    if (m_pendente.EhVazia())
        return Codigo({ECausaArquivo::eArquivoInvalido, 0}, "ResolvePendente(resolvida)");
    const CXVErroArquivo erro = TentaDesfazer(m_pendente, m_uiPendente);
    if (!erro.Ok()) return Codigo(erro, "TentaDesfazer(m_pendente, m_uiPendente)");
    m_uiPendente = 0;
    rResolvida.Assume(m_pendente);
    return S_OK;
}

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
    m_fila.reserve(m_fila.size() + 1);  // memory may run out: before the entry is written
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

// Those whose operations are over must not wait for the flush of the next ones: they are the ones who come to
// share the one after it.
bool CXVDiario::EsperaVez(const SNaFila* pNaFila) {
    std::unique_lock lock(m_mutexVez);
    const auto terminou = [pNaFila] { return pNaFila != nullptr && pNaFila->bTerminada; };
    m_avisaVez.wait(lock, [&] { return !m_bDescarregando || terminou(); });
    if (terminou()) return false;
    m_bDescarregando = true;
    return true;
}

// Every access to what is over is before this: it lies on the stacks of the callers.
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

// What was prepared on top of an operation that did not take place is worth nothing; the newest goes first.
void CXVDiario::AnulaFila() {
    while (!m_fila.empty()) {
        SNaFila* p = m_fila.back();
        m_fila.pop_back();
        m_anel.MarcaEstado(p->uiNumero, EEstadoEntrada::eNula).Ignora();
        p->bRefaz = SUCCEEDED(p->hr);
        p->pProxima = m_pAnuladas;
        m_pAnuladas = p;
    }
}

// Before anybody prepares again: their files must not count with them any more.
void CXVDiario::DevolveAnuladas() {
    while (m_pAnuladas != nullptr) Devolve(*std::exchange(m_pAnuladas, m_pAnuladas->pProxima));
}

void CXVDiario::Devolve(SNaFila& rNaFila) {
    rNaFila.pOperacao->Termina();
    rNaFila.pProxima = std::exchange(m_pTerminadas, &rNaFila);
}
