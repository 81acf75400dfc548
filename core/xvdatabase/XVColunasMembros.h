// Which members of a group have columns (XVFile.h) in memory, and which of them lose theirs when the store's
// budget is exceeded. They have no handle, so they stay when only handles run short.
//
// Thread rule: any thread. Its lock is taken before those of the group and of the member.
#pragma once

#include <atomic>
#include <unordered_map>

#include "core/xvdatabase/XVMemoriaMembros.h"
#include "platform/XVTravaLeitores.h"

// The group, by the keys of its members. A key without a member, or one without columns: 0, and nothing.
class IXVDonoColunas {
  public:
    virtual XVUInt64 GetMemoriaColunas(XVUInt64 uiChave) const = 0;  // bytes
    virtual void EsqueceColunas(XVUInt64 uiChave) = 0;

  protected:
    ~IXVDonoColunas() = default;
};

class CXVColunasMembros final : public IXVMembrosAbertos {
  public:
    CXVColunasMembros(CXVMemoriaMembros& rMemoria, IXVDonoColunas& rDono);
    ~CXVColunasMembros();
    CXVColunasMembros(const CXVColunasMembros&) = delete;
    CXVColunasMembros& operator=(const CXVColunasMembros&) = delete;

    // Notes that the columns of a member were made or used. No lock is held.
    void Usa(XVUInt64 uiChave);

    SResumo Resume() const override;
    std::size_t GetMinimoAbertos() const override { return 0; }
    bool TemHandles() const override { return false; }
    bool FechaMaisAntigo() override;

  private:
    CXVMemoriaMembros& m_rMemoria;
    IXVDonoColunas& m_rDono;
    mutable CXVTravaLeitores m_Lock;
    std::unordered_map<XVUInt64, std::atomic<XVUInt64>> m_mapUsos;  // by key
};
