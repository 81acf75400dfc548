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
    if (rFluxos.sEntrada.empty()) {
        posix_spawn_file_actions_adddup2(&acoes, entradaDoFilho.Get(), STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&acoes, saidaDoFilho.Get(), STDOUT_FILENO);
    } else {
        constexpr int k_iCria = O_WRONLY | O_CREAT;
        posix_spawn_file_actions_addopen(&acoes, STDIN_FILENO, rFluxos.sEntrada.c_str(), O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&acoes, STDOUT_FILENO, rFluxos.sSaida.c_str(), k_iCria, 0600);
        posix_spawn_file_actions_addopen(&acoes, STDERR_FILENO, rFluxos.sErro.c_str(), k_iCria, 0600);
    }
    const int iErro = posix_spawn(&m_pSistema->iProcesso, sPrograma.c_str(), &acoes, nullptr,
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

void CXVProcessoFilho::FechaEntrada() {
    m_pSistema->entrada.Fecha();
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
    return iFim == iProcesso && WIFEXITED(iEstado) ? WEXITSTATUS(iEstado) : -1;
}

std::string XVProgramaVizinho(const std::string& sNome) {
    return XVAmbienteSO::GetDiretorioExecutavel() + "/" + sNome;
}
