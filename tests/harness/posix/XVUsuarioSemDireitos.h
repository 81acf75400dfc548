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

    // Whether it became another user; otherwise what the tests made is its own.
    static bool EOutro() { return static_cast<uid_t>(setfsuid(k_ulQualE)) != geteuid(); }

  private:
    static constexpr uid_t k_ulNinguem = 65534;
    static constexpr uid_t k_ulQualE = static_cast<uid_t>(-1);  // changes nothing and answers who it is
};
