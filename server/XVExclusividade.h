// One server at a time for a user and session: a named mutex, held from before the class is registered
// until after it is withdrawn, so that the next server opens stores that the last one has closed.
#pragma once

#include <windows.h>

class CXVExclusividade {
  public:
    CXVExclusividade();
    ~CXVExclusividade();
    CXVExclusividade(const CXVExclusividade&) = delete;
    CXVExclusividade& operator=(const CXVExclusividade&) = delete;

    // Waits for a server that is ending. False: another one is there and stays. Of a server that was
    // killed the mark is taken over at once.
    bool Toma(DWORD ulMilissegundos);

  private:
    HANDLE m_hMutex;
    bool m_bTomado = false;
};
