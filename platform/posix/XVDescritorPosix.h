// A file descriptor that closes itself, and calls repeated when a signal interrupts them.
#pragma once

#include <sys/types.h>
#include <unistd.h>
#include <cerrno>

#include <string>
#include <utility>

class CXVDescritor {
  public:
    explicit CXVDescritor(int iDescritor = -1) : m_iDescritor(iDescritor) {}
    ~CXVDescritor() { Fecha(); }
    CXVDescritor(CXVDescritor&& rOutro) noexcept : m_iDescritor(std::exchange(rOutro.m_iDescritor, -1)) {}
    CXVDescritor& operator=(CXVDescritor&& rOutro) noexcept {
        if (this != &rOutro) {
            Fecha();
            m_iDescritor = std::exchange(rOutro.m_iDescritor, -1);
        }
        return *this;
    }

    bool EhValido() const { return m_iDescritor >= 0; }
    int Get() const { return m_iDescritor; }
    // Hands the descriptor over: whoever gets it closes it.
    int Solta() { return std::exchange(m_iDescritor, -1); }
    void Fecha() {
        if (m_iDescritor >= 0) {
            // Never repeated after EINTR: the number is free already and may belong to another thread.
            close(std::exchange(m_iDescritor, -1));
        }
    }

  private:
    int m_iDescritor;
};

// Calls fnChamada until it does not fail with EINTR.
template <class TChamada>
auto XVRepeteInterrompida(TChamada fnChamada) {
    decltype(fnChamada()) resultado;
    do {
        resultado = fnChamada();
    } while (resultado == -1 && errno == EINTR);
    return resultado;
}

// Opens a path; no child process inherits it. Invalid on failure, with errno set. The number is never that of
// a standard stream: in a process that was started with one closed, what anything prints to it would go into
// the file.
CXVDescritor XVAbreDescritor(const std::string& sCaminho, int iOpcoes, mode_t modo = 0);
