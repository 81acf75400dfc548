// What the benchmark of the journal measures: ways of recording the same integration.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "bench/XVBenchAmbienteDiario.h"

inline constexpr unsigned k_uiThreadsBench = 8;

struct SVarianteDiario {
    const char* pszNome;
    const char* pszDescricao;
    unsigned uiOperacoes;                   // in one block
    std::function<void(unsigned)> fnBloco;  // carries out that many
    std::vector<double> listaUs{};          // microseconds an operation, one for each round
};

// How many operations a block has: of those that wait for no device, of those that wait, by one caller and by
// all threads. Before the first block come as many as the journal's ring takes and more: its pages are met.
struct STamanhosBloco {
    unsigned uiSemEspera = 200;
    unsigned uiComEspera = 100;
    unsigned uiComThreads = 400;
    unsigned uiAquecimento = 400;
};

// Those whose name contains sFiltro; each has opened its store. rAmbiente must outlive them.
std::vector<SVarianteDiario> XVMontaVariantes(CXVAmbienteDiario& rAmbiente, const STamanhosBloco& rTamanhos,
                                              const std::string& sFiltro);
