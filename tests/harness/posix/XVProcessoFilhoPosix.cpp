#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <array>
#include <stdexcept>
#include <utility>

#include "platform/XVAmbienteSO.h"
#include "platform/posix/XVDescritorPosix.h"
#include "tests/harness/XVProcessoFilho.h"

struct CXVProcessoFilho::SSistema {
    pid_t iProcesso = -1;
    CXVDescritor entrada;
    CXVDescritor saida;
};

namespace {

// Signals that whoever started the tests ignores, as nohup does, would be ignored by the child, too.
class CSinaisDeOrigem {
  public:
    CSinaisDeOrigem() {
        sigset_t sinais;
        sigemptyset(&sinais);
        for (const int iSinal : {SIGHUP, SIGINT, SIGTERM, SIGPIPE}) sigaddset(&sinais, iSinal);
        posix_spawnattr_init(&m_atributos);
        posix_spawnattr_setsigdefault(&m_atributos, &sinais);
        posix_spawnattr_setflags(&m_atributos, POSIX_SPAWN_SETSIGDEF);
    }
    ~CSinaisDeOrigem() { posix_spawnattr_destroy(&m_atributos); }
    CSinaisDeOrigem(const CSinaisDeOrigem&) = delete;
    CSinaisDeOrigem& operator=(const CSinaisDeOrigem&) = delete;
    const posix_spawnattr_t* Get() const { return &m_atributos; }

  private:
    posix_spawnattr_t m_atributos;
};

}  // namespace

CXVProcessoFilho::CXVProcessoFilho(const std::string& sPrograma,
                                   const std::vector<std::string>& listaArgumentos,
                                   const SFluxosFilho& rFluxos)
    : m_pSistema(std::make_unique<SSistema>()) {
    // A pipe each, of which the child gets one end; the ends of this process close when it is executed.
    std::array<int, 2> aEntrada{-1, -1};
    std::array<int, 2> aSaida{-1, -1};
    if (pipe2(aEntrada.data(), O_CLOEXEC) != 0 || pipe2(aSaida.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("pipe2");
    m_pSistema->entrada = CXVDescritor(aEntrada[1]);
    m_pSistema->saida = CXVDescritor(aSaida[0]);
    const CXVDescritor entradaDoFilho(aEntrada[0]);
    const CXVDescritor saidaDoFilho(aSaida[1]);
    std::vector<std::string> listaTextos{sPrograma};
    listaTextos.insert(listaTextos.end(), listaArgumentos.begin(), listaArgumentos.end());
    std::vector<char*> listaPonteiros;
    for (std::string& sTexto : listaTextos) listaPonteiros.push_back(sTexto.data());
    listaPonteiros.push_back(nullptr);

    posix_spawn_file_actions_t acoes;
    posix_spawn_file_actions_init(&acoes);
    const auto poe = [&acoes](int iFluxo, const std::string& sArquivo, int iOpcoes, int iCano) {
        if (!sArquivo.empty())
            posix_spawn_file_actions_addopen(&acoes, iFluxo, sArquivo.c_str(), iOpcoes, 0600);
        else if (iCano >= 0)
            posix_spawn_file_actions_adddup2(&acoes, iCano, iFluxo);
    };
    poe(STDIN_FILENO, rFluxos.sEntrada, O_RDONLY, entradaDoFilho.Get());
    poe(STDOUT_FILENO, rFluxos.sSaida, O_WRONLY | O_CREAT, saidaDoFilho.Get());
    poe(STDERR_FILENO, rFluxos.sErro, O_WRONLY | O_CREAT, -1);
    const CSinaisDeOrigem sinais;
    const int iErro = posix_spawn(&m_pSistema->iProcesso, sPrograma.c_str(), &acoes, sinais.Get(),
                                  listaPonteiros.data(), environ);
    posix_spawn_file_actions_destroy(&acoes);
    if (iErro != 0) throw std::runtime_error("posix_spawn " + sPrograma);
}

CXVProcessoFilho::~CXVProcessoFilho() {
    Mata();
}

bool CXVProcessoFilho::LeByte(char& rcByte) {
    return XVRepeteInterrompida([&] { return read(m_pSistema->saida.Get(), &rcByte, 1); }) == 1;
}

void CXVProcessoFilho::Escreve(const std::string& sTexto) {
    if (write(m_pSistema->entrada.Get(), sTexto.data(), sTexto.size()) != static_cast<ssize_t>(sTexto.size()))
        throw std::runtime_error("write into the child's input");
}

void CXVProcessoFilho::FechaEntrada() {
    m_pSistema->entrada.Fecha();
}

long CXVProcessoFilho::GetNumero() const {
    return m_pSistema->iProcesso;
}

void CXVProcessoFilho::Mata() {
    if (m_pSistema->iProcesso <= 0) return;
    kill(m_pSistema->iProcesso, SIGKILL);
    EsperaFim();
}

int CXVProcessoFilho::EsperaFim() {
    int iEstado = 0;
    const pid_t iProcesso = std::exchange(m_pSistema->iProcesso, -1);
    const pid_t iFim = XVRepeteInterrompida([&] { return waitpid(iProcesso, &iEstado, 0); });
    if (iFim != iProcesso) return -1;
    if (WIFEXITED(iEstado)) return WEXITSTATUS(iEstado);
    return WTERMSIG(iEstado) == SIGKILL ? -1 : -WTERMSIG(iEstado);
}

std::string XVProgramaVizinho(const std::string& sNome) {
    return XVAmbienteSO::GetDiretorioExecutavel() + "/" + sNome;
}
