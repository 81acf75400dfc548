// A group whose members are files of fixed-size records.
#pragma once

#include <span>
#include <vector>

#include "core/xvdatabase/XVFile.h"
#include "core/xvdatabase/XVGroupDinamico.h"

template <class T>
struct SNomesGroupFileDynamic {
    XV_CLASSE((TXVNomeDeTemplate<"CXVGroupFileDynamic", T>::k_aTexto.data()),
              "core/xvdatabase/XVGroupFileDynamic")
};

template <class T>
class CXVGroupFileDynamic : public TXVGroupDinamico<CXVFile<T>, SNomesGroupFileDynamic<T>> {
    using CBase = TXVGroupDinamico<CXVFile<T>, SNomesGroupFileDynamic<T>>;
    using CBase::XVNomeClasse;
    using CBase::XVNomeFonte;

  public:
    using CBase::CBase;

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
};
