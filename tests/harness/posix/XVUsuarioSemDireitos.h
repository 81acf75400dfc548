// While it lives, this thread meets files as a user without any right: the user "nobody", where the tests run
// as root, and whoever runs them otherwise.
#pragma once

#include <sys/fsuid.h>
#include <unistd.h>

class CXVUsuarioSemDireitos {
  public:
    CXVUsuarioSemDireitos() {
        if (geteuid() == 0) {
            setfsgid(k_ulNinguem);
            setfsuid(k_ulNinguem);
        }
    }
    ~CXVUsuarioSemDireitos() {
        setfsuid(geteuid());
        setfsgid(getegid());
    }
    CXVUsuarioSemDireitos(const CXVUsuarioSemDireitos&) = delete;
    CXVUsuarioSemDireitos& operator=(const CXVUsuarioSemDireitos&) = delete;

  private:
    static constexpr unsigned k_ulNinguem = 65534;
};
