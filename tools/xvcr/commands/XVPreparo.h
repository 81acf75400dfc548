// Lines taken from a source and prepared by a thread of their own, ahead of whoever records them. Order and
// numbers stay. Everything that is prepared is handed over before more has to be waited for, so a pipe whose
// writer waits for the answer to a line gets it. Thread rule: one object is used by one thread.
#pragma once

#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include "tools/xvcr/commands/XVCarga.h"
#include "tools/xvcr/text/XVLeitorLinhas.h"

class CXVPreparo {
  public:
    // uiLinhaMaxima: bytes; a longer line is one with an error.
    CXVPreparo(IXVFonteBytes& rFonte, std::size_t uiLinhaMaxima);
    ~CXVPreparo();  // awakens the thread from waiting for input
    CXVPreparo(const CXVPreparo&) = delete;
    CXVPreparo& operator=(const CXVPreparo&) = delete;

    // The next line that is not empty, valid until the next call; null at the end, and where the source could
    // not be read further.
    SLinhaCarga* Proxima();
    // Throws what ended the lines before their end. To be called after the last one.
    void Confere() const {
        if (m_Falha != nullptr) std::rethrow_exception(m_Falha);
    }

  private:
    struct SLote {
        std::vector<SLinhaCarga> listaLinhas;
        std::uint64_t uiBytes = 0;
    };

    void Trabalha();
    void Prepara(std::string_view sLinha, bool bLonga);
    // Then waits while too much is not recorded yet. False: nobody takes it any more.
    bool Entrega();

    CXVLeitorLinhas m_Leitor;
    const std::size_t m_uiLinhaMaxima;
    SLote m_LoteEmPreparo;  // of the thread

    std::mutex m_Mutex;
    std::condition_variable m_Mudou;
    SLote m_LotePronto;
    std::uint64_t m_uiBytesTomados = 0;  // of the lines that are being recorded
    bool m_bFim = false;                 // nothing comes any more
    bool m_bDesiste = false;             // nobody takes any more
    std::exception_ptr m_Falha;

    SLote m_LoteTomado;  // of the caller
    std::size_t m_uiProxima = 0;
    std::jthread m_Thread;  // last: it uses all others
};
