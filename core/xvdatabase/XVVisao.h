// Viewing: a data directory as it was at one moment, while another process may be writing to it, or has died
// doing so. Nothing is written, and no file is denied to anyone or held open longer than one reading takes.
//
// A moment lies between two operations of the writer. The journal tells which one: a reading during which the
// session and the number of the operation stayed the same saw one moment. While an operation is being written
// to its files the journal's entry says what stood there before, and that is shown. Where the writer has died
// the entries are shown concluded, as the next opening for writing will conclude them. Without a journal
// nobody has the store open; one that came and went during the reading shows in reading twice. Files
// that the journal does not explain are shown as they are.
//
// A file ends where its header says, whatever lies behind, unless the view is made to examine the files.
//
// Thread rule: any thread; a moment belongs to the thread that reads in it.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

#include "core/xvdatabase/XVMomento.h"
#include "core/xvdatabase/XVReconstrucao.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVCapturaTrace.h"

class CXVVisao {
  public:
    // Where a file ends for who looks: where its header says, or where the system says, for who examines
    // files that may be damaged.
    enum class EFimArquivo : bool { eDoCabecalho, eDoSistema };

    explicit CXVVisao(std::string sDiretorio, EFimArquivo eFim = EFimArquivo::eDoCabecalho)
        : m_sDiretorio(std::move(sDiretorio)), m_eFim(eFim) {}
    CXVVisao(const CXVVisao&) = delete;
    CXVVisao& operator=(const CXVVisao&) = delete;

    // Read-only databases that this thread initialises while one of these lives look through the view.
    class CUso {
      public:
        explicit CUso(CXVVisao* pVisao);
        ~CUso();
        CUso(const CUso&) = delete;
        CUso& operator=(const CUso&) = delete;

      private:
        CXVVisao* m_pAnterior;
    };
    static CXVVisao* GetAtual();

    // Runs leitura until all that it read through the view is of one moment; its code then. What attempts in
    // vain reported is dropped. eSharingViolation: no two readings in succession agreed for seconds.
    template <class TLeitura>
    HRESULT DeUmMomento(TLeitura leitura) {
        CXVMomento momento(*this, ++m_uiChamadas);
        for (int i = 0; i < k_iTentativas; ++i) {
            if (momento.Inicia().Ok()) {
                bool bRelatou = true;
                HRESULT hr = S_OK;
                {
                    const CXVCapturaTrace captura;
                    const CXVMomento::CAtivo ativo(&momento);
                    hr = leitura();
                    bRelatou = !captura.GetFalhas().empty();
                }
                if (momento.Confirma()) {
                    if (SUCCEEDED(hr) || !bRelatou) return hr;
                    const CXVMomento::CAtivo ativo(&momento);
                    hr = leitura();  // of the same moment: it says in the log what is wrong
                    if (momento.Confirma()) return hr;
                }
            }
            Pausa(i);
        }
        return eSharingViolation;
    }

    // The same for a reading of bytes, leitura(CXVMomento&): in the moment of this thread, where it has one.
    template <class TLeitura>
    CXVErroArquivo NoMomento(TLeitura leitura) {
        CXVMomento* pAtual = CXVMomento::GetAtual();
        if (pAtual != nullptr && &pAtual->GetVisao() == this) return leitura(*pAtual);
        CXVMomento momento(*this, 0);
        return NoMomento(momento, leitura);
    }
    template <class TLeitura>
    CXVErroArquivo NoMomento(CXVMomento& rMomento, TLeitura leitura) {
        CXVErroArquivo erro;
        for (int i = 0; i < k_iTentativas; ++i) {
            erro = rMomento.Inicia();
            if (erro.Ok()) {
                erro = leitura(rMomento);
                if (rMomento.Confirma()) return erro;
            }
            Pausa(i);
        }
        return erro.Ok() ? CXVErroArquivo(ECausaArquivo::eViolacaoCompartilhamento, 0) : erro;
    }

    // Runs leitura once, each of its readings of a moment of its own. S_FALSE for its success: somebody has
    // written meanwhile, or may have.
    template <class TLeitura>
    HRESULT SemEscritas(TLeitura leitura) {
        CXVMomento antes(*this, 0);
        const bool bAntes = antes.Inicia().Ok();
        const HRESULT hr = leitura();
        const bool bIgual = bAntes && antes.GetMarca().uiSessao != 0 && antes.Confirma();
        return FAILED(hr) ? hr : bIgual ? S_OK : S_FALSE;
    }

    // Whether somebody has the directory open for writing.
    bool TemEscritor() { return CXVMomento(*this, 0).EscritorVive(); }
    const std::string& GetDiretorio() const { return m_sDiretorio; }
    EFimArquivo GetFim() const { return m_eFim; }

  private:
    friend class CXVMomento;

    static constexpr int k_iTentativas = 4000;
    static void Pausa(int iTentativa);

    using CSobreposta = std::shared_ptr<const CXVReconstrucao>;
    // What the journal of a writer that has died makes of the files; what they were before the operation
    // that a living one has in flight. Null: nothing is to be laid over them. Kept until the journal changes.
    CSobreposta Concluida(IXVArquivo& rDiario, const SMarcaDiario& rMarca);
    CSobreposta Anterior(IXVArquivo& rDiario, const SMarcaDiario& rMarca);
    // Whether the operation in flight was waited for before, in vain.
    bool FoiEsperada(const SMarcaDiario& rMarca);
    template <class TLeitura>
    CSobreposta Guarda(IXVArquivo& rDiario, const SMarcaDiario& rMarca, bool bConcluida, TLeitura leitura);

    std::string m_sDiretorio;
    EFimArquivo m_eFim;
    std::atomic<XVUInt64> m_uiChamadas = 0;
    std::mutex m_Mutex;
    SMarcaDiario m_marcaGuardada;  // the state of the journal that m_pGuardada is made of
    bool m_bGuardadaConcluida = false;
    CSobreposta m_pGuardada;
};
