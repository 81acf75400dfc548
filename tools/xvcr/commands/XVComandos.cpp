#include "tools/xvcr/commands/XVComandos.h"

CLI::App* XVAdicionaComando(CLI::App& rRaiz, const std::string& sNome, const std::string& sDescricao,
                            const std::string& sExemplos) {
    CLI::App* pComando = rRaiz.add_subcommand(sNome, sDescricao);
    pComando->group("Comandos");
    pComando->get_help_ptr()->group(k_szGrupoOpcoes);
    pComando->footer(
        "Exemplos:\n" + sExemplos +
        "\nAs opções gerais (--empresa, --diretorio, --json e outras) estão em \"xvcr --help\".");
    return pComando;
}

void XVDefineAcao(CLI::App* pComando, CXVContexto& rContexto, std::function<void()> fAcao) {
    pComando->callback([&rContexto, fAcao = std::move(fAcao)] { rContexto.fAcao = fAcao; });
}
