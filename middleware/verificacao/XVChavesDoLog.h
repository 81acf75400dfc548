// What the general log tells of integrations of which the index tells nothing: the external key that was
// recorded last, and whether a later one of the bank took over the place of that key.
//
// Thread rule: one thread.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "support/values/XVDmc.h"

// External key and DMC of an integration that has, or had, that key.
using TChaveDmc = std::pair<XVUInt64, XVUInt64>;

class CXVChavesDoLog {
  public:
    // Reads every month's log of the directory and keeps what it says of these integrations and of the bank's
    // that the index knows. A log that cannot be read tells nothing.
    void Le(const std::string& sDiretorio, const std::vector<REG_XVDMC>& listaDmcs,
            const std::vector<TChaveDmc>& aDoBanco);
    // Nothing: no line speaks of the integration. 0: it had no key.
    std::optional<XVUInt64> GetChave(REG_XVDMC regDmc) const;
    // A later one, which is the bank's or was replaced in its turn, has or had the last key of this one. What
    // became of that key since does not matter.
    bool FoiSubstituida(REG_XVDMC regDmc) const { return m_substituidas.contains(regDmc.uiValor); }

  private:
    void LeArquivo(const std::string& sPath);
    void LeLinha(std::string_view sLinha);
    void JulgaSubstituidas();

    // The clock may have been set back, so what came later is told by the order of the lines.
    struct SUltima {
        XVUInt64 uiLinha = 0;
        std::optional<XVUInt64> uiChave;
    };
    struct STeve {
        XVUInt64 uiChave;
        XVUInt64 uiLinha;
        XVUInt64 uiDmc;
        auto operator<=>(const STeve&) const = default;
    };
    std::map<XVUInt64, SUltima> m_mapaUltimas;
    XVUInt64 m_uiLinha = 0;
    std::set<XVUInt64> m_doBanco;
    std::vector<STeve> m_aTiveram;
    std::set<XVUInt64> m_substituidas;
};
