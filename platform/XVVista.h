// A part of an open file that is read and written without a call of the operating system where the system
// maps it into memory, and with ordinary calls elsewhere. What is written is seen at once by every other
// opening of the file and survives the end of the process like a write.
//
// Thread rule: one thread writes at a time; LePalavra may run beside it, also in another process.
#pragma once

#include "platform/XVErroArquivo.h"

class IXVVista {
  public:
    virtual ~IXVVista() = default;

    // Offsets count from the start of the file; outside of the view: ePosicionamentoInvalido. Writing through
    // the view of a file that was opened for reading only: eAcessoNegado.
    virtual CXVErroArquivo Le(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) = 0;
    // On failure a part of the bytes may have been written.
    virtual CXVErroArquivo Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) = 0;

    // A word of 8 bytes at a multiple of 8 (elsewhere: ePosicionamentoInvalido), never seen half written.
    // What was written before a GravaPalavra is seen by whoever has read that word with LePalavra.
    virtual CXVErroArquivo LePalavra(XVUInt64 uiOffset, XVUInt64& uiPalavra) = 0;
    virtual CXVErroArquivo GravaPalavra(XVUInt64 uiOffset, XVUInt64 uiPalavra) = 0;

  protected:
    // Whether uiTamanho bytes from uiOffset lie inside of a view of uiVista bytes.
    static bool Cabe(XVUInt64 uiOffset, std::size_t uiTamanho, XVUInt64 uiVista) {
        return uiOffset <= uiVista && uiTamanho <= uiVista - uiOffset;
    }
    static bool CabePalavra(XVUInt64 uiOffset, XVUInt64 uiVista) {
        return uiOffset % sizeof(XVUInt64) == 0 && Cabe(uiOffset, sizeof(XVUInt64), uiVista);
    }
};
