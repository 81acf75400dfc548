// The trace configuration: file "log.ini" of the module directory, section "Log", read again when its
// reload interval has passed. Thread rule: any thread.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/XVTipos.h"

struct SConfiguracaoTrace {
    static constexpr XVUInt k_ulIntervaloPadrao = 600000;

    bool bEntrada = false;
    bool bSaida = false;
    bool bTrace = false;  // read and kept; no record depends on it
    bool bCoCreateInstance = false;
    bool bPerformance = false;
    bool bMemory = false;
    XVUInt ulIntervalo = k_ulIntervaloPadrao;  // milliseconds between two readings
    std::string sProcessos = "todos";          // lower case
    std::string sXVDataBase;                   // pieces of function names; empty for none
    bool bLogaTudoXVDataBase = false;
    std::string sDiretorioModulo;  // empty when the registry does not name it

    // Whether scopes have anything to do at all.
    bool DeveRastrear() const {
        if ((bPerformance || bMemory) && !bEntrada && !bSaida) return false;
        return bEntrada || bSaida || bCoCreateInstance;
    }
};

namespace XVProfilerConfig {

// The configuration in force, after reloading it when that is due.
std::shared_ptr<const SConfiguracaoTrace> GetAtual();

// Whether the next use reads it again. Takes no lock.
bool EstaVencida();

// Reads it again now.
std::shared_ptr<const SConfiguracaoTrace> Recarrega();

// Number of readings so far: what is kept for one interval compares it.
XVUInt GetGeracao();

// The values of one text of log.ini; what it does not name has its default.
SConfiguracaoTrace Interpreta(std::string_view sConteudo);

}  // namespace XVProfilerConfig
