// A file handle that closes itself.
#pragma once

#include <windows.h>

#include <utility>

class CXVHandleArquivo {
  public:
    explicit CXVHandleArquivo(HANDLE hArquivo = INVALID_HANDLE_VALUE) : m_hArquivo(hArquivo) {}
    ~CXVHandleArquivo() {
        if (EhValido()) {
            CloseHandle(m_hArquivo);
        }
    }
    CXVHandleArquivo(CXVHandleArquivo&& rOutro) noexcept
        : m_hArquivo(std::exchange(rOutro.m_hArquivo, INVALID_HANDLE_VALUE)) {}
    CXVHandleArquivo& operator=(CXVHandleArquivo&& rOutro) noexcept {
        std::swap(m_hArquivo, rOutro.m_hArquivo);  // the other closes what this one held
        return *this;
    }

    bool EhValido() const { return m_hArquivo != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return m_hArquivo; }

  private:
    HANDLE m_hArquivo;
};
