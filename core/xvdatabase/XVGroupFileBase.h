// A group: one logical file stored as a family of like files, one per value of a numeric key that takes
// the place of the '?' run in the group's name pattern.
//
// Thread rule: one reader/writer lock per group, always taken before a member's.
#pragma once

#include <map>
#include <memory>
#include <shared_mutex>
#include <string>
#include <vector>

#include "core/xvdatabase/IXVFileBase.h"
#include "platform/XVTravaLeitores.h"

class CXVDataBase;
class CXVGravacaoPreparada;

class CXVGroupFileBase : public IXVFileBase {
  public:
    XV_CLASSE("CXVGroupFileBase", "XVGroupFileBase")

    CXVGroupFileBase(std::string sNomeArquivo, CXVDataBase* pDataBase);
    ~CXVGroupFileBase() override;

    const std::string& GetNomeArquivo() const override { return m_sNomeArquivo; }
    EModulo GetModulo() const override { return m_eModulo; }
    XVUInt64 GetTamanho() const override;
    HRESULT DeletaArquivo() override;
    void DesabilitaControleCriacaoArquivos() override;

    // Records of the key's member. E_XVCR_ARQUIVO_GROUP_NAO_ENCONTRADO: no member.
    virtual HRESULT GetQtdRegistros(XVUInt64 uiChaveNomeArquivo, XVUInt64* puiQuantidade);

    // Whether a file of this key is known.
    bool TemMembro(XVUInt64 uiChaveNomeArquivo) const {
        const std::shared_lock lock(m_Lock);
        return m_mapFiles.contains(uiChaveNomeArquivo);
    }
    // The keys of all files that are known, ascending.
    std::vector<XVUInt64> GetChaves() const;
    // Keys below this one that have a member, the highest first, uiMaximo of them at the most.
    std::vector<XVUInt64> GetChavesAbaixoDe(XVUInt64 uiChaveNomeArquivo, std::size_t uiMaximo) const;
    // The end of the write that a member was made for. If it did not take place, the member is forgotten: a
    // group knows only members that have a file.
    virtual void DevolveNoMembroNovo(CXVGravacaoPreparada& rGravacao) noexcept = 0;

    // A new member object for a file name; the caller owns it.
    virtual std::unique_ptr<IXVFileBase> NewFile(const std::string& sNomeArquivo, CXVDataBase* pDataBase) = 0;

  protected:
    HRESULT OnInicializa() override;
    HRESULT OnFinaliza() override;

    // The member of a key; without one: null, and an error when bObrigatorio.
    HRESULT LookupMapFiles(XVUInt64 uiChaveNomeArquivo, IXVFileBase*& pXVFileInterface,
                           bool bObrigatorio = true);
    // Records of one member, already found.
    virtual XVUInt64 ContaRegistros(const IXVFileBase& rMembro) const = 0;

    // Drops every member object.
    virtual void EsqueceMembros() { m_mapFiles.clear(); }

    void AdiaInicializacaoMembros() { m_bAdiaInicializacao = true; }
    std::unique_ptr<IXVFileBase> CriaMembro(XVUInt64 uiChaveNomeArquivo);
    CXVTravaLeitores& GetLock() const { return m_Lock; }
    CXVDataBase* GetDataBase() const { return m_pDataBase; }
    std::map<XVUInt64, std::unique_ptr<IXVFileBase>>& GetMapa() { return m_mapFiles; }
    const std::map<XVUInt64, std::unique_ptr<IXVFileBase>>& GetMapa() const { return m_mapFiles; }

  private:
    HRESULT ProcuraMembros();
    HRESULT ProcuraMembroNovo(XVUInt64 uiChaveNomeArquivo, IXVFileBase*& pXVFileInterface);

    std::string m_sNomeArquivo;
    EModulo m_eModulo;
    mutable CXVTravaLeitores m_Lock;
    std::map<XVUInt64, std::unique_ptr<IXVFileBase>> m_mapFiles;
    bool m_bAdiaInicializacao = false;
    bool m_bControleDesabilitado = false;
    CXVDataBase* m_pDataBase;
};
