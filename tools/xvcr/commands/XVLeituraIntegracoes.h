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

// Reads the integrations in their order and writes each as a record.
void XVMostraIntegracoes(CXVContexto& rContexto, const std::vector<REG_XVDMC>& lista,
                         const SOpcoesLeitura& rOpcoes);

// Reads the integrations in their order and writes them as the rows of one table, each part of them before
// the next is read.
void XVTabelaIntegracoes(CXVContexto& rContexto, const std::vector<REG_XVDMC>& lista);
