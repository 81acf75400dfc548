// The container of one module's database files. Files register themselves at construction and are
// initialised and finalised by the container in byte order of their names.
//
// Thread rule: AddFile, RemoveFile, Inicializa and Finaliza are called by one thread at a time; the
// switches are set before Inicializa.
#pragma once

#include <atomic>
#include <map>
#include <string>

#include "core/xvdatabase/IXVFileBase.h"
#include "core/xvdatabase/XVMemoriaMembros.h"
#include "suite/XVBaseParaRotinas.h"

class CXVDiario;
class CXVVisao;

class CXVDataBase : public CXVBaseParaRotinas {
  public:
    XV_CLASSE("CXVDataBase", "XVDataBase")

    explicit CXVDataBase(EModulo eModulo) : m_eModulo(eModulo) {}

    // The file is not owned and must be removed before it goes.
    void AddFile(IXVFileBase* pFile);
    void RemoveFile(IXVFileBase* pFile);

    EModulo GetModulo() const { return m_eModulo; }

    // Files added from now on are not listed in the control file.
    void DesabilitaControleCriacaoArquivos() { m_bControleDesabilitado = true; }
    // Files hand out their in-memory collections (GetPtrRegistros).
    void HabilitaAcessoDireto() { m_bAcessoDireto = true; }
    bool PermiteAcessoDireto() const { return m_bAcessoDireto; }
    // Every file opens read-only without locking, whatever mode is asked for; writes are refused.
    void SetSomenteLeituraSemBloqueio(bool bSomenteLeitura) { m_bSomenteLeitura = bSomenteLeitura; }
    bool EhSomenteLeituraSemBloqueio() const { return m_bSomenteLeitura; }
    // Headers are neither created, validated nor updated.
    void DesabilitaCabecalho() { m_bCabecalhoDesabilitado = true; }
    bool EhCabecalhoDesabilitado() const { return m_bCabecalhoDesabilitado; }

    // The journal through which the files are written, when this process has the data directory open for
    // writing; otherwise null, and the files are written directly. Known after Inicializa.
    CXVDiario* GetDiario() const { return m_pDiario; }

    // The view through which a database that only looks on reads its files; null when it reads them directly
    // or writes. Known after Inicializa.
    CXVVisao* GetVisao() const { return m_pVisao; }

    // What the members of this database's groups may take.
    CXVMemoriaMembros& GetMemoriaMembros() { return m_memoriaMembros; }

    // Enclose the moment in which the memory of several files passes from the state before an operation to
    // the state after it.
    void IniciaPublicacao() { m_uiIniciadas.fetch_add(1, std::memory_order_acq_rel); }
    void TerminaPublicacao() { m_uiTerminadas.fetch_add(1, std::memory_order_release); }
    // A reader notes the number of ended publications, which has to equal that of begun ones, and reads. When
    // the number of begun ones is still the same afterwards, it saw one moment.
    XVUInt64 GetPublicacoesTerminadas() const { return m_uiTerminadas.load(std::memory_order_acquire); }
    XVUInt64 GetPublicacoesIniciadas() const {
        std::atomic_thread_fence(std::memory_order_acquire);
        return m_uiIniciadas.load(std::memory_order_relaxed);
    }

  protected:
    HRESULT OnInicializa() override;
    HRESULT OnFinaliza() override;

  private:
    std::map<std::string, IXVFileBase*> m_mapFiles;
    EModulo m_eModulo;
    bool m_bControleDesabilitado = false;
    bool m_bAcessoDireto = false;
    bool m_bSomenteLeitura = false;
    bool m_bCabecalhoDesabilitado = false;
    CXVDiario* m_pDiario = nullptr;
    CXVVisao* m_pVisao = nullptr;
    CXVMemoriaMembros m_memoriaMembros;
    std::atomic<XVUInt64> m_uiIniciadas = 0;
    std::atomic<XVUInt64> m_uiTerminadas = 0;
};
