// A reading that XVInterrupcao can awaken: it lasts as long as the object, in the thread that made it.
#pragma once

#include <windows.h>

class CXVLeituraDespertavel {
  public:
    CXVLeituraDespertavel();
    ~CXVLeituraDespertavel();
    CXVLeituraDespertavel(const CXVLeituraDespertavel&) = delete;
    CXVLeituraDespertavel& operator=(const CXVLeituraDespertavel&) = delete;

    // False: it was awakened before it began.
    bool PodeComecar() const { return m_hThread != nullptr; }

  private:
    HANDLE m_hThread = nullptr;
};

// Whether a reading was awakened since XVInterrupcao observes.
bool XVFoiDespertada();
