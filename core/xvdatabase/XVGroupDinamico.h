// The part that both kinds of dynamic groups share: members are opened on demand and stay open as long as the
// store's budget allows (XVMemoriaMembros.h).
//
// TNomes gives the class name and source unit for traces. Thread rule: whoever uses a member that is open
// shares the group's lock; it is held alone only while a member enters or leaves the list of open ones.
// Members are loaded and closed under the opening lock of the store: beside them the other members are used.
#pragma once

#include <algorithm>
#include <atomic>
#include <mutex>
#include <new>
#include <shared_mutex>
#include <unordered_map>

#include "core/xvdatabase/XVDataBase.h"
#include "core/xvdatabase/XVFileBase.h"
#include "core/xvdatabase/XVGroupFileBase.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVProfiler.h"

template <class TMembro, class TNomes>
class TXVGroupDinamico : public CXVGroupFileBase, private IXVMembrosAbertos {
  public:
    static constexpr const char* XVNomeClasse() { return TNomes::XVNomeClasse(); }
    static constexpr const char* XVNomeFonte() { return TNomes::XVNomeFonte(); }

    // uiMinimo: members that stay open whatever the store's budget.
    TXVGroupDinamico(std::string sNomeArquivo, CXVDataBase* pDataBase, std::size_t uiMinimo)
        : CXVGroupFileBase(std::move(sNomeArquivo), pDataBase), m_uiMinimo(uiMinimo) {
        AdiaInicializacaoMembros();
        GetMemoriaMembros().Inclui(*this);
    }
    ~TXVGroupDinamico() override { GetMemoriaMembros().Retira(*this); }

    std::unique_ptr<IXVFileBase> NewFile(const std::string& sNomeArquivo, CXVDataBase* pDataBase) override {
        return std::make_unique<TMembro>(sNomeArquivo, pDataBase, ERegistroArquivo::eAvulso);
    }

    HRESULT GetQtdRegistros(XVUInt64 uiChaveNomeArquivo, XVUInt64* puiQuantidade) override {
        *puiQuantidade = 0;
        return NoMembro(uiChaveNomeArquivo, [&](TMembro* pXVFile) {
            *puiQuantidade = pXVFile->GetQtdRegistros();
            return S_OK;
        });
    }

    HRESULT DeletaArquivo() override {
        const std::lock_guard abertura(GetMemoriaMembros().GetMutexAbertura());
        return CXVGroupFileBase::DeletaArquivo();
    }

    // Whether the key's member is open and holds a file.
    bool TemArquivoAberto(XVUInt64 uiChaveNomeArquivo) const {
        const std::shared_lock lock(GetLock());
        const TMembro* pMembro = BuscaAberto(uiChaveNomeArquivo);
        return pMembro != nullptr && pMembro->ExisteArquivo();
    }

    // To be asked under the lock of the group: without it an open member may be closed meanwhile, and a
    // closed one has no file either.
    void DevolveNoMembroNovo(CXVGravacaoPreparada& rGravacao) noexcept override {
        const std::unique_lock lock(GetLock());
        const XVUInt64 uiChaveNomeArquivo = rGravacao.m_uiChaveGrupo;
        const CXVFileBase& rFile = rGravacao.GetArquivo();
        const bool bEsquece = !rFile.ExisteArquivo() && rFile.GetPreparadas() == 1;
        rGravacao.Devolve();
        if (bEsquece) EsqueceMembro(uiChaveNomeArquivo);
    }

  protected:
    void EsqueceMembros() override {
        m_mapAbertos.clear();
        CXVGroupFileBase::EsqueceMembros();
    }

    XVUInt64 ContaRegistros(const IXVFileBase& rMembro) const override {
        return static_cast<const TMembro&>(rMembro).GetQtdRegistros();
    }

    // Runs operacao on the loaded member of a key.
    template <class TOperacao>
    HRESULT NoMembro(XVUInt64 uiChaveNomeArquivo, TOperacao operacao) {
        {
            const std::shared_lock lock(GetLock());
            if (TMembro* pAberto = BuscaAberto(uiChaveNomeArquivo)) return operacao(pAberto);
        }
        const std::lock_guard abertura(GetMemoriaMembros().GetMutexAbertura());
        TMembro* pXVFileInterface = nullptr;
        XV_CHECK(GetXVFile(uiChaveNomeArquivo, pXVFileInterface));
        const std::shared_lock lock(GetLock());
        // A member that a write was to make is forgotten when the write fails, without the opening lock.
        if (BuscaAberto(uiChaveNomeArquivo) != pXVFileInterface)
            XV_FALHA(E_XVCR_ARQUIVO_GROUP_NAO_ENCONTRADO);
        return operacao(pXVFileInterface);
    }

    // The member of a key, loaded; under the opening lock and no other. A member that does not initialise is
    // not open, so that the next call tries again.
    HRESULT GetXVFile(XVUInt64 uiChaveNomeArquivo, TMembro*& pMembro) {
        pMembro = nullptr;
        IXVFileBase* pXVFileInterface = nullptr;
        {
            const std::unique_lock lock(GetLock());
            XV_CHECK(LookupMapFiles(uiChaveNomeArquivo, pXVFileInterface));
            pMembro = BuscaAberto(uiChaveNomeArquivo);
        }
        if (pMembro != nullptr) return S_OK;
        GetMemoriaMembros().Acomoda(this);
        XV_CHECK(CarregaMembro(pXVFileInterface));
        {
            const std::unique_lock lock(GetLock());
            SAberto& rAberto = m_mapAbertos[uiChaveNomeArquivo];
            rAberto.pMembro = static_cast<TMembro*>(pXVFileInterface);
            pMembro = BuscaAberto(uiChaveNomeArquivo);
        }
        GetMemoriaMembros().Acomoda(nullptr);
        return S_OK;
    }

    // Prepares a write in the member of a key, which is made when there is none.
    template <class TColecao>
    HRESULT PreparaNoMembro(CXVOperacao& rOperacao, XVUInt64 uiChaveNomeArquivo, XVUInt& uiPosicao,
                            const TColecao& aRegistros) {
        bool bAberto = false;
        XVUInt64 uiCresceu = 0;
        {
            const std::shared_lock lock(GetLock());
            if (TMembro* pXVFile = BuscaAberto(uiChaveNomeArquivo)) {
                const XVUInt64 uiAntes = pXVFile->GetMemoria();
                XV_PREPARA(rOperacao, pXVFile->PreparaColecao(rOperacao, uiPosicao, aRegistros));
                uiCresceu = pXVFile->GetMemoria() - uiAntes;
                bAberto = true;
            }
        }
        if (!bAberto) return PreparaNoMembroFechado(rOperacao, uiChaveNomeArquivo, uiPosicao, aRegistros);
        if (uiCresceu > 0) ContaCrescimento(uiCresceu);
        return S_OK;
    }

    // Open members have grown by so many bytes: others may have to close. No lock is held.
    void ContaCrescimento(XVUInt64 uiBytes) {
        if (!GetMemoriaMembros().Cresce(uiBytes)) return;
        const std::lock_guard abertura(GetMemoriaMembros().GetMutexAbertura());
        GetMemoriaMembros().Acomoda(nullptr);
    }
    // Bytes of one member that may be in memory beside what it needs.
    XVUInt64 GetMaximoMembro() const { return GetMemoriaMembros().GetOrcamento() / 16; }

    // The same as an operation of its own.
    template <class TColecao>
    HRESULT GravaNoMembro(XVUInt64 uiChaveNomeArquivo, XVUInt& uiPosicao, const TColecao& aRegistros) {
        return CXVOperacao::ExecutaSozinha(
            GetDataBase(), m_mutexGravacao, uiPosicao, [&](CXVOperacao& rOperacao, XVUInt& uiPosicaoNova) {
                return PreparaNoMembro(rOperacao, uiChaveNomeArquivo, uiPosicaoNova, aRegistros);
            });
    }

  private:
    struct SAberto {
        TMembro* pMembro = nullptr;
        CXVMemoriaMembros::CAberto aberto{};
        mutable std::atomic<XVUInt64> uiUso = 0;
    };

    CXVMemoriaMembros& GetMemoriaMembros() const { return GetDataBase()->GetMemoriaMembros(); }

    // The open member of a key, which counts as used now.
    TMembro* BuscaAberto(XVUInt64 uiChaveNomeArquivo) const {
        const auto it = m_mapAbertos.find(uiChaveNomeArquivo);
        if (it == m_mapAbertos.end()) return nullptr;
        GetMemoriaMembros().Usa(it->second.uiUso);
        return it->second.pMembro;
    }

    // A viewer loads a member in moments of its own: the moment of the call would not last so long.
    HRESULT CarregaMembro(IXVFileBase* pXVFileInterface) {
        const CXVMomento::CAtivo suspende(nullptr);
        const CXVMemoriaMembros::CCarga carga(GetMemoriaMembros(), *this);
        XV_CHECK(pXVFileInterface->Inicializa(this));
        return S_OK;
    }

    template <class TColecao>
    HRESULT PreparaNoMembroFechado(CXVOperacao& rOperacao, XVUInt64 uiChaveNomeArquivo, XVUInt& uiPosicao,
                                   const TColecao& aRegistros) {
        const std::lock_guard abertura(GetMemoriaMembros().GetMutexAbertura());
        const bool bNovo = !TemMembro(uiChaveNomeArquivo);
        if (bNovo) {
            auto pXVFile = CriaMembro(uiChaveNomeArquivo);
            XV_CHECK(pXVFile->Inicializa(this));
            const std::unique_lock lock(GetLock());
            GetMapa()[uiChaveNomeArquivo] = std::move(pXVFile);
        }
        const HRESULT hr = PreparaNoMembroDoMapa(rOperacao, uiChaveNomeArquivo, uiPosicao, aRegistros);
        if (FAILED(hr) && bNovo) {
            const std::unique_lock lock(GetLock());
            EsqueceMembro(uiChaveNomeArquivo);
        }
        return hr;
    }

    template <class TColecao>
    HRESULT PreparaNoMembroDoMapa(CXVOperacao& rOperacao, XVUInt64 uiChaveNomeArquivo, XVUInt& uiPosicao,
                                  const TColecao& aRegistros) {
        TMembro* pXVFileInterface = nullptr;
        XV_CHECK(GetXVFile(uiChaveNomeArquivo, pXVFileInterface));
        const std::shared_lock lock(GetLock());
        const std::size_t uiPrimeira = rOperacao.GetQuantidade();
        XV_PREPARA(rOperacao, pXVFileInterface->PreparaColecao(rOperacao, uiPosicao, aRegistros));
        if (rOperacao.GetQuantidade() > uiPrimeira && !pXVFileInterface->ExisteArquivo()) {
            CXVGravacaoPreparada& rParte = *rOperacao.GetPartes().back();
            rParte.m_pGrupo = this;
            rParte.m_uiChaveGrupo = uiChaveNomeArquivo;
        }
        return S_OK;
    }

    void EsqueceMembro(XVUInt64 uiChaveNomeArquivo) {
        const auto it = GetMapa().find(uiChaveNomeArquivo);
        m_mapAbertos.erase(uiChaveNomeArquivo);
        XVIgnora(it->second->Finaliza());
        GetMapa().erase(it);
    }

    // A member with a prepared write must stay open.
    auto BuscaMaisAntigo() const {
        auto itAntigo = m_mapAbertos.end();
        for (auto it = m_mapAbertos.begin(); it != m_mapAbertos.end(); ++it)
            if (!it->second.pMembro->TemPreparadas() &&
                (itAntigo == m_mapAbertos.end() || it->second.uiUso < itAntigo->second.uiUso))
                itAntigo = it;
        return itAntigo;
    }

    SResumo Resume() const override {
        const std::shared_lock lock(GetLock());
        SResumo resumo;
        resumo.uiAbertos = m_mapAbertos.size();
        for (const auto& it : m_mapAbertos) resumo.uiMemoria += it.second.pMembro->GetMemoria();
        if (const auto itAntigo = BuscaMaisAntigo(); itAntigo != m_mapAbertos.end())
            resumo.uiUsoMaisAntigo = itAntigo->second.uiUso;
        return resumo;
    }
    std::size_t GetMinimoAbertos() const override { return m_uiMinimo; }
    bool TemHandles() const override { return true; }

    // Whoever uses a member holds the lock meanwhile: what has left the list is used by nobody.
    bool FechaMaisAntigo() override {
        TMembro* pFirstFile = nullptr;
        {
            const std::unique_lock lock(GetLock());
            const auto it = BuscaMaisAntigo();
            if (it == m_mapAbertos.end()) return false;
            pFirstFile = it->second.pMembro;
            m_mapAbertos.erase(it);
        }
        try {
            XVIgnora(XV_REGISTRA(pFirstFile->Finaliza()));
        } catch (const std::bad_alloc&) {  // who needs the room did nothing wrong
            XVIgnora(XV_REGISTRA(E_OUTOFMEMORY));
        }
        return true;
    }

    std::unordered_map<XVUInt64, SAberto> m_mapAbertos;  // by key
    std::size_t m_uiMinimo;
    std::mutex m_mutexGravacao;  // writes that belong to no operation of a store
};
