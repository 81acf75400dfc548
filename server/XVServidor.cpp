#include "server/XVServidor.h"

#include <objidl.h>

#include <algorithm>

#include "server/XVExclusividade.h"
#include "server/XVFabricaClasse.h"
#include "server/XVJanelaSessao.h"
#include "server/XVPrazoProcesso.h"
#include "server/XVRuntimeChamadas.h"
#include "server/XVSegurancaCom.h"
#include "server/XVTemposFim.h"

namespace {

// A server that serves, and was started beside this one, takes the client that this one was started for.
constexpr DWORD k_ulEsperaServidorQueAtende = 3000;
constexpr XVUInt k_ulEsperaPrimeiroCliente = 60;          // seconds
constexpr XVUInt k_ulInatividadeMaxima = 8 * 60 * 60;     // seconds
constexpr XVUInt k_ulPermanencia = 30;                    // seconds
constexpr XVUInt k_ulMaximoSegundos = 40 * 24 * 60 * 60;  // of a configured time: ticks wrap after 49 days
constexpr DWORD k_ulIntervaloVerificacao = 500;
// Milliseconds for which a store stays open after its last component. Another process that wants it waits 5 s
// for it at the most, and has to get it.
constexpr XVUInt k_ulTempoLojaMantida = 4000;
// What COM gets for its own end, when all stores are closed.
constexpr DWORD k_ulFimDoCom = 2000;

// A time of the registry, given in seconds, in milliseconds.
XVUInt LeTempo(const char* pszValor, XVUInt ulPadraoSegundos) {
    const XVUInt ulSegundos =
        XVPlataforma::Registry().LeNumero(k_sChaveRegistrySuite, pszValor).value_or(ulPadraoSegundos);
    return (ulSegundos < k_ulMaximoSegundos ? ulSegundos : k_ulMaximoSegundos) * 1000;
}

class CXVApartamento {
  public:
    // Calls come in on the threads of the remote-call runtime, many at once.
    CXVApartamento() : m_hr(::CoInitializeEx(nullptr, COINIT_MULTITHREADED)) {}
    ~CXVApartamento() {
        if (SUCCEEDED(m_hr)) ::CoUninitialize();
    }
    CXVApartamento(const CXVApartamento&) = delete;
    CXVApartamento& operator=(const CXVApartamento&) = delete;
    HRESULT GetResultado() const { return m_hr; }

  private:
    HRESULT m_hr;
};

// Asks the runtime of remote calls not to swallow faults. Systems without the option are served as they are:
// the crash handler sees faults of this program's own code in any case.
void NaoEngoleExcecoes() {
    IGlobalOptions* pOpcoes = nullptr;
    if (FAILED(::CoCreateInstance(CLSID_GlobalOptions, nullptr, CLSCTX_INPROC_SERVER, IID_IGlobalOptions,
                                  reinterpret_cast<void**>(&pOpcoes))))
        return;
    XVIgnora(pOpcoes->Set(COMGLB_EXCEPTION_HANDLING, COMGLB_EXCEPTION_DONOT_HANDLE_ANY));
    pOpcoes->Release();
}

void ProcessaMensagens() {
    MSG mensagem;
    while (::PeekMessageW(&mensagem, nullptr, 0, 0, PM_REMOVE) != FALSE) {
        if (mensagem.message == WM_QUIT) CXVVidaServidor::Get().PedeFim();
        ::DispatchMessageW(&mensagem);
    }
}

// How long the server waits, in milliseconds, and for what.
struct STempos {
    XVUInt ulPrimeiroCliente = LeTempo("EsperaPrimeiroCliente", k_ulEsperaPrimeiroCliente);
    XVUInt ulPermanencia = LeTempo("PermanenciaServidor", k_ulPermanencia);
    bool bAtivado;

    // Whether a server that has been without clients for ulVazio has nothing more to wait for. One that was
    // started by hand waits for its first client without end.
    bool Passou(XVUInt ulVazio) const {
        if (CXVVidaServidor::Get().TeveClientes()) return ulVazio >= ulPermanencia;
        return bAtivado && ulVazio >= ulPrimeiroCliente;
    }
};

// Withdraws the class and looks again: a client may have come in between. Then the class is offered anew,
// because ending beside a live component would leave its store open while the next server starts.
bool PodeTerminar(CXVExclusividade& rExclusividade, CXVInscricaoFabrica& rInscricao) {
    CXVVidaServidor& rVida = CXVVidaServidor::Get();
    rExclusividade.AnunciaFim(true);
    // Who waits for this server's end, or for the class to be back, has no other limit.
    const CXVPrazoProcesso prazo(k_ulFimMaximo);
    rVida.LargaProcesso();
    rInscricao.Revoga();
    if (!rVida.TemClientes()) return true;
    rVida.SeguraProcesso();
    rExclusividade.AnunciaFim(false);
    return FAILED(rInscricao.Registra()) || FAILED(rInscricao.Retoma());
}

// Returns when the process may end.
void Atende(CXVExclusividade& rExclusividade, CXVInscricaoFabrica& rInscricao, bool bAtivado) {
    CXVVidaServidor& rVida = CXVVidaServidor::Get();
    const STempos tempos{.bAtivado = bAtivado};
    rVida.GetLojas().SetTempo(std::min(tempos.ulPermanencia, k_ulTempoLojaMantida));
    XVUInt ulVazioDesde = XVPlataforma::Relogio().GetTicks();
    const HANDLE ahEventos[] = {rVida.GetEventoFim(), rVida.GetEventoSemClientes()};
    for (;;) {
        const DWORD ulEspera =
            ::MsgWaitForMultipleObjects(2, ahEventos, FALSE, k_ulIntervaloVerificacao, QS_ALLINPUT);
        if (ulEspera == WAIT_OBJECT_0 || ulEspera == WAIT_FAILED) return;
        if (ulEspera == WAIT_OBJECT_0 + 2) {
            ProcessaMensagens();
            continue;
        }
        rVida.DesconectaOciosos();
        rVida.GetLojas().FechaVencidas();
        if (ulEspera == WAIT_OBJECT_0 + 1 || rVida.TemClientes())
            ulVazioDesde = XVPlataforma::Relogio().GetTicks();
        if (!rVida.TemClientes() && tempos.Passou(XVPlataforma::Relogio().GetTicks() - ulVazioDesde) &&
            PodeTerminar(rExclusividade, rInscricao))
            return;
    }
}

}  // namespace

SFimServidor XVExecutaServidor(bool bAtivado) {
    // From here on the process can be asked to end: it may wait long for its turn.
    CXVVidaServidor& rVida = CXVVidaServidor::Get();
    // A server that ran before may still be closing its stores: until it has ended, nothing in this process
    // may open them.
    CXVExclusividade exclusividade;
    if (!exclusividade.Toma(bAtivado ? k_ulEsperaServidorQueAtende : 0, rVida.GetEventoFim())) {
        // COM started this process although another server is running: the client is served by that one.
        if (bAtivado || rVida.FimPedido()) return {};
        return {HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS), "iniciar o servidor: já há outro em execução"};
    }
    rVida.SetInatividade(LeTempo("InatividadeMaximaComponente", k_ulInatividadeMaxima));
    const CXVApartamento apartamento;
    if (FAILED(apartamento.GetResultado())) return {apartamento.GetResultado(), "iniciar o COM"};
    // COM would otherwise swallow a fault inside a call and go on with a process that cannot be trusted; so
    // it is told before the first call can come in.
    NaoEngoleExcecoes();
    // The security of the process can be set only before anything is marshalled; COM then chooses by itself.
    if (const HRESULT hr = XVInicializaSegurancaCom(); FAILED(hr)) return {hr, "definir a segurança do COM"};
    const CXVJanelaSessao janela;
    CXVInscricaoFabrica inscricao;
    CXVRuntimeChamadas runtime;
    if (const HRESULT hr = runtime.Prepara(); FAILED(hr)) return {hr, "preparar as chamadas remotas"};
    rVida.SeguraProcesso();
    if (const HRESULT hr = inscricao.Registra(); FAILED(hr)) return {hr, "oferecer a classe do componente"};
    // This is the last step because clients come in from here on, and find everything in place.
    if (const HRESULT hr = inscricao.Retoma(); FAILED(hr)) return {hr, "abrir o servidor aos clientes"};
    Atende(exclusividade, inscricao, bAtivado);
    exclusividade.AnunciaFim(true);
    CXVPrazoProcesso::LimitaFim(k_ulFimMaximo);
    inscricao.Revoga();
    rVida.Encerra();
    CXVPrazoProcesso::LimitaFim(k_ulFimDoCom);
    return {};
}
