// One server at a time for a user and session: a named mutex, held from before the class is registered
// until after it is withdrawn, so that the next server opens stores that the last one has closed. A named
// event beside it tells a server that is ending from one that serves.
//
// Thread rule: the main thread, where nothing else is said; the mutex belongs to the thread that took it.
#pragma once

#include <windows.h>

class CXVExclusividade {
  public:
    CXVExclusividade();
    ~CXVExclusividade();
    CXVExclusividade(const CXVExclusividade&) = delete;
    CXVExclusividade& operator=(const CXVExclusividade&) = delete;

    // Waits as long as it takes for a server that is ending (k_ulEsperaFimDoAnterior at most), and for one
    // that serves ulSeAtende milliseconds. False: another one is there and stays. Of a server that was killed
    // the mark is taken over at once. hDesiste, where there is one: signalled, it ends the waiting (false).
    bool Toma(DWORD ulSeAtende, HANDLE hDesiste = nullptr);

    // Who holds the mark says whether it is about to give it up.
    void AnunciaFim(bool bTermina);
    // The same from any thread, where this process holds it: true.
    static void AnunciaFimDoProcesso();

  private:
    bool EstaTerminando() const;

    HANDLE m_hMutex;
    HANDLE m_hTerminando;
    bool m_bTomado = false;
};
