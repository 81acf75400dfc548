// A file system that tells the test after each operation: what the code under test has done so far can then
// be looked at from outside, in the middle of its work. What the test does meanwhile is not told.
#pragma once

#include <functional>

#include "tests/harness/XVSistemaArquivosEnvolto.h"

class CXVGanchoArquivos {
  public:
    explicit CXVGanchoArquivos(std::function<void()> fnDepois) { s_fnDepois = std::move(fnDepois); }
    ~CXVGanchoArquivos() { s_fnDepois = nullptr; }
    CXVGanchoArquivos(const CXVGanchoArquivos&) = delete;
    CXVGanchoArquivos& operator=(const CXVGanchoArquivos&) = delete;

    struct SGuarda {
        SGuarda() = default;
        ~SGuarda() {
            if (s_fnDepois == nullptr || s_bDentro) return;
            s_bDentro = true;
            s_fnDepois();
            s_bDentro = false;
        }
        SGuarda(const SGuarda&) = delete;
        SGuarda& operator=(const SGuarda&) = delete;
    };

  private:
    static inline std::function<void()> s_fnDepois;
    static inline bool s_bDentro = false;
};

using CXVSistemaArquivosGancho = TXVSistemaArquivosEnvolto<TXVVigiaGuarda<CXVGanchoArquivos::SGuarda>>;
