// The part that both kinds of dynamic groups share: members are opened on demand and at most m_uiLimite
// of them are open at once; opening one more closes the one opened first.
//
// TNomes gives the class name and source unit for traces. Thread rule: the group's lock is held exclusive
// by every operation, for a read may open and close members.
#pragma once

#include <algorithm>
#include <deque>
#include <mutex>

#include "core/xvdatabase/XVDataBase.h"
#include "core/xvdatabase/XVFileBase.h"
#include "core/xvdatabase/XVGroupFileBase.h"
#include "support/XVCodigos.h"
#include "support/XVProfiler.h"

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
        const std::unique_lock lock(GetLock());
        TMembro* pXVFileInterface = nullptr;
        XV_CHECK(GetXVFile(uiChaveNomeArquivo, pXVFileInterface));
        *puiQuantidade = pXVFileInterface->GetQtdRegistros();
        return S_OK;
    }

  protected:
    void EsqueceMembros() override {
        m_filaAbertos.clear();
        CXVGroupFileBase::EsqueceMembros();
    }

    XVUInt64 ContaRegistros(const IXVFileBase& rMembro) const override {
        return static_cast<const TMembro&>(rMembro).GetQtdRegistros();
    }

    // The member of a key, loaded. The order of the queue is that of opening, not of use. A member that does
    // not initialise leaves the queue, so that the next call tries again.
    HRESULT GetXVFile(XVUInt64 uiChaveNomeArquivo, TMembro*& pMembro) {
        pMembro = nullptr;
        IXVFileBase* pXVFileInterface = nullptr;
        XV_CHECK(LookupMapFiles(uiChaveNomeArquivo, pXVFileInterface));
        auto* pXVFile = static_cast<TMembro*>(pXVFileInterface);
        if (std::find(m_filaAbertos.begin(), m_filaAbertos.end(), pXVFile) == m_filaAbertos.end()) {
            if (!m_filaAbertos.empty() && m_filaAbertos.size() >= m_uiLimite) {
                TMembro* pFirstFile = m_filaAbertos.front();
                m_filaAbertos.pop_front();
                if (const HRESULT hr = pFirstFile->Finaliza(); FAILED(hr))
                    XV_REGISTRA(hr, "pFirstFile->Finaliza()");
            }
            const HRESULT hr = pXVFileInterface->Inicializa(this);
            if (SUCCEEDED(hr)) m_filaAbertos.push_back(pXVFile);
            XV_CHECK_TEXTO(hr, "pXVFileInterface->Inicializa(this)");
        }
        pMembro = pXVFile;
        return S_OK;
    }

    // The write: finds or creates the member. A new member that no byte reached is forgotten again.
    template <class TColecao>
    HRESULT GravaNoMembro(XVUInt64 uiChaveNomeArquivo, XVUInt& uiPosicao, const TColecao& aRegistros) {
        const std::unique_lock lock(GetLock());
        IXVFileBase* pXVFileInterface = nullptr;
        XV_CHECK(LookupMapFiles(uiChaveNomeArquivo, pXVFileInterface, false));
        const bool bNovo = pXVFileInterface == nullptr;
        if (bNovo) {
            auto pXVFile = CriaMembro(uiChaveNomeArquivo);
            XV_CHECK(pXVFile->Inicializa(this));
            GetMapa()[uiChaveNomeArquivo] = std::move(pXVFile);
        }
        TMembro* pXVFile = nullptr;
        HRESULT hr = GetXVFile(uiChaveNomeArquivo, pXVFile);
        if (SUCCEEDED(hr)) {
            hr = pXVFile->GravaColecao(uiPosicao, aRegistros);
            if (FAILED(hr) && bNovo && !pXVFile->ExisteArquivo()) EsqueceMembro(uiChaveNomeArquivo);
            XV_CHECK_TEXTO(hr, "pXVFile->GravaColecao(uiPosicao, aRegistros)");
            return S_OK;
        }
        XV_CHECK_TEXTO(hr, "GetXVFile(uiChaveNomeArquivo, pXVFileInterface)");
        return hr;
    }

  private:
    void EsqueceMembro(XVUInt64 uiChaveNomeArquivo) {
        const auto it = GetMapa().find(uiChaveNomeArquivo);
        std::erase(m_filaAbertos, static_cast<TMembro*>(it->second.get()));
        XVIgnora(it->second->Finaliza());
        GetMapa().erase(it);
    }

    std::deque<TMembro*> m_filaAbertos;
    std::size_t m_uiLimite;
};
