// The commands of the program. Each function adds one command, with its options and help, to the command
// line; the context must outlive it.
#pragma once

#include <CLI/App.hpp>

#include "tools/xvcr/commands/XVContexto.h"

void XVAdicionaGrava(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaStatus(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaLe(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaBusca(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaAcompanha(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaCarrega(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaExporta(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaImporta(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaMapa(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaDataHora(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaPendencia(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaInstantanea(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaConsulta(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaConverte(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaVersao(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaResumo(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaVerifica(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaRecupera(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaCopia(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaRegistro(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaEmpresas(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaProvedores(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaExplica(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaCompleta(CLI::App& rRaiz, CXVContexto& rContexto);
void XVAdicionaManual(CLI::App& rRaiz, CXVContexto& rContexto);

// The group of the help that a command's own options stand in.
inline constexpr const char* k_szGrupoOpcoes = "Opções";

// Adds a command to rRaiz: what it is, and examples for its help.
CLI::App* XVAdicionaComando(CLI::App& rRaiz, const std::string& sNome, const std::string& sDescricao,
                            const std::string& sExemplos);

// What the command does once the whole line is read.
void XVDefineAcao(CLI::App* pComando, CXVContexto& rContexto, std::function<void()> fAcao);
