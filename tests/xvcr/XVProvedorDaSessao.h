// The provider that writes down what it is asked (tests/middleware/exchange/XVGravador.h), as a session
// speaks of it.
#pragma once

#include <istream>
#include <optional>
#include <string>

#include "platform/XVBibliotecaDinamica.h"
#include "tests/middleware/exchange/XVGravador.h"

class CXVProvedorDaSessao {
  public:
    CXVProvedorDaSessao() { m_rGravador = {}; }

    // Does what the directive says; its answer, or nothing for a directive of another kind.
    //   chamadas                      what it was asked since the last time
    //   item origin base system json  one more pending item; without words: none any more
    //   responde op status key text   what an operation answers
    //   falha op n                    the operation fails from its n-th time on
    //   documento status text json bytes
    std::optional<std::string> Faz(const std::string& sQual, std::istream& rPalavras);

  private:
    // Its library stays loaded for good, as in a process of the suite.
    static SGravador& Gravador() {
        static const CXVBibliotecaDinamica& s_rBiblioteca = *new CXVBibliotecaDinamica("XVProvedor8.dll");
        return *s_rBiblioteca.GetFuncao<PFXVGravador>(k_pszFuncaoGravador)();
    }
    SGravador& m_rGravador = Gravador();
};
