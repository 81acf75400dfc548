// Binds a schema to a logic object: converts older databases, opens the schema's files, and shares one
// open store among all logic objects of the same company in the process. The last one to go closes it.
//
// Thread rule: Inicializa and Finaliza of one object are not called concurrently; of different objects
// they may be. Operations that change the store go through ExecutaOperacao; reads run
// beside them.
#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "core/xvdatabase/XVDataBase.h"
#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVDiario.h"
#include "core/xvdatabase/XVMarcas.h"
#include "core/xvdatabase/XVOperacao.h"
#include "core/xvdatabase/XVVisao.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigos.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/trace/XVArquivoRecusado.h"
#include "support/trace/XVProfiler.h"

template <class TDataBase, class TBase>
class CXVDataBaseFacade : public TBase {
  public:
    XV_CLASSE("CXVDataBaseFacade", "XVDataBaseFacade")

    // Opens the store for viewing; to be called before Inicializa. Every write is refused, and nothing is
    // written, converted or created on disk, the error log of the company's directory included. Another
    // process may have the store open for writing, or may have died while it had: a call sees only whole
    // operations, and all that were over when it began.
    void SetSomenteLeitura(bool bSomenteLeitura) { m_bSomenteLeitura = bSomenteLeitura; }
    bool EhSomenteLeitura() const { return m_bSomenteLeitura; }
    bool EhConsulta() const override { return m_bSomenteLeitura; }

  protected:
    // Runs before the schema is opened by the first object of a company.
    virtual HRESULT ExecutaConversao() = 0;
    // Refuses a store of a later version; changes nothing.
    virtual HRESULT RecusaVersaoPosterior() = 0;
    // Read-only viewing: whether the files can be read as they are.
    virtual HRESULT ValidaVersaoSomenteLeitura() = 0;

    HRESULT XVDataBaseInicializa() {
        std::string sDiretorio;
        XV_CHECK(CXVDataBaseUtil::GetPathDados(XV_DF, this->GetEmpresa(), &sDiretorio));
        if (m_bSomenteLeitura) {
            m_pLoja = std::make_shared<SLoja>();
            m_pLoja->pVisao = std::make_unique<CXVVisao>(sDiretorio);
            const CXVVisao::CUso uso(m_pLoja->pVisao.get());
            XV_CHECK(ValidaVersaoSomenteLeitura());
            m_pLoja->dataBase.SetSomenteLeituraSemBloqueio(true);
            XV_CHECK(m_pLoja->dataBase.Inicializa(this));
            m_pDataBase = &m_pLoja->dataBase;
            return S_OK;
        }
        XV_CHECK(CriaDiretorio(sDiretorio));
        m_pLoja = CLojasAbertas::Instancia().Busca(CXVDiario::ChaveDoDiretorio(sDiretorio));
        const SChegada chegada{m_pLoja->uiFalhas.load(), XVPlataforma::Relogio().GetTicks()};
        const std::lock_guard lock(m_pLoja->mutexAbertura);
        if (m_pLoja->uiObjetos == 0) XV_CHECK(AbreComoPrimeiro(sDiretorio, chegada));
        ++m_pLoja->uiObjetos;
        m_pDataBase = &m_pLoja->dataBase;
        return S_OK;
    }

    // Leaves the store; the last object closes it. Nothing to leave: S_OK.
    HRESULT XVDataBaseFinaliza() {
        const std::shared_ptr<SLoja> pLoja = std::move(m_pLoja);
        if (m_pDataBase == nullptr) return S_OK;
        m_pDataBase = nullptr;
        const std::lock_guard lock(pLoja->mutexAbertura);
        if (pLoja->uiObjetos > 1) {
            --pLoja->uiObjetos;
            return S_OK;
        }
        pLoja->uiObjetos = 0;
        const HRESULT hr = XV_REGISTRA(pLoja->dataBase.Finaliza());
        const HRESULT hrDiario = XV_REGISTRA(pLoja->diario.Fecha(this));
        return XVPrimeiraFalha(hr, hrDiario);
    }

    // When an object came to open a store: failed openings so far, and ticks.
    struct SChegada {
        XVUInt64 uiFalhas;
        XVUInt ulTicks;
    };

    static constexpr XVUInt k_ulAberturaDemorada = 500;  // milliseconds

    // An opening may take seconds to find out that another process does not give the store up. Who waited
    // here for at least half of one that failed so has seen as much as by an own one: they all fail side by
    // side, and not one after the other. What fails sooner is tried by each, for the cause may have gone.
    HRESULT AbreComoPrimeiro(const std::string& sDiretorio, const SChegada& rChegada) {
        SAberturaFalha& rFalha = m_pLoja->falha;
        const XVUInt ulInicio = XVPlataforma::Relogio().GetTicks();
        if (m_pLoja->uiFalhas.load() != rChegada.uiFalhas && rFalha.ulDuracao >= k_ulAberturaDemorada &&
            rFalha.ulFim - rChegada.ulTicks >= rFalha.ulDuracao / 2) {
            CXVArquivosRecusados* pRecusados = CXVArquivosRecusados::GetAtual();
            if (pRecusados != nullptr && !rFalha.sPath.empty()) pRecusados->Inclui(rFalha.hr, rFalha.sPath);
            return rFalha.hr;
        }
        const CXVArquivosRecusados recusados;
        const HRESULT hr = XV_REGISTRA(AbreLojaComDiario(sDiretorio));
        if (SUCCEEDED(hr)) return hr;
        const XVUInt ulFim = XVPlataforma::Relogio().GetTicks();
        rFalha = {hr, ulFim, ulFim - ulInicio, std::string(recusados.GetPath(hr))};
        ++m_pLoja->uiFalhas;
        return hr;
    }

    HRESULT AbreLojaComDiario(const std::string& sDiretorio) {
        XV_CHECK(RecusaVersaoPosterior());  // before the journal, which may conclude an operation
        XV_CHECK(m_pLoja->diario.Abre(this, m_pLoja->dataBase.GetModulo(), sDiretorio));
        XVMarcas::RetiraSemDono(m_pLoja->dataBase.GetModulo(), sDiretorio);
        const HRESULT hr = XV_REGISTRA(AbreLoja());
        if (FAILED(hr)) XVIgnora(m_pLoja->diario.Fecha(this));
        return hr;
    }

    HRESULT AbreLoja() {
        XV_CHECK(ExecutaConversaoInterno());
        XV_CHECK(m_pLoja->dataBase.Inicializa(this));
        return S_OK;
    }

    HRESULT ExecutaConversaoInterno() {
        XV_CHECK(ExecutaConversao());
        return S_OK;
    }

    // Whether an operation may be prepared while others wait for the device.
    enum class EFila : std::uint8_t {
        eComOutras,  // Of what the waiting ones change it can only depend on what its key names.
        eSozinha,    // It decides by things that any of the waiting ones may be changing.
    };

    // Carries out one operation that changes the store. prepara(CXVOperacao&) prepares its writes under the
    // lock of changes, and may give the operation a key. When prepara fails, its code is the result and
    // nothing has changed. When it answers S_FALSE, the operation turned out to need the store for itself: it
    // is prepared again once nobody waits. prepara may therefore run more than once, and each run starts from
    // nothing.
    template <class TPrepara>
    HRESULT ExecutaOperacao(EFila eFila, XVUInt64 uiChave, TPrepara prepara) {
        CXVDiario& rDiario = m_pLoja->diario;
        while (true) {
            std::unique_lock bloqueio(m_pLoja->mutexAlteracao);
            if (eFila == EFila::eSozinha ? rDiario.TemFila() : rDiario.TemNaFila(uiChave))
                rDiario.EsvaziaFila(bloqueio);
            CXVOperacao operacao(m_pDataBase);
            operacao.SetChave(uiChave);
            HRESULT hr = operacao.Inicia();
            if (SUCCEEDED(hr)) hr = prepara(operacao);
            if (FAILED(hr)) return hr;
            if (hr == S_OK && eFila == EFila::eSozinha) return operacao.Executa();
            bool bRefaz = hr == S_FALSE || operacao.RepeteCriacao();
            if (!bRefaz) hr = rDiario.Executa(operacao, bloqueio, &bRefaz);
            if (!bRefaz) return hr;
            eFila = EFila::eSozinha;
        }
    }
    bool TemFila() const { return m_pLoja->diario.TemFila(); }
    bool TemNaFila(XVUInt64 uiChave) const { return m_pLoja->diario.TemNaFila(uiChave); }

    // Runs leitura so that all that it reads is of one moment and not of the middle of an operation that is
    // just reaching memory; a viewer, which reads the disk, sees one moment of the disk. leitura may run more
    // than once, because an operation that ends beside it makes what it read worthless.
    template <class TLeitura>
    HRESULT LeDeUmMomento(TLeitura leitura) {
        if (m_pLoja->pVisao != nullptr) return m_pLoja->pVisao->DeUmMomento(leitura);
        constexpr int k_iTentativas = 8;
        for (int i = 0; i < k_iTentativas; ++i) {
            const XVUInt64 uiMomento = m_pDataBase->GetPublicacoesTerminadas();
            if (m_pDataBase->GetPublicacoesIniciadas() != uiMomento) {
                XVPlataforma::Relogio().Dorme(0);
                continue;
            }
            const HRESULT hr = leitura();
            if (m_pDataBase->GetPublicacoesIniciadas() == uiMomento) return hr;
        }
        const std::lock_guard bloqueio(m_pLoja->mutexAlteracao);  // writers wait this once
        return leitura();
    }
    // Whether somebody has the store open for writing; only a viewer asks, to others the answer is no.
    bool TemEscritor() const { return m_pLoja->pVisao != nullptr && m_pLoja->pVisao->TemEscritor(); }
    // Runs a reading that is too long to be of one moment. S_FALSE, which only a viewer gets: somebody may
    // have written meanwhile, so the caller has to confirm what it found, piece by piece.
    template <class TLeitura>
    HRESULT LeSemEscritas(TLeitura leitura) {
        if (m_pLoja->pVisao == nullptr) return leitura();
        return m_pLoja->pVisao->SemEscritas(leitura);
    }

    TDataBase* m_pDataBase = nullptr;

  private:
    // The last opening of a store that failed in this process. Times in ticks.
    struct SAberturaFalha {
        HRESULT hr = S_OK;
        XVUInt ulFim = 0;
        XVUInt ulDuracao = 0;
        std::string sPath;  // of the file that was refused
    };

    struct SLoja {
        SLoja() = default;
        SLoja(const SLoja&) = delete;
        SLoja& operator=(const SLoja&) = delete;
        // The files write through the journal until the last of them is closed, so it closes after them.
        ~SLoja() {
            XVIgnora(dataBase.Finaliza());
            XVIgnora(diario.Fecha(nullptr));
        }

        std::unique_ptr<CXVVisao> pVisao;  // of a viewer
        CXVDiario diario;
        TDataBase dataBase;
        std::mutex mutexAbertura;
        std::mutex mutexAlteracao;
        std::size_t uiObjetos = 0;
        SAberturaFalha falha;  // guarded by mutexAbertura, as is the step of the count
        std::atomic<XVUInt64> uiFalhas = 0;
    };

    // The open stores of the process by data directory.
    class CLojasAbertas {
      public:
        static CLojasAbertas& Instancia() {
            static CLojasAbertas lojas;
            return lojas;
        }
        std::shared_ptr<SLoja> Busca(const std::string& sDiretorio) {
            const std::lock_guard lock(m_Mutex);
            std::erase_if(m_mapLojas, [](const auto& it) { return it.second.expired(); });
            std::weak_ptr<SLoja>& rLoja = m_mapLojas[sDiretorio];
            std::shared_ptr<SLoja> pLoja = rLoja.lock();
            if (pLoja == nullptr) rLoja = pLoja = std::make_shared<SLoja>();
            return pLoja;
        }

      private:
        std::mutex m_Mutex;
        std::map<std::string, std::weak_ptr<SLoja>> m_mapLojas;
    };

    HRESULT CriaDiretorio(const std::string& sDiretorio) {
        const CXVErroArquivo erro = XVPlataforma::SistemaArquivos().CriaDiretorio(sDiretorio);
        if (!erro.Ok())
            XV_CHECK(XVArquivoRecusado::Anota(XVCodigosArquivo::CodigoDeExcecao(erro), sDiretorio, this));
        return S_OK;
    }

    std::shared_ptr<SLoja> m_pLoja;
    bool m_bSomenteLeitura = false;
};
