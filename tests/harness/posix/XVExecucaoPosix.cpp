#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVExecucao.h"

SExecucao XVExecuta(const std::string& sPrograma, const std::vector<std::string>& listaArgumentos,
                    const std::string& sEntrada) {
    const CXVDiretorioTeste diretorio;
    diretorio.CriaArquivo("entrada", sEntrada);
    posix_spawn_file_actions_t acoes;
    ::posix_spawn_file_actions_init(&acoes);
    const std::string sNomeEntrada = diretorio.Junta("entrada");
    const std::string sNomeSaida = diretorio.Junta("saida");
    const std::string sNomeErro = diretorio.Junta("erro");
    ::posix_spawn_file_actions_addopen(&acoes, STDIN_FILENO, sNomeEntrada.c_str(), O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&acoes, STDOUT_FILENO, sNomeSaida.c_str(), O_WRONLY | O_CREAT, 0600);
    ::posix_spawn_file_actions_addopen(&acoes, STDERR_FILENO, sNomeErro.c_str(), O_WRONLY | O_CREAT, 0600);

    std::vector<std::string> listaTudo{sPrograma};
    listaTudo.insert(listaTudo.end(), listaArgumentos.begin(), listaArgumentos.end());
    std::vector<char*> listaPonteiros;
    for (std::string& rArgumento : listaTudo) listaPonteiros.push_back(rArgumento.data());
    listaPonteiros.push_back(nullptr);
    pid_t pid = 0;
    const int iErro = ::posix_spawn(&pid, sPrograma.c_str(), &acoes, nullptr, listaPonteiros.data(), environ);
    ::posix_spawn_file_actions_destroy(&acoes);
    if (iErro != 0) throw std::runtime_error("posix_spawn " + sPrograma);

    int iEstado = 0;
    ::waitpid(pid, &iEstado, 0);
    return {WIFEXITED(iEstado) ? WEXITSTATUS(iEstado) : -1, diretorio.LeConteudo("saida").value_or(""),
            diretorio.LeConteudo("erro").value_or("")};
}
