// Options of the commands: every value goes through the readers of XVLeituraValor, so that the command line
// and JSON accept the same forms.
#pragma once

#include <CLI/App.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "tools/xvcr/text/XVLeituraValor.h"

// Argument values that the command-line library would take for something of its own (empty ones, those that
// begin with '[' or '{') go through it under a mark, which the options below take off again.
std::vector<std::string> XVProtegeArgumentos(std::vector<std::string> listaArgumentos);
std::string XVDesprotege(const std::string& sArgumento);

using FLeOpcao = std::function<std::string(std::string_view)>;

// An option with one value. A second name behind a comma is an older one, still accepted. fLe gets the value
// and answers what is wrong with it, or an empty text.
CLI::Option* XVOpcao(CLI::App& rComando, const std::string& sNome, const std::string& sTipo,
                     const std::string& sDescricao, FLeOpcao fLe);

template <class T>
CLI::Option* XVOpcaoValor(CLI::App& rComando, const std::string& sNome, const std::string& sTipo,
                          const std::string& sDescricao, T* pValor) {
    return XVOpcao(rComando, sNome, sTipo, sDescricao,
                   [pValor](std::string_view s) { return XVLeituraValor::Le(s, pValor); });
}

// A number from 1.
CLI::Option* XVOpcaoContagem(CLI::App& rComando, const std::string& sNome, const std::string& sTipo,
                             const std::string& sDescricao, XVUInt* pulValor);

// Any text, as it stands.
CLI::Option* XVOpcaoSimples(CLI::App& rComando, const std::string& sNome, const std::string& sTipo,
                            const std::string& sDescricao, std::string* psValor);

// A text for the store: literal, @file or -.
CLI::Option* XVOpcaoTexto(CLI::App& rComando, const std::string& sNome, const std::string& sDescricao,
                          std::string* psValor);

// --dmc: an integration that exists, so never the null DMC.
CLI::Option* XVOpcaoIntegracao(CLI::App& rComando, const std::string& sDescricao, REG_XVDMC* pDmc);

CLI::Option* XVOpcaoEnumeracao(CLI::App& rComando, const std::string& sNome, const std::string& sDescricao,
                               EEnumeracao eEnumeracao, XVUInt* pulValor);

// --tipo and --sistema, both required: what a key map or a date-time belongs to.
void XVOpcoesTipoESistema(CLI::App& rComando, XVUInt* peTipo, XVUInt* peSistema);

// Values separated by commas; the option may be repeated.
CLI::Option* XVOpcaoLista(CLI::App& rComando, const std::string& sNome, const std::string& sDescricao,
                          EEnumeracao eEnumeracao, std::vector<XVUInt>* pLista);
