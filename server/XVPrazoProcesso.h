// A time in which something has to be over, or the process is gone with it, wherever it is then. For what
// waits inside of the runtime of remote calls: it waits for calls that are not over, and has been seen to
// wait for one that was; nobody would be served any more, by this server or by the next. Nothing is lost by
// it: an operation that is cut off is whole or absent at the store's next opening.
#pragma once

#include <windows.h>

class CXVPrazoProcesso {
  public:
    // ulTempo: milliseconds. Where the system yields no thread there is no limit.
    explicit CXVPrazoProcesso(DWORD ulTempo);
    // In time: the process goes on.
    ~CXVPrazoProcesso();
    CXVPrazoProcesso(const CXVPrazoProcesso&) = delete;
    CXVPrazoProcesso& operator=(const CXVPrazoProcesso&) = delete;

    // One that nothing cancels.
    static void LimitaFim(DWORD ulTempo);

  private:
    static DWORD WINAPI Vigia(void* pPrazo);

    const DWORD m_ulTempo;
    HANDLE m_hCumprido;
    HANDLE m_hThread;
};
