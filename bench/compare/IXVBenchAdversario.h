// One that does the work of the comparison. Every call of Grava and GravaStatus is an operation of its own,
// as the store's callers make them. A failing call ends the program: nothing of its run is worth a figure.
// One opponent is used by one thread.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>

#include "bench/compare/XVBenchIntegracao.h"

// What was read. The texts live until the opponent's next call.
struct SLidaBench {
    XVUInt64 uiChave = 0;
    XVUInt eSistema = 0;
    XVUInt eStatus = 0;
    XVUInt eTipo = 0;
    std::string_view sJSON{};
    std::string_view sMensagem{};
    std::string_view sRetorno{};
    bool operator==(const SLidaBench&) const = default;
};

class IXVBenchAdversario {
  public:
    IXVBenchAdversario() = default;
    virtual ~IXVBenchAdversario() = default;  // closes
    IXVBenchAdversario(const IXVBenchAdversario&) = delete;
    IXVBenchAdversario& operator=(const IXVBenchAdversario&) = delete;

    virtual void Grava(const SIntegracaoBench& rIntegracao) = 0;
    virtual void GravaStatus(const SStatusBench& rStatus) = 0;
    // After filling, before searches are timed: what a person does who tunes.
    virtual void Assenta() {}
    // With copies of the texts that a caller may keep.
    virtual SLidaBench Le(REG_XVDMC regDmc) = 0;
    // The keys found, in any order; they live until the next call.
    virtual std::span<const REG_XVDMC> Busca(const SFiltroBench& rFiltro) = 0;
    // Without logs.
    virtual XVUInt64 BytesEmDisco() = 0;
};

enum class EDuracaoBench {
    eSistema,      // the operating system has the bytes when a call returns
    eDispositivo,  // the device has them
};

// Where a store lies and how much it will hold.
struct SAberturaBench {
    std::string sPasta;  // exists; empty, or left by the same opponent
    EDuracaoBench eDuracao = EDuracaoBench::eSistema;
    unsigned uiIntegracoes = 0;
};

struct SAdversarioBench {
    const char* pszNome;
    const char* pszDescricao;
    bool bVarios;  // several of one process may have the same store open, one for each thread
    std::function<std::unique_ptr<IXVBenchAdversario>(const SAberturaBench&)> fnAbre;
};

// Ends the program: a benchmark of an error measures nothing.
[[noreturn]] void XVTermina(const std::string& sMotivo);

std::unique_ptr<IXVBenchAdversario> XVAbreSqlite(const SAberturaBench& rAbertura, bool bAjustado);
std::unique_ptr<IXVBenchAdversario> XVAbreLmdb(const SAberturaBench& rAbertura);
std::unique_ptr<IXVBenchAdversario> XVAbreNu(const SAberturaBench& rAbertura);
