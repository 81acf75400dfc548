// The companies that acompanha follows. What one of them fails with keeps none of the others waiting.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/xvcr/commands/XVAcompanhamento.h"

struct SSelecaoSeguidas {
    bool bTodas = false;         // of the module directory, those included that come later
    bool bDesdeOInicio = false;  // a company without token begins with a pass over its store
    std::map<std::string, SFicha> mapFichas;
};

class CXVSeguidas {
  public:
    // Both must outlive this object. Companies that are asked for and cannot be followed are thrown as
    // CXVErro.
    CXVSeguidas(const SSelecaoSeguidas& rSelecao, const SAcompanha& rTudo);

    // One round of each. True: something was written.
    bool Rodada();
    bool FalhamTodas() const;

  private:
    struct SSeguida {
        CXVAcompanhamento acompanhamento;
        std::string sFalha{};   // of the last round; empty: none
        unsigned uiEspera = 0;  // rounds until it is tried again
    };

    std::vector<std::string> ListaPedidas() const;
    void Inclui(const std::string& sEmpresa, bool bPassagem);
    bool RodadaDeUma(SSeguida& rSeguida);

    const SSelecaoSeguidas& m_rSelecao;
    const SAcompanha& m_rTudo;
    std::map<std::string, SSeguida> m_mapSeguidas;
    unsigned m_uiRodadas = 0;
};
