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

struct SCano {
    CXVDescritor leitura;
    CXVDescritor escrita;
};

SCano CriaCano() {
    std::array<int, 2> aDescritores{};
    if (pipe2(aDescritores.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("pipe2");
    }
    return {CXVDescritor(aDescritores[0]), CXVDescritor(aDescritores[1])};
}

}  // namespace

CXVProcessoFilho::CXVProcessoFilho(const std::string& sPrograma,
                                   const std::vector<std::string>& listaArgumentos,
                                   const SFluxosFilho& rFluxos)
    : m_pSistema(std::make_unique<SSistema>()) {
    SCano canoEntrada = CriaCano();
    SCano canoSaida = CriaCano();
    std::vector<std::string> listaTextos{sPrograma};
    listaTextos.insert(listaTextos.end(), listaArgumentos.begin(), listaArgumentos.end());
    std::vector<char*> listaPonteiros;
    for (std::string& sTexto : listaTextos) {
        listaPonteiros.push_back(sTexto.data());
    }
    listaPonteiros.push_back(nullptr);

    posix_spawn_file_actions_t acoes;
    posix_spawn_file_actions_init(&acoes);
    if (rFluxos.sEntrada.empty()) {
        posix_spawn_file_actions_adddup2(&acoes, canoEntrada.leitura.Get(), STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&acoes, canoSaida.escrita.Get(), STDOUT_FILENO);
    } else {
        constexpr int k_iCria = O_WRONLY | O_CREAT;
        posix_spawn_file_actions_addopen(&acoes, STDIN_FILENO, rFluxos.sEntrada.c_str(), O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&acoes, STDOUT_FILENO, rFluxos.sSaida.c_str(), k_iCria, 0600);
        posix_spawn_file_actions_addopen(&acoes, STDERR_FILENO, rFluxos.sErro.c_str(), k_iCria, 0600);
    }
    const int iErro = posix_spawn(&m_pSistema->iProcesso, sPrograma.c_str(), &acoes, nullptr,
                                  listaPonteiros.data(), environ);
    posix_spawn_file_actions_destroy(&acoes);
    if (iErro != 0) {
        throw std::runtime_error("posix_spawn " + sPrograma);
    }
    m_pSistema->entrada = std::move(canoEntrada.escrita);
    m_pSistema->saida = std::move(canoSaida.leitura);
}

CXVProcessoFilho::~CXVProcessoFilho() {
    Mata();
}

std::string CXVProcessoFilho::LePedaco() {
    std::array<char, 4096> aBytes{};
    const ssize_t iLidos =
        XVRepeteInterrompida([&] { return read(m_pSistema->saida.Get(), aBytes.data(), aBytes.size()); });
    return iLidos > 0 ? std::string(aBytes.data(), static_cast<std::size_t>(iLidos)) : std::string();
}

void CXVProcessoFilho::FechaEntrada() {
    m_pSistema->entrada.Fecha();
}

void CXVProcessoFilho::Mata() {
    if (m_pSistema->iProcesso > 0) {
        kill(m_pSistema->iProcesso, SIGKILL);
        EsperaFim();
    }
}

int CXVProcessoFilho::EsperaFim() {
    int iEstado = 0;
    const pid_t iProcesso = std::exchange(m_pSistema->iProcesso, -1);
    if (XVRepeteInterrompida([&] { return waitpid(iProcesso, &iEstado, 0); }) != iProcesso) {
        return -1;
    }
    return WIFEXITED(iEstado) ? WEXITSTATUS(iEstado) : -1;
}

std::string XVProgramaVizinho(const std::string& sNome) {
    return XVAmbienteSO::GetDiretorioExecutavel() + "/" + sNome;
}
