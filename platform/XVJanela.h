// A window on an open file: its first bytes, written without a call of the operating system where the system
// maps them into memory, and with ordinary calls elsewhere. What is written is seen at once by every other
// opening of the file and survives the end of the process like a write.
//
// Thread rule: one thread writes at a time; others, also in other processes, may read the file beside it.
#pragma once

#include "platform/XVErroArquivo.h"

class IXVJanela {
  public:
    virtual ~IXVJanela() = default;

    // Offsets count from the start of the file; outside of the window: ePosicionamentoInvalido. On failure a
    // part of the bytes may have been written.
    virtual CXVErroArquivo Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) = 0;
    // A word of 8 bytes at a multiple of 8 (elsewhere: ePosicionamentoInvalido), never seen half written. Who
    // reads it also reads what was written before it.
    virtual CXVErroArquivo GravaPalavra(XVUInt64 uiOffset, XVUInt64 uiPalavra) = 0;

  protected:
    // Whether uiTamanho bytes from uiOffset lie inside of a window of uiJanela bytes.
    static bool Cabe(XVUInt64 uiOffset, std::size_t uiTamanho, XVUInt64 uiJanela) {
        return uiOffset <= uiJanela && uiTamanho <= uiJanela - uiOffset;
    }
    static bool CabePalavra(XVUInt64 uiOffset, XVUInt64 uiJanela) {
        return uiOffset % sizeof(XVUInt64) == 0 && Cabe(uiOffset, sizeof(XVUInt64), uiJanela);
    }
};
