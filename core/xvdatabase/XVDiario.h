// The operation journal of a data directory that is open for writing: it marks the directory as open, and
// makes every operation whole or absent over all files that it touches.
//
// An operation is written to the journal whole, then to its files, then to memory. Killed anywhere, the next
// opening finds the entry complete and concludes it, or not complete and nothing begun. A failing
// operation is undone; the entry says so first. With Durabilidade 1 the entry has reached the device before
// the first file is touched: one flush for one operation, and one for all that wait for it at the same time;
// the files are flushed before the place of their entries is used again. Closing flushes the files and
// deletes the journal. docs/durability.md says why this is enough.
//
// The file is held for reading and writing, and denied to other writers, as long as the object is open;
// viewers may read it. Thread rule: any thread, but Abre and Fecha, which are called by one thread at a time.
// The journal's own lock is taken after a group's or a file's and never the other way round.
#pragma once

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "core/xvdatabase/XVDiarioAnel.h"
#include "core/xvdatabase/XVNomesControlados.h"
#include "support/XVAmbiente.h"
#include "support/trace/XVCheck.h"

class CXVFileBase;

class CXVDiario {
  public:
    XV_CLASSE("CXVDiario", "XVDiario")

    CXVDiario() = default;
    ~CXVDiario();
    CXVDiario(const CXVDiario&) = delete;
    CXVDiario& operator=(const CXVDiario&) = delete;

    // The open journal of a directory in this process, or null.
    static CXVDiario* Busca(const std::string& sDiretorio);
    // One text for all spellings of a directory that the file system takes for the same.
    static std::string ChaveDoDiretorio(const std::string& sDiretorio);

    // Marks the directory and concludes or undoes what an earlier process left there. Held by another process
    // through 500 attempts 10 ms apart: eSharingViolation. A disk without a free byte is no
    // failure: the first operation then is one. A journal that does not fit the files:
    // E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS, nothing changed.
    HRESULT Abre(const IXVDF_Profiler* pDono, EModulo eModulo, const std::string& sDiretorio);
    // After all files are closed. Where something could not be finished the journal stays for the next
    // opening, and the code says why.
    HRESULT Fecha(const IXVDF_Profiler* pDono);

    // Takes back what is left of an operation whose undoing failed. The code of what still fails.
    HRESULT ConcluiPendente();
    // The same before the last write of a file that is about to close; what still fails then is left to the
    // next opening, and nothing more is written before it.
    void LargaPendente(const CXVFileBase& rFile);
    // Carries an operation out now. S_FALSE: it was not, there is no place for it before the queue is empty.
    HRESULT Executa(CXVOperacao& rOperacao);
    // The same for callers that prepare under one lock, which is released while the device works: others
    // prepare their operations meanwhile and share the flush. bloqueio is not held afterwards. *pbRefaz: an
    // operation before it failed and it was prepared in vain; to be prepared again.
    HRESULT Executa(CXVOperacao& rOperacao, std::unique_lock<std::mutex>& bloqueio, bool* pbRefaz);
    // Whether a call returns only when the device has its operation.
    bool EhDuravel() const { return m_bDuravel; }
    // Operations that are prepared and not yet carried out; those of one key (0: none).
    bool TemFila() const;
    bool TemNaFila(XVUInt64 uiChave) const;
    // Carries all of them out; bloqueio is held again afterwards.
    void EsvaziaFila(std::unique_lock<std::mutex>& bloqueio);

    // Around the replacement of a file by a copy that is written beside it: killed in between, the next
    // opening deletes the copy. What was written to files before reaches the device first.
    HRESULT IniciaCopia(const IXVDF_Profiler* pDono, const std::string& sNomeCopia, XVUInt64* puiNumero);
    // The copy has taken the file's place, or is gone. One that could not be deleted is tried again later, at
    // last by the next opening.
    void TerminaCopia(XVUInt64 uiNumero) noexcept;
    // Everything written so far reaches the device, and the journal forgets it: before a file is deleted.
    HRESULT PontoSeguro(const IXVDF_Profiler* pDono);

    // What the directory's creation control lists.
    CXVNomesControlados& GetNomesControlados() { return m_nomesControlados; }

    // A file that was opened again, and one that is about to close.
    void LembraArquivo(CXVFileBase& rFile);
    void EsqueceArquivo(CXVFileBase& rFile);

  private:
    struct SNaFila {
        CXVOperacao* pOperacao;
        XVUInt64 uiNumero = 0;
        HRESULT hr = S_OK;
        bool bRefaz = false;
        bool bTerminada = false;  // its caller may go on
        SNaFila* pProxima = nullptr;
    };

    HRESULT AbreArquivo(const IXVDF_Profiler* pDono);
    HRESULT Reconstroi(const IXVDF_Profiler* pDono);
    HRESULT GarantePronto();
    void LeDurabilidade(const IXVDF_Profiler* pDono, EModulo eModulo);
    HRESULT Codigo(const CXVErroArquivo& rErro, const char* pszExpressao) const;

    HRESULT Enfileira(SNaFila& rNaFila);

    // The lock is held.
    HRESULT RegistraEntrada(CXVOperacao& rOperacao, XVUInt64* puiNumero);
    // bDaFila: the operations that still wait were prepared on top of this one.
    HRESULT Conclui(CXVOperacao& rOperacao, XVUInt64 uiNumero, bool bDaFila);
    void Desfaz(CXVOperacao& rOperacao, XVUInt64 uiNumero);
    CXVErroArquivo TentaDesfazer(CXVOperacao& rOperacao, XVUInt64 uiNumero);
    HRESULT ResolvePendente(CXVOperacao& rResolvida);
    void AnulaFila();
    CXVErroArquivo MarcaAnuladas();
    void DevolveAnuladas();
    void Devolve(SNaFila& rNaFila);
    void AbandonaPendente(const CXVFileBase& rFile, CXVOperacao& rAbandonada);
    CXVErroArquivo ApagaCopias();
    CXVErroArquivo SincronizaAlterados();
    CXVErroArquivo DispensaSeguras();
    CXVErroArquivo DispensaAte(XVUInt64 uiAte);
    CXVErroArquivo RegravaCopias();
    bool SubstituiCopia() const;
    XVUInt64 PrimeiraDeCopia() const;
    void MontaEntrada(CXVOperacao& rOperacao);
    XVUInt64 GetUltimaAplicada() const;
    void MarcaAlterado(CXVFileBase& rFile);
    void Desregistra();

    // The turn to flush; false: pNaFila (or null) was over before it came. Whoever has it passes it on.
    bool EsperaVez(const SNaFila* pNaFila);
    void PassaVez() noexcept;
    struct SPassaVez {
        void operator()(CXVDiario* pDiario) const noexcept { pDiario->PassaVez(); }
    };
    using CVez = std::unique_ptr<CXVDiario, SPassaVez>;
    void DescarregaFila(std::unique_lock<std::mutex>& bloqueio);
    void ConcluiFila(std::size_t uiQuantidade, const CXVErroArquivo& rErroDescarga);

    mutable std::mutex m_Mutex;  // the ring, the files of an operation while they are written, the queue
    std::mutex m_mutexVez;       // of the turn and of what is over; no other lock is taken under it
    std::condition_variable m_avisaVez;
    bool m_bDescarregando = false;
    std::vector<SNaFila*> m_fila;      // oldest first
    SNaFila* m_pAnuladas = nullptr;    // given up, not yet given back to their files
    SNaFila* m_pTerminadas = nullptr;  // by whoever has the turn; their callers go on when it is passed on

    std::string m_sDiretorio;
    std::string m_sChave;
    std::string m_sPath;
    std::unique_ptr<IXVArquivo> m_pArquivo;
    CXVDiarioAnel m_anel;
    CXVNomesControlados m_nomesControlados;
    bool m_bAberto = false;
    bool m_bDuravel = false;
    XVUInt64 m_uiSegura = 0;      // up to this entry everything is in the files on the device
    XVUInt64 m_uiDispensada = 0;  // up to this entry the device knows that none is needed

    // Written to since the last flush of all: by name; null when no object has the file open.
    std::map<std::string, CXVFileBase*> m_mapAlterados;

    // Copies that are being made, and those that are still there though nobody wants them, by the number of
    // their first entry.
    struct SCopia {
        std::string sNome;
        std::string sPath;
        XVUInt64 uiEntrada;  // the one that stands for it now
        bool bEmCurso = true;
    };
    std::map<XVUInt64, SCopia> m_mapCopias;

    // An operation whose undoing failed; the next one tries again first.
    CXVOperacao m_pendente{nullptr};
    XVUInt64 m_uiPendente = 0;
    // Entries of operations that were given up, oldest first, of which the device may not know that they are
    // void. They are newer than m_uiPendente. Nothing is recorded before it knows.
    std::vector<XVUInt64> m_listaAnular;
};

// Holds IniciaCopia for a scope. Without a journal it does nothing.
class CXVCopiaProtegida {
  public:
    explicit CXVCopiaProtegida(CXVDiario* pDiario) : m_pDiario(pDiario) {}
    ~CXVCopiaProtegida() {
        if (m_uiNumero != 0) m_pDiario->TerminaCopia(m_uiNumero);
    }
    CXVCopiaProtegida(const CXVCopiaProtegida&) = delete;
    CXVCopiaProtegida& operator=(const CXVCopiaProtegida&) = delete;
    HRESULT Inicia(const IXVDF_Profiler* pDono, const std::string& sNomeCopia) {
        return m_pDiario == nullptr ? S_OK : m_pDiario->IniciaCopia(pDono, sNomeCopia, &m_uiNumero);
    }

  private:
    CXVDiario* m_pDiario;
    XVUInt64 m_uiNumero = 0;
};
