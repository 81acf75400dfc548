#include "server/XVServidor.h"

#include <objidl.h>

#include "server/XVExclusividade.h"
#include "server/XVFabricaClasse.h"
#include "server/XVJanelaSessao.h"
#include "server/XVSegurancaCom.h"

namespace {

constexpr DWORD k_ulEsperaServidorAnterior = 3000;
constexpr XVUInt k_ulEsperaPrimeiroCliente = 60;          // seconds
constexpr XVUInt k_ulInatividadeMaxima = 8 * 60 * 60;     // seconds
constexpr XVUInt k_ulMaximoSegundos = 40 * 24 * 60 * 60;  // of a configured time: ticks wrap after 49 days
constexpr DWORD k_ulIntervaloVerificacao = 1000;
// The next server must get its turn while it waits for this one.
constexpr DWORD k_ulFimMaximo = k_ulEsperaServidorAnterior - 1000;

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

DWORD WINAPI TerminaSeNaoTerminou(void*) {
    ::Sleep(k_ulFimMaximo);
    ::TerminateProcess(::GetCurrentProcess(), S_OK);
    return 0;
}

// From here on nothing is lost when the process ends at any place: its class is withdrawn, and its stores are
// closed or were waited for long enough. The runtime of remote calls waits for calls that are not over, and
// has been seen to wait for one that was: nobody would be served any more, by this server or by the next.
void LimitaFim() {
    if (const HANDLE hThread = ::CreateThread(nullptr, 0, TerminaSeNaoTerminou, nullptr, 0, nullptr);
        hThread != nullptr)
        ::CloseHandle(hThread);
}

void ProcessaMensagens() {
    MSG mensagem;
    while (::PeekMessageW(&mensagem, nullptr, 0, 0, PM_REMOVE) != FALSE) {
        if (mensagem.message == WM_QUIT) CXVVidaServidor::Get().PedeFim();
        ::DispatchMessageW(&mensagem);
    }
}

// Withdraws the class and looks again: a client may have come in between. Then the class is offered anew,
// because ending beside a live component would leave its store open while the next server starts.
bool PodeTerminar(CXVInscricaoFabrica& rInscricao) {
    rInscricao.Revoga();
    if (!CXVVidaServidor::Get().TemClientes()) return true;
    return FAILED(rInscricao.Registra()) || FAILED(rInscricao.Retoma());
}

// Returns when the process may end.
void Atende(CXVInscricaoFabrica& rInscricao, bool bAtivado) {
    CXVVidaServidor& rVida = CXVVidaServidor::Get();
    const XVUInt ulInatividade = LeTempo("InatividadeMaximaComponente", k_ulInatividadeMaxima);
    const XVUInt ulPrimeiro = LeTempo("EsperaPrimeiroCliente", k_ulEsperaPrimeiroCliente);
    const XVUInt ulInicio = XVPlataforma::Relogio().GetTicks();
    const HANDLE ahEventos[] = {rVida.GetEventoFim(), rVida.GetEventoSemClientes()};
    for (;;) {
        const DWORD ulEspera =
            ::MsgWaitForMultipleObjects(2, ahEventos, FALSE, k_ulIntervaloVerificacao, QS_ALLINPUT);
        if (ulEspera == WAIT_OBJECT_0 || ulEspera == WAIT_FAILED) return;
        if (ulEspera == WAIT_OBJECT_0 + 2) {
            ProcessaMensagens();
            continue;
        }
        if (ulInatividade != 0) rVida.DesconectaOciosos(ulInatividade);
        const bool bNinguemVeio =
            bAtivado && !rVida.TeveClientes() && XVPlataforma::Relogio().GetTicks() - ulInicio >= ulPrimeiro;
        const bool bTodosSairam = ulEspera == WAIT_OBJECT_0 + 1;
        // COM suspended the class when the last client left. A client that came in before that keeps the
        // server running, so the class is offered again to everybody else.
        if (bTodosSairam && rVida.TemClientes())
            XVIgnora(rInscricao.Retoma());
        else if ((bTodosSairam || bNinguemVeio) && PodeTerminar(rInscricao))
            return;
    }
}

}  // namespace

SFimServidor XVExecutaServidor(bool bAtivado) {
    // This is the first step because a server that ran before may still be closing its stores: until it has
    // ended, nothing in this process may open them.
    CXVExclusividade exclusividade;
    if (!exclusividade.Toma(k_ulEsperaServidorAnterior)) {
        // COM started this process although another server is running: the client is served by that one.
        if (bAtivado) return {};
        return {HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS), "iniciar o servidor: já há outro em execução"};
    }
    const CXVApartamento apartamento;
    if (FAILED(apartamento.GetResultado())) return {apartamento.GetResultado(), "iniciar o COM"};
    // COM would otherwise swallow a fault inside a call and go on with a process that cannot be trusted; so
    // it is told before the first call can come in.
    NaoEngoleExcecoes();
    // The security of the process can be set only before anything is marshalled; COM then chooses by itself.
    if (const HRESULT hr = XVInicializaSegurancaCom(); FAILED(hr)) return {hr, "definir a segurança do COM"};
    const CXVJanelaSessao janela;
    CXVInscricaoFabrica inscricao;
    if (const HRESULT hr = inscricao.Registra(); FAILED(hr)) return {hr, "oferecer a classe do componente"};
    // This is the last step because clients come in from here on, and find everything in place.
    if (const HRESULT hr = inscricao.Retoma(); FAILED(hr)) return {hr, "abrir o servidor aos clientes"};
    Atende(inscricao, bAtivado);
    inscricao.Revoga();
    CXVVidaServidor::Get().Encerra();
    LimitaFim();
    return {};
}
