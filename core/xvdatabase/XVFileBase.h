// Base of every database file: the operating-system file, its three open modes with their retries, and
// the 240-byte header that identifies the file, says who changed it last and protects itself with a CRC.
//
// The base's operations take no lock; derived files hold their reader/writer lock around them. Between
// processes exclusion rests on the open modes: writers deny writing to others, readers without locking
// deny nothing.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <vector>

#include "core/xvdatabase/IXVFileBase.h"
#include "core/xvdatabase/XVCabecalho.h"
#include "core/xvdatabase/XVDataBaseControleCriacaoArquivos.h"
#include "core/xvdatabase/XVModoAbertura.h"
#include "core/xvdatabase/XVMomento.h"
#include "core/xvdatabase/XVOperacao.h"
#include "platform/XVSistemaArquivos.h"
#include "platform/XVTentativas.h"
#include "platform/XVTravaLeitores.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVArquivoRecusado.h"

class CXVArquivoVisto;
class CXVDataBase;

// Whether a file enters the container's map; members of groups do not.
enum class ERegistroArquivo : std::uint8_t { eNoContainer, eAvulso };

class CXVFileBase : public IXVFileBase {
  public:
    XV_CLASSE("CXVFileBase", "XVFileBase")

    // pDataBase must outlive the file.
    CXVFileBase(std::string sNomeArquivo, CXVDataBase* pDataBase,
                ERegistroArquivo eRegistro = ERegistroArquivo::eNoContainer);
    ~CXVFileBase() override;

    const std::string& GetNomeArquivo() const override { return m_sNomeArquivo; }
    EModulo GetModulo() const override { return m_eModulo; }
    XVUInt64 GetTamanho() const override { return m_uiTamanhoArquivo; }

    // Opens or reopens the file. When it is absent and the mode does not create it, the result is S_OK and
    // the file stays closed. When its header does not pass validation, the code says why; the file is open
    // then, and nothing rewrites that header.
    HRESULT AbreArquivo(XVUInt eModoAbertura = eModoLeituraGravacao);
    void FechaArquivo();
    // The same beside readers.
    void AbandonaArquivo();
    // Whether the file is open; does not look at the disk.
    bool ExisteArquivo() const { return m_pArquivo != nullptr; }

    HRESULT DeletaArquivo() override;
    void DesabilitaControleCriacaoArquivos() override {
        m_ControleCriacaoArquivos.DesabilitaControleCriacaoArquivos();
    }

    // Rewrites the header's information block when the file is open for writing and has one.
    HRESULT AtualizaArquivo();
    // Adds that rewriting to an operation.
    HRESULT PreparaCabecalho(CXVOperacao& rOperacao);
    // Stamps the header's file version; nothing is written when it stands there already.
    HRESULT GravaVersaoArquivo(XVUShort usVersaoArquivo);
    // The file version in the header of the open file; 0 where there is no header or headers are off. Only
    // after ConfereCabecalho has succeeded.
    XVUShort GetVersaoArquivo();

    // Where the payload begins: 240 or 0.
    XVUInt64 GetSeekCabecalho();
    bool PossuiCabecalho();
    // Validates the header of an open file in any mode, without changing the file; a file without header is
    // accepted unless its header is there and damaged. With headers off on the machine: S_OK.
    HRESULT ConfereCabecalho();

    // A machine-wide switch that takes headers out of use. While it is on, nothing is concluded from what a
    // header says, and none is added or updated. It must still be known where the payload begins, which is
    // behind the header in a file that has one. A file with the remains of one is refused, for there nobody
    // can tell.
    static bool CabecalhoDesabilitadoNaMaquina();
    // Whether this file has, or would get, a header.
    bool GerenciarCabecalho() const;
    // The header that the file would have after a write that leaves uiTamanhoDados bytes of payload: the next
    // state of the header that it has, or else a new one. Only after ConfereCabecalho has succeeded, because
    // the next state of a damaged header would vouch for the damage.
    void ProximoCabecalho(REG_XVCABECALHO* pReg, XVUInt64 uiTamanhoDados);

    // Carry a prepared write out and take it back; for CXVOperacao. EscreveGravacao tries up to 50 times
    // 10 ms apart and records each failure. DesfazGravacao gives the file its length, its bytes and its
    // header back, or deletes a file that the write made; it may be called again after a failure.
    HRESULT EscreveGravacao(const CXVGravacaoPreparada& rGravacao);
    CXVErroArquivo DesfazGravacao(const SGravacao& rGravacao);
    // Whether writes are prepared that are not over. The file must stay open until they are.
    bool TemPreparadas() const { return GetPreparadas() != 0; }
    XVUInt GetPreparadas() const { return m_ulPreparadas.load(std::memory_order_acquire); }
    // Returns after what was written has reached the device.
    CXVErroArquivo Sincroniza() {
        return m_pArquivo == nullptr ? CXVErroArquivo() : m_pArquivo->Sincroniza();
    }
    // The journal's own note at the file: whether it counts the file among those that were written to since
    // it last flushed all of them.
    bool EstaMarcadoNoDiario() const { return m_bMarcadoNoDiario; }
    void SetMarcadoNoDiario(bool bMarcado) { m_bMarcadoNoDiario = bMarcado; }

    // Codes after which the file must not be tried again.
    static bool EhUmaExcecaoFatal(HRESULT hr);

  protected:
    HRESULT OnInicializa() override;
    HRESULT OnFinaliza() override;

    // Where the payload of the open file lies. A header that cannot be read, is cut off or is of a later
    // version is its code: it must never be taken for records.
    HRESULT GetAreaDados(XVUInt64* puiSeek, XVUInt64* puiTamanho);

    // Whether the open file, of uiTamanho bytes and without a header, holds sound content of its kind from
    // its first byte on; only then it gets a header. Only reads. The base knows no kind: any content will do.
    virtual CXVErroArquivo ConfereConteudo(XVUInt64 /*uiTamanho*/, bool* pbIntegro) {
        *pbIntegro = true;
        return {};
    }

    // Record the cause of a failed file operation under its name and yield its code.
    HRESULT CatchGravacao(const CXVErroArquivo* pEx) const;
    HRESULT CatchInicializacao(const CXVErroArquivo* pEx) const;

    // Where hr is a failure: notes this file as the one that was refused. Returns hr unchanged.
    HRESULT Recusa(HRESULT hr) const noexcept { return XVArquivoRecusado::Anota(hr, m_sPathArquivo, this); }

    // Writes the line of the error log that shows a failed read by position with what was asked and what the
    // file holds.
    void RegistraFalhaLeitura(HRESULT hr, XVUInt uiPosicao, std::size_t uiTamanhoRegistro,
                              XVUInt64 uiQtdRegistros) const;

    // eXVReadOnly for a write on a file that is open read-only without locking.
    HRESULT ValidaGravacao();

    // Reads at an offset of the file (header included).
    CXVErroArquivo LeDados(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) const;

    // Reads the same bytes. A viewer beside a busy writer could wait long for one moment that is still there
    // at the end of a long reading, so it reads in pieces of whole units of uiUnidade bytes, each piece of
    // one moment.
    CXVErroArquivo LeDadosEmPedacos(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho,
                                    std::size_t uiUnidade);
    bool EhAvulso() const { return m_eRegistro == ERegistroArquivo::eAvulso; }
    // What a viewer remembers of the moment, and of the call, in which it loaded what it has in memory.
    struct SVistaCarregada {
        SMarcaDiario marca;
        SAreaVista area;
        XVUInt64 uiChamada = 0;

        // Whether nobody has written in between.
        bool EhIgual(const SVistaCarregada& rOutra) const;
    };
    CXVErroArquivo LeVistaAtual(SVistaCarregada* pVista) const;

    // Adds a write to an operation: aNovos goes to uiOffsetDados of the payload, over aAntigos, which stands
    // there. Fills in the place in the file and the header that follows, both as all writes that are prepared
    // already will leave them. E_OUTOFMEMORY: the operation takes no further write. Every success must be
    // followed by rGravacao.Devolve.
    HRESULT PreparaGravacao(CXVOperacao& rOperacao, CXVGravacaoPreparada& rGravacao, XVUInt64 uiOffsetDados,
                            std::span<const std::byte> aNovos, std::span<const std::byte> aAntigos);
    // The end of a prepared write.
    void DevolveGravacao(CXVGravacaoPreparada& rGravacao) {
        rGravacao.m_bEmUso = false;
        m_ulPreparadas.fetch_sub(1, std::memory_order_release);
    }
    // An object of rLista in which no write is prepared; made for rFile when every one is taken. The objects
    // are used again and again, for the memory that they hold.
    template <class TPreparada, class TFile>
    static TPreparada& PreparadaLivre(std::vector<std::unique_ptr<TPreparada>>& rLista, TFile& rFile) {
        for (const auto& p : rLista)
            if (!p->m_bEmUso) return *p;
        rLista.push_back(std::make_unique<TPreparada>(rFile));
        return *rLista.back();
    }
    // Bytes of payload after all prepared writes.
    XVUInt64 GetTamanhoDadosPrevisto();
    // Whether the directory holds no file of this name, or none any more.
    bool EstaAusente() const;
    // Serialises writers of this file that belong to no operation of a store.
    std::mutex& GetMutexGravacao() { return m_mutexGravacao; }

    // Closes and deletes the file that a failed opening created.
    void DesfazCriacao();

    // Opens for writing, creating the file, and loads what is found there; a file that could not be loaded
    // does not stay open.
    template <class TCarga>
    HRESULT AbreECarrega(TCarga carga) {
        try {
            HRESULT hr = XV_REGISTRA(AbreArquivo(EXVDataBase_ModoAbertura::eModoLeituraGravacaoCriacao));
            if (SUCCEEDED(hr)) hr = Recusa(carga());
            if (FAILED(hr)) FechaArquivo();
            return hr;
        } catch (...) {
            FechaArquivo();
            throw;
        }
    }

    // Runs tentativa until it succeeds, fails fatally, or has failed 50 times 10 ms apart; every failure is
    // recorded at rPonto.
    template <class TTentativa>
    HRESULT ExecutaComTentativas(const SPontoFalha& rPonto, TTentativa tentativa) {
        const auto tentaERegistra = [&] {
            const HRESULT hrTentativa = tentativa();
            if (FAILED(hrTentativa)) XVIgnora(XVRegistraFalha(hrTentativa, rPonto, this));
            return hrTentativa;
        };
        const HRESULT hr = XVTenta(k_iTentativasCurtas, tentaERegistra,
                                   [](HRESULT hrT) { return FAILED(hrT) && !EhUmaExcecaoFatal(hrT); });
        if (SUCCEEDED(hr)) return hr;
        // A key that an index does not accept refuses the write, not the file.
        const bool bChave =
            hr == E_XVCR_INDEXACAO_COM_POSICAO_ZERO || hr == E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA;
        return bChave ? hr : Recusa(hr);
    }

    CXVDataBase* GetDataBase() const { return m_pDataBase; }
    // The file's reader/writer lock.
    CXVTravaLeitores& GetLock() const { return m_Lock; }

  private:
    bool EstaAbertoParaGravacao() const;
    HRESULT TentaAbrir(const std::string& sPath, const std::function<CXVErroArquivo()>& abre);
    HRESULT AbreVisto(CXVVisao& rVisao);
    HRESULT AbreComTentativas(const std::string& sPath, XVUInt eModoAbertura,
                              std::unique_ptr<IXVArquivo>& pArquivo);
    HRESULT TentaGravacao(const CXVGravacaoPreparada& rGravacao);
    HRESULT CriaArquivo(const SGravacao& rGravacao);
    CXVErroArquivo DesfazArquivoCriado();
    void IniciaPrevisao();
    CXVGravacaoPreparada& CabecalhoPreparado();
    class CXVCabecalhoPreparado;
    HRESULT MontaPath();
    HRESULT LeTamanho();

    HRESULT ProcuraCabecalho();
    HRESULT GerenciaCabecalho();
    HRESULT CriaCabecalho();
    HRESULT CriaCabecalhoPorCopia();
    HRESULT GravaCabecalhoNovo();
    void GeraDadosCabecalho();
    HRESULT ValidaCabecalho();
    HRESULT ValidaCabecalhoV01();
    HRESULT ValidaAusenciaCabecalho();
    HRESULT ValidaConteudoSemCabecalho();
    HRESULT AtualizaCabecalho(const REG_XVCABECALHO_B& regB);
    void AbreJanelaCabecalho();
    void FechaJanelaCabecalho();
    void LimpaCabecalho();

    CXVDataBase* m_pDataBase;
    std::unique_ptr<IXVArquivo> m_pArquivo;
    std::unique_ptr<IXVJanela> m_pJanelaCabecalho;  // on the header, while it is written often
    XVUInt m_ulCabecalhosPreparados = 0;            // since the window was closed
    CXVArquivoVisto* m_pVisto = nullptr;
    XVUInt m_eModoAbertura = eModoFechado;
    std::string m_sNomeArquivo;
    EModulo m_eModulo;
    ERegistroArquivo m_eRegistro;
    CXVDataBaseControleCriacaoArquivos m_ControleCriacaoArquivos;
    std::string m_sPathArquivo;
    // Kept by every transfer: nobody else writes while the file is open for writing. Atomic for GetTamanho.
    std::atomic<XVUInt64> m_uiTamanhoArquivo = 0;

    bool m_bCabecalhoProcurado = false;
    bool m_bCabecalhoPresente = false;
    bool m_bCabecalhoValidado = false;  // validated or created in this opening: may be rewritten
    bool m_bCriandoCabecalho = false;
    bool m_bAlterado = false;  // written to in this opening
    bool m_bMarcadoNoDiario = false;
    bool m_bCriado = false;  // the write in progress has made the file
    REG_XVCABECALHO m_regCabecalho{};

    // What the file will be after the writes that are prepared; valid while there are any.
    std::atomic<XVUInt> m_ulPreparadas = 0;
    XVUInt64 m_uiTamanhoPrevisto = 0;
    REG_XVCABECALHO_B m_regPrevisto{};
    std::unique_ptr<CXVGravacaoPreparada> m_pCabecalhoPreparado;

    std::mutex m_mutexGravacao;
    mutable CXVTravaLeitores m_Lock;
};
