// The part that both kinds of dynamic groups share: members are opened on demand and at most m_uiLimite
// of them are open at once; opening one more closes the one opened first.
//
// TNomes gives the class name and source unit for traces. Thread rule: whoever uses a member that is open
// shares the group's lock; opening and closing members holds it alone. A member with a prepared write is not
// closed.
#pragma once

#include <algorithm>
#include <deque>
#include <mutex>
#include <shared_mutex>

#include "core/xvdatabase/XVDataBase.h"
#include "core/xvdatabase/XVFileBase.h"
#include "core/xvdatabase/XVGroupFileBase.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVProfiler.h"

template <class TMembro, class TNomes>
class TXVGroupDinamico : public CXVGroupFileBase {
  public:
    static constexpr const char* XVNomeClasse() { return TNomes::XVNomeClasse(); }
    static constexpr const char* XVNomeFonte() { return TNomes::XVNomeFonte(); }

    TXVGroupDinamico(std::string sNomeArquivo, CXVDataBase* pDataBase, std::size_t uiLimite)
        : CXVGroupFileBase(std::move(sNomeArquivo), pDataBase), m_uiLimite(uiLimite) {
        AdiaInicializacaoMembros();
    }

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
        m_filaAbertos.clear();
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
        const std::unique_lock lock(GetLock());
        TMembro* pXVFileInterface = nullptr;
        XV_CHECK(GetXVFile(uiChaveNomeArquivo, pXVFileInterface));
        return operacao(pXVFileInterface);
    }

    // The member of a key, loaded. The order of the queue is that of opening, not of use. A member that does
    // not initialise leaves the queue, so that the next call tries again.
    HRESULT GetXVFile(XVUInt64 uiChaveNomeArquivo, TMembro*& pMembro) {
        pMembro = nullptr;
        IXVFileBase* pXVFileInterface = nullptr;
        XV_CHECK(LookupMapFiles(uiChaveNomeArquivo, pXVFileInterface));
        auto* pXVFile = static_cast<TMembro*>(pXVFileInterface);
        if (std::find(m_filaAbertos.begin(), m_filaAbertos.end(), pXVFile) == m_filaAbertos.end()) {
            if (!m_filaAbertos.empty() && m_filaAbertos.size() >= m_uiLimite) FechaMaisAntigo();
            // A viewer loads a member in moments of its own: the moment of the call would not last so long.
            const CXVMomento::CAtivo suspende(nullptr);
            XV_CHECK(pXVFileInterface->Inicializa(this));
            m_filaAbertos.push_back(pXVFile);
        }
        pMembro = pXVFile;
        return S_OK;
    }

    // Prepares a write in the member of a key, which is made when there is none.
    template <class TColecao>
    HRESULT PreparaNoMembro(CXVOperacao& rOperacao, XVUInt64 uiChaveNomeArquivo, XVUInt& uiPosicao,
                            const TColecao& aRegistros) {
        {
            const std::shared_lock lock(GetLock());
            if (TMembro* pXVFile = BuscaAberto(uiChaveNomeArquivo)) {
                XV_PREPARA(rOperacao, pXVFile->PreparaColecao(rOperacao, uiPosicao, aRegistros));
                return S_OK;
            }
        }
        const std::unique_lock lock(GetLock());
        IXVFileBase* pXVFileInterface = nullptr;
        XV_CHECK(LookupMapFiles(uiChaveNomeArquivo, pXVFileInterface, false));
        const bool bNovo = pXVFileInterface == nullptr;
        if (bNovo) {
            auto pXVFile = CriaMembro(uiChaveNomeArquivo);
            XV_CHECK(pXVFile->Inicializa(this));
            GetMapa()[uiChaveNomeArquivo] = std::move(pXVFile);
        }
        const HRESULT hr = PreparaNoMembroDoMapa(rOperacao, uiChaveNomeArquivo, uiPosicao, aRegistros);
        if (FAILED(hr) && bNovo) EsqueceMembro(uiChaveNomeArquivo);
        return hr;
    }

    // The same as an operation of its own.
    template <class TColecao>
    HRESULT GravaNoMembro(XVUInt64 uiChaveNomeArquivo, XVUInt& uiPosicao, const TColecao& aRegistros) {
        return CXVOperacao::ExecutaSozinha(
            GetDataBase(), m_mutexGravacao, uiPosicao, [&](CXVOperacao& rOperacao, XVUInt& uiPosicaoNova) {
                return PreparaNoMembro(rOperacao, uiChaveNomeArquivo, uiPosicaoNova, aRegistros);
            });
    }

  private:
    TMembro* BuscaAberto(XVUInt64 uiChaveNomeArquivo) const {
        const auto it = GetMapa().find(uiChaveNomeArquivo);
        if (it == GetMapa().end()) return nullptr;
        auto* pMembro = static_cast<TMembro*>(it->second.get());
        const bool bAberto =
            std::find(m_filaAbertos.begin(), m_filaAbertos.end(), pMembro) != m_filaAbertos.end();
        return bAberto ? pMembro : nullptr;
    }

    template <class TColecao>
    HRESULT PreparaNoMembroDoMapa(CXVOperacao& rOperacao, XVUInt64 uiChaveNomeArquivo, XVUInt& uiPosicao,
                                  const TColecao& aRegistros) {
        TMembro* pXVFileInterface = nullptr;
        XV_CHECK(GetXVFile(uiChaveNomeArquivo, pXVFileInterface));
        const std::size_t uiPrimeira = rOperacao.GetQuantidade();
        XV_PREPARA(rOperacao, pXVFileInterface->PreparaColecao(rOperacao, uiPosicao, aRegistros));
        if (rOperacao.GetQuantidade() > uiPrimeira && !pXVFileInterface->ExisteArquivo()) {
            CXVGravacaoPreparada& rParte = *rOperacao.GetPartes().back();
            rParte.m_pGrupo = this;
            rParte.m_uiChaveGrupo = uiChaveNomeArquivo;
        }
        return S_OK;
    }

    // A member with a prepared write must stay open. When all of them have one, none is closed, and one more
    // than the limit stays open for a while.
    void FechaMaisAntigo() {
        const auto it = std::find_if(m_filaAbertos.begin(), m_filaAbertos.end(),
                                     [](const TMembro* p) { return !p->TemPreparadas(); });
        if (it == m_filaAbertos.end()) return;
        TMembro* pFirstFile = *it;
        m_filaAbertos.erase(it);
        XVIgnora(XV_REGISTRA(pFirstFile->Finaliza()));
    }

    void EsqueceMembro(XVUInt64 uiChaveNomeArquivo) {
        const auto it = GetMapa().find(uiChaveNomeArquivo);
        std::erase(m_filaAbertos, static_cast<TMembro*>(it->second.get()));
        XVIgnora(it->second->Finaliza());
        GetMapa().erase(it);
    }

    std::deque<TMembro*> m_filaAbertos;
    std::size_t m_uiLimite;
    std::mutex m_mutexGravacao;  // writes that belong to no operation of a store
};
