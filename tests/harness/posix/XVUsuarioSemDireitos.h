// While it lives, this thread meets files as a user without any right: the user "nobody", where whoever runs
// the tests may become another user, and whoever runs them otherwise.
#pragma once

#include <sys/fsuid.h>
#include <sys/types.h>
#include <unistd.h>

class CXVUsuarioSemDireitos {
  public:
    CXVUsuarioSemDireitos() {
        setfsgid(k_ulNinguem);
        setfsuid(k_ulNinguem);
    }
    ~CXVUsuarioSemDireitos() {
        setfsuid(geteuid());
        setfsgid(getegid());
    }
    CXVUsuarioSemDireitos(const CXVUsuarioSemDireitos&) = delete;
    CXVUsuarioSemDireitos& operator=(const CXVUsuarioSemDireitos&) = delete;

  private:
    static constexpr uid_t k_ulNinguem = 65534;
};
