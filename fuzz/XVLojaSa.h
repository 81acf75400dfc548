// A sound store to put foreign files beside: the one of the sweeps (three days, every kind of content),
// closed in order.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "fuzz/XVBancadaFuzz.h"
#include "middleware/BaseMiddleware.h"

class CXVLojaSa {
  public:
    // Puts the store's files on the bench's disk; they are made once for the process.
    static void Poe(CXVBancadaFuzz& rBancada);
    // Opens the store; null when it is refused.
    static std::unique_ptr<CBaseMiddleware> Abre(CXVBancadaFuzz& rBancada);
    // It shows all that was recorded, whole, and nothing else.
    static bool Confere(CBaseMiddleware& rLoja);
    // So it does after the operation of PoeMorta, which took place in every file.
    static bool ConfereConcluida(CBaseMiddleware& rLoja);
    // A new integration is taken and read back.
    static bool Grava(CBaseMiddleware& rLoja);
    // Puts a store whose process died in the middle of an operation: the journal names it, and each data file
    // has it (bit of uiJaGravados by the order of names) or does not.
    static void PoeMorta(CXVBancadaFuzz& rBancada, unsigned uiJaGravados);
    // The data files of the bench's disk: all "dat" but the control file.
    static std::map<std::string, std::string> Dados(const CXVBancadaFuzz& rBancada);
};
