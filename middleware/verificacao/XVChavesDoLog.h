// What the general log tells of integrations of which the index tells nothing: the external key that was
// recorded last.
//
// Thread rule: one thread.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/values/XVDmc.h"

class CXVChavesDoLog {
  public:
    // Reads every month's log of the directory and keeps what it says of these integrations. A log that
    // cannot be read tells nothing.
    void Le(const std::string& sDiretorio, const std::vector<REG_XVDMC>& listaDmcs);
    // Nothing: no line speaks of the integration. 0: it had no key.
    std::optional<XVUInt64> GetChave(REG_XVDMC regDmc) const;

  private:
    void LeArquivo(const std::string& sPath);
    void LeLinha(std::string_view sLinha);

    std::map<XVUInt64, std::optional<XVUInt64>> m_mapaChaves;
};
