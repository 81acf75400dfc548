// A group whose members are files of fixed-size records. Columns of its members (XVFile.h) are made by the
// first search that asks for them and stay, within the store's budget, whether the member is open or closed.
#pragma once

#include <span>
#include <vector>

#include "core/xvdatabase/XVColunasMembros.h"
#include "core/xvdatabase/XVFile.h"
#include "core/xvdatabase/XVGroupDinamico.h"

template <class T>
struct SNomesGroupFileDynamic {
    XV_CLASSE((TXVNomeDeTemplate<"CXVGroupFileDynamic", T>::k_aTexto.data()),
              "core/xvdatabase/XVGroupFileDynamic")
};

template <class T>
class CXVGroupFileDynamic : public TXVGroupDinamico<CXVFile<T>, SNomesGroupFileDynamic<T>>,
                            private IXVDonoColunas {
    using CBase = TXVGroupDinamico<CXVFile<T>, SNomesGroupFileDynamic<T>>;
    using CBase::XVNomeClasse;
    using CBase::XVNomeFonte;

  public:
    CXVGroupFileDynamic(std::string sNomeArquivo, CXVDataBase* pDataBase, std::size_t uiMinimo)
        : CBase(std::move(sNomeArquivo), pDataBase, uiMinimo),
          m_colunas(pDataBase->GetMemoriaMembros(), *this) {}

    // As the member's operations. E_XVCR_ARQUIVO_GROUP_NAO_ENCONTRADO: the key has no member.
    HRESULT Le(XVUInt64 uiChaveNomeArquivo, XVUInt uiPosicao, T* preg) {
        return this->NoMembro(uiChaveNomeArquivo, [&](CXVFile<T>* pXVFile) {
            XV_CHECK_EM("Le", pXVFile->Le(uiPosicao, preg));
            return S_OK;
        });
    }

    HRESULT LeColecao(XVUInt64 uiChaveNomeArquivo, XVUInt uiPosicao, XVUInt64 uiQuantidade,
                      std::vector<T>& aRegistros) {
        return this->NoMembro(uiChaveNomeArquivo, [&](CXVFile<T>* pXVFile) {
            XV_CHECK_EM("LeColecao", pXVFile->LeColecao(uiPosicao, uiQuantidade, aRegistros));
            return S_OK;
        });
    }

    // Shows fnVe(const TXVColunas<T>&) the columns of a member, which is opened only to make them. Writers of
    // the member wait until it returns: fnVe must not call the group. S_FALSE: there are none, as of every
    // member of a viewer's, and fnVe was not called.
    template <class TVe>
    HRESULT VeColunas(XVUInt64 uiChaveNomeArquivo, TVe fnVe) {
        if (this->GetDataBase()->GetVisao() != nullptr) return S_FALSE;
        bool bVistas = false;
        XVUInt64 uiFeitas = 0;  // bytes
        {
            const std::shared_lock lock(this->GetLock());
            if (const CXVFile<T>* pXVFile = BuscaMembro(uiChaveNomeArquivo))
                bVistas = pXVFile->VeColunas(fnVe);
        }
        if (!bVistas) {
            const HRESULT hr = this->NoMembro(uiChaveNomeArquivo, [&](CXVFile<T>* pXVFile) {
                pXVFile->FazColunas();
                bVistas = pXVFile->VeColunas(fnVe);
                uiFeitas = pXVFile->GetMemoriaColunas();
                return S_OK;
            });
            if (FAILED(hr)) return hr;
        }
        if (!bVistas) return S_FALSE;
        m_colunas.Usa(uiChaveNomeArquivo);
        if (uiFeitas > 0) this->ContaCrescimento(uiFeitas);
        return S_OK;
    }

    // A record as part of an operation; out: the position that it will use.
    HRESULT Prepara(CXVOperacao& rOperacao, XVUInt64 uiChaveNomeArquivo, XVUInt& uiPosicao, const T& reg) {
        const std::span<const T> aRegistros(&reg, 1);
        return this->PreparaNoMembro(rOperacao, uiChaveNomeArquivo, uiPosicao, aRegistros);
    }

    // The key's member is created by its first write.
    HRESULT Grava(XVUInt64 uiChaveNomeArquivo, XVUInt& uiPosicao, const T& reg) {
        const std::span<const T> aRegistros(&reg, 1);
        XV_CHECK(GravaColecao(uiChaveNomeArquivo, uiPosicao, aRegistros));
        return S_OK;
    }

    HRESULT GravaColecao(XVUInt64 uiChaveNomeArquivo, XVUInt& uiPosicao, std::span<const T> aRegistros) {
        XV_ESCOPO({"m_sNomeArquivo", this->GetNomeArquivo()}, {"uiChaveNomeArquivo", uiChaveNomeArquivo},
                  {"uiPosicao", XVUInt64{uiPosicao}});
        return this->GravaNoMembro(uiChaveNomeArquivo, uiPosicao, aRegistros);
    }

  private:
    // Under the lock of the group.
    CXVFile<T>* BuscaMembro(XVUInt64 uiChaveNomeArquivo) const {
        const auto it = this->GetMapa().find(uiChaveNomeArquivo);
        return it == this->GetMapa().end() ? nullptr : static_cast<CXVFile<T>*>(it->second.get());
    }
    XVUInt64 GetMemoriaColunas(XVUInt64 uiChave) const override {
        const std::shared_lock lock(this->GetLock());
        const CXVFile<T>* pXVFile = BuscaMembro(uiChave);
        return pXVFile == nullptr ? 0 : pXVFile->GetMemoriaColunas();
    }
    void EsqueceColunas(XVUInt64 uiChave) override {
        const std::shared_lock lock(this->GetLock());
        if (CXVFile<T>* pXVFile = BuscaMembro(uiChave)) pXVFile->EsqueceColunas();
    }

    CXVColunasMembros m_colunas;
};
