// What the declarations of commands and options say of themselves: the one source of help, completion, the
// manual page and the messages about a wrong command line.
#pragma once

#include <CLI/App.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "contract/XVEnumeracoesTexto.h"

namespace XVDeclaracoes {

// The name of the kind of value in help, "STATUS", and back; eNenhuma for other kinds.
std::string_view GetNomeDoTipo(EEnumeracao eEnumeracao);
EEnumeracao GetEnumeracao(const CLI::Option& rOpcao);

// "--status", "-V,--version" in help, the name of a positional. An option's second long name is an older one,
// which is accepted and no longer shown.
std::string GetNome(const CLI::Option& rOpcao);
std::string GetNomesDaAjuda(const CLI::Option& rOpcao);
bool LevaValor(const CLI::Option& rOpcao);

// "xvcr mapa busca".
std::string GetLinha(const CLI::App& rComando);

// The commands that a line names, from the program itself to the last one.
std::vector<const CLI::App*> GetCaminho(const CLI::App& rRaiz,
                                        const std::vector<std::string>& listaArgumentos);
// The option of one of these that an argument names ("--status", "--status=x", "-h"), or null.
const CLI::Option* GetOpcao(const std::vector<const CLI::App*>& listaCaminho, std::string_view sArgumento);

// What may stand in the place of an argument.
std::vector<std::string> GetNomesDeComandos(const CLI::App& rComando);
std::vector<std::string> GetNomesDeOpcoes(const std::vector<const CLI::App*>& listaCaminho);

}  // namespace XVDeclaracoes
