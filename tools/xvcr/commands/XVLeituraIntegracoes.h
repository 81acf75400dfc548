// Reading integrations and showing them: what le and busca --le have in common.
#pragma once

#include <CLI/App.hpp>
#include <string>
#include <vector>

#include "tools/xvcr/commands/XVContexto.h"

struct SOpcoesLeitura {
    bool bRegistroJSON = false;
    bool bMensagem = false;
    bool bJSONRetorno = false;
    bool bTodos = false;
    bool bConsultaTerceiro = false;
    bool bOperacaoPosterior = false;
    std::string sPasta;  // texts go into files there; empty: into the output

    void Adiciona(CLI::App& rComando);
    XVUInt64 GetFlags() const;
};

// An integration that cannot be read is named on the error output, the others are written all the same, and
// the program ends as failed.

// Reads the integrations in their order and writes each as a record.
void XVMostraIntegracoes(CXVContexto& rContexto, const std::vector<REG_XVDMC>& lista,
                         const SOpcoesLeitura& rOpcoes);

// Reads the integrations in their order and writes them as the rows of one table, each part of them before
// the next is read. Answers how many of them could be read.
std::size_t XVTabelaIntegracoes(CXVContexto& rContexto, const std::vector<REG_XVDMC>& lista);

// The same as lines of values parted by semicolons, one for each integration, below a line of their names.
void XVCsvIntegracoes(CXVContexto& rContexto, const std::vector<REG_XVDMC>& lista);

enum class EOrdem : std::uint8_t { eDmc, eInclusao, eAlteracao, eChave };

// The integrations in the order of a field of theirs, equal ones as they came; what cannot be read is left
// out.
std::vector<REG_XVDMC> XVOrdenaIntegracoes(CXVContexto& rContexto, const std::vector<REG_XVDMC>& lista,
                                           EOrdem eOrdem, bool bDecrescente);
