// The machine's configuration with another module directory: what a connection to a store directory names is
// found by the store as if the installation had written it.
//
// There is one configuration in a process, so one directory at a time: the first connection puts it in force,
// the last gives it up. Thread rule: any thread.
#pragma once

#include <mutex>
#include <string>

#include "platform/XVRegistry.h"

class CXVRegistryComDiretorio final : public IXVRegistry {
  public:
    // The one object; it outlives every connection, for a thread may still be asking it for a value.
    static CXVRegistryComDiretorio& Instancia();

    // sDiretorio empty: the machine's own. False: another one is in force.
    [[nodiscard]] bool Toma(const std::string& sDiretorio);
    // Once for every Toma that succeeded.
    void Larga();

    std::optional<std::string> LeTexto(std::string_view sChave, std::string_view sValor) override;
    std::optional<XVUInt> LeNumero(std::string_view sChave, std::string_view sValor) override;

  private:
    CXVRegistryComDiretorio();

    const std::string m_sChave;
    std::mutex m_Mutex;
    std::string m_sDiretorio;
    std::size_t m_uiUsos = 0;
    IXVRegistry* m_pAnterior;
};

// One use of a directory, for as long as the object lives.
class CXVUsoDoDiretorio {
  public:
    explicit CXVUsoDoDiretorio(const std::string& sDiretorio)
        : m_bVale(CXVRegistryComDiretorio::Instancia().Toma(sDiretorio)) {}
    ~CXVUsoDoDiretorio() {
        if (m_bVale) CXVRegistryComDiretorio::Instancia().Larga();
    }
    CXVUsoDoDiretorio(const CXVUsoDoDiretorio&) = delete;
    CXVUsoDoDiretorio& operator=(const CXVUsoDoDiretorio&) = delete;
    // False: another directory is in force, and this one is not.
    bool Vale() const { return m_bVale; }

  private:
    bool m_bVale;
};
