// A hidden window through which the process hears that the session ends, or that it is asked politely to
// end (WM_CLOSE): both ask for the end of the server. Without a window the process serves all the same.
//
// Thread rule: the thread that creates it pumps its messages and destroys it.
#pragma once

#include <windows.h>

class CXVJanelaSessao {
  public:
    CXVJanelaSessao();
    ~CXVJanelaSessao();
    CXVJanelaSessao(const CXVJanelaSessao&) = delete;
    CXVJanelaSessao& operator=(const CXVJanelaSessao&) = delete;

  private:
    HWND m_hJanela;
};
