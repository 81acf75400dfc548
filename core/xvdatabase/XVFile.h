// A file of fixed-size records of one layout, kept whole in memory, with any number of in-memory indexes.
//
// Positions are 1-based; 0 as a write position appends. Reads are served from memory under the shared
// lock, which a write holds alone only while it changes memory and indexes, after the disk. Thread rule: any
// thread after Inicializa.
// Limit: 4,294,967,295 records a file.
#pragma once

#include <algorithm>
#include <cstring>
#include <mutex>
#include <shared_mutex>
#include <span>
#include <vector>

#include "core/xvdatabase/XVArquivoVisto.h"
#include "core/xvdatabase/XVArrayRegistros.h"
#include "core/xvdatabase/XVConteudo.h"
#include "core/xvdatabase/XVDataBase.h"
#include "core/xvdatabase/XVFileBase.h"
#include "core/xvdatabase/XVIndice.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVProfiler.h"
#include "support/values/XVCrc64.h"

inline constexpr XVUInt XVDATABASE_POSICAO_NOVO_REGISTRO = 0;
inline constexpr XVUInt64 k_uiMaximoRegistros = 0xFFFFFFFFU;

// What a file keeps beside its records, so that searches need not look at each of them. The file tells it
// whatever its memory takes over, under its lock; nobody else changes it. Most layouts have none.
template <class T>
struct TXVResumo {
    void Carrega(const TXVArrayRegistros<T>& /*aRegistros*/) {}
    // Makes the next uiQuantidade new records unable to fail.
    void Reserva(std::size_t /*uiQuantidade*/) {}
    // Before a record takes the place i of the array, or is appended to it.
    void Muda(const TXVArrayRegistros<T>& /*aRegistros*/, std::size_t /*i*/, const T& /*reg*/) noexcept {}
};

// What searches want of many records of a layout, in little memory: so it can stay when the records of a
// member are no longer there. It is made of the records when it is first asked for, and follows them from
// then on. Most layouts have none.
template <class T>
struct TXVColunas {
    bool Existe() const { return false; }
    // Of all records; the records up to uiPrevistas will not be able to fail.
    void Faz(const TXVArrayRegistros<T>& /*aRegistros*/, std::size_t /*uiPrevistas*/) {}
    // Makes the next uiQuantidade new records unable to fail.
    void Reserva(std::size_t /*uiQuantidade*/) {}
    // A record takes the place i, or is appended.
    void Muda(std::size_t /*i*/, const T& /*reg*/) noexcept {}
    std::size_t GetMemoria() const { return 0; }  // bytes
};

template <class T>
class CXVFile : public CXVFileBase {
  public:
    XV_CLASSE((TXVNomeDeTemplate<"CXVFile", T>::k_aTexto.data()), "core/xvdatabase/XVFile")

    using CXVFileBase::CXVFileBase;

    // Copies a record. E_XVCR_TENTATIVA_LER_POSICAO_ZERO, E_XVCR_ARQUIVO_NAO_EXISTE,
    // E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO.
    HRESULT Le(XVUInt uiPosicao, T* preg) const;
    // Appends uiQtd records from uiPosicao to aRegistros. Both 0: nothing. One of them 0:
    // E_XVCR_INCONSISTENCIA_CHAVE_QUANTIDADE.
    HRESULT LeColecao(XVUInt uiPosicao, XVUInt64 uiQtd, std::vector<T>& aRegistros) const;

    // Shows all records in order, in as many parts as they lie in: fnVe(std::span<const T>, number of the
    // first of them from 0 on, const TXVResumo<T>*). No copy is made of what is in memory. Of what a viewer
    // reads from the disk there is no summary. Writers of the file wait until it returns: fnVe must not call
    // the file.
    template <class TVe>
    HRESULT Percorre(TVe fnVe) const;

    // The columns of the records, which outlive the closing of the file. VeColunas shows fnVe them where they
    // exist, and says whether they do; fnVe must not call the file. They are made of the records of an open
    // file.
    template <class TVe>
    bool VeColunas(TVe fnVe) const;
    void FazColunas();
    bool EsqueceColunas();  // whether there were any
    XVUInt64 GetMemoriaColunas() const {
        const std::shared_lock lock(GetLock());
        return m_colunas.GetMemoria();
    }

    // Write one record, or consecutive records from uiPosicao; in: position or 0, out: first position used.
    // What does not differ from the stored records is not written. A failure leaves file, memory and indexes
    // as they were.
    HRESULT Grava(XVUInt& uiPosicao, const T& reg);
    HRESULT GravaColecao(XVUInt& uiPosicao, std::span<const T> aRegistros);

    // The same writes as part of an operation: checked and prepared, nothing is changed. out: the position
    // that the operation will use. Records that wait for another operation are not written over.
    HRESULT Prepara(CXVOperacao& rOperacao, XVUInt& uiPosicao, const T& reg) {
        return PreparaColecao(rOperacao, uiPosicao, std::span<const T>(&reg, 1));
    }
    HRESULT PreparaColecao(CXVOperacao& rOperacao, XVUInt& uiPosicao, std::span<const T> aRegistros);

    XVUInt64 GetQtdRegistros() const;
    // Bytes that the object and its records take; indexes, which members of groups do not have, apart.
    XVUInt64 GetMemoria() const {
        const std::shared_lock lock(GetLock());
        return sizeof(*this) + m_aRegistros.GetMemoria();
    }
    // The whole array, for a database with direct access; otherwise null.
    const TXVArrayRegistros<T>* GetPtrRegistros() const {
        return GetDataBase()->PermiteAcessoDireto() ? &m_aRegistros : nullptr;
    }
    bool PrecisaGravar(XVUInt uiPosicao, std::span<const T> aRegistros) const;
    // Replaces the first records of the file by the collection, through GravaColecao; records beyond stay.
    HRESULT SetConteudo(std::span<const T> aRegistros);
    HRESULT SetArrayData(const void* pDados, XVUInt64 uiQuantidade) override;
    HRESULT SetRegData(XVUInt& uiPosicao, const void* pDados) override;

    // Declares the index of the next column; TDataBase::GetChaveIndex(record, column) computes the keys, 0
    // meaning no key. Existing records are checked; where there is nothing to check they are entered when the
    // index is first asked.
    template <class TDataBase>
    HRESULT IncluiIndex(const TDataBase* pDataBase, XVUInt uiColunaIndexacao,
                        bool bPermiteChaveZerada = false, bool bPermiteChaveRepetida = false);
    // Forgets all declarations.
    void RemoveDeclaracoesIndex() { m_listaIndices.clear(); }

    // Positions that hold the key, ascending; none is no error.
    HRESULT ExisteIndex(XVUInt64 chave, std::vector<XVUInt>& listaPosicao, XVUInt uiColunaIndexacao) const;
    // Lowest position that holds the key, or 0.
    HRESULT ExisteIndex(XVUInt64 chave, XVUInt& uiPosicao, XVUInt uiColunaIndexacao) const;
    // A text key is the CRC-64 of its bytes.
    HRESULT ExisteIndex(std::string_view chave, std::vector<XVUInt>& listaPosicao,
                        XVUInt uiColunaIndexacao) const {
        return ExisteIndex(XVCrc64(chave.data(), chave.size()), listaPosicao, uiColunaIndexacao);
    }
    HRESULT ExisteIndex(std::string_view chave, XVUInt& uiPosicao, XVUInt uiColunaIndexacao) const {
        return ExisteIndex(XVCrc64(chave.data(), chave.size()), uiPosicao, uiColunaIndexacao);
    }

    // Shows fnVe(const T&) the records that hold the key, in the order of their positions. Writers of the
    // file wait until it returns: fnVe must not call the file.
    template <class TVe>
    HRESULT PercorreIndex(XVUInt64 chave, XVUInt uiColunaIndexacao, TVe fnVe) const;

    // Read, overwrite, or prepare the overwriting of the record that holds the key uiPosicaoIndex, the lowest
    // one when several do. E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA: none does, and nothing is appended.
    HRESULT LeIndex(XVUInt64 uiPosicaoIndex, T* preg, XVUInt uiColunaIndexacao) const;
    HRESULT GravaIndex(XVUInt64 uiPosicaoIndex, const T& reg, XVUInt uiColunaIndexacao);
    HRESULT PreparaIndex(CXVOperacao& rOperacao, XVUInt64 uiPosicaoIndex, const T& reg,
                         XVUInt uiColunaIndexacao);

  protected:
    HRESULT OnInicializa() override;
    HRESULT OnFinaliza() override;
    CXVErroArquivo ConfereConteudo(XVUInt64 uiTamanho, bool* pbIntegro) override;

  private:
    struct SIndice {
        const void* pDataBase;
        // The keys of neighbouring records, in one call.
        void (*pfGetChaves)(const void* pDataBase, std::span<const T> aRegistros, XVUInt uiColuna,
                            XVUInt64* puiChaves);
        bool bPermiteChaveZerada;
        bool bPermiteChaveRepetida;
        CXVIndice indice;
        // What any record may enter has nothing to check at opening: it is made when it is first asked.
        bool bConstruido = false;
        // The keys of the write that is being checked, sorted. Kept here so that a write needs no new memory.
        std::vector<XVUInt64> setIndexOrdenar;

        bool AceitaTudo() const { return bPermiteChaveZerada && bPermiteChaveRepetida; }
        XVUInt64 GetChave(const T& reg, std::size_t uiColuna) const {
            XVUInt64 uiChave = 0;
            pfGetChaves(pDataBase, {&reg, 1}, static_cast<XVUInt>(uiColuna), &uiChave);
            return uiChave;
        }
    };

    // A prepared write: the records, those that they overwrite, and the keys of every index.
    class CPreparados;

    HRESULT AtualizaVista() const;
    HRESULT IniciaVista();
    HRESULT CarregaVista(XVUInt64 uiChamada);
    void EsqueceRegistros() noexcept;
    HRESULT LeVisto(XVUInt uiPosicao, T* preg) const;
    HRESULT LeColecaoVista(XVUInt uiPosicao, XVUInt64 uiQtd, std::vector<T>& aRegistros) const;
    bool LeIndexVisto(XVUInt64 uiChave, T* preg, XVUInt uiColunaIndexacao) const;
    XVUInt64 GetQtdVista() const;
    static XVUInt64 GetQtdNaArea(const SAreaVista& rArea) {
        return rArea.bExiste ? (rArea.uiTamanho - rArea.uiSeek) / sizeof(T) : 0;
    }
    bool EhVista() const { return GetDataBase()->GetVisao() != nullptr; }

    HRESULT Carrega();
    HRESULT ConstroiIndices();
    HRESULT AbreParaGravacao();
    HRESULT ValidaPosicao(XVUInt uiPosicao) const;
    HRESULT ValidaIndices(XVUInt uiPosicao, std::span<const T> aRegistros, std::vector<XVUInt64>& aChaves);
    HRESULT ValidaIndex(XVUInt uiPosicao, std::span<const T> aRegistros, std::size_t idx,
                        std::vector<XVUInt64>& aChaves);
    bool PodeManterChave(std::size_t uiColuna, XVUInt64 uiChave, XVUInt uiPosicaoRegistro) const;
    HRESULT IniciaIndex(SIndice& rIndice, std::size_t uiColuna);
    HRESULT AtualizaIndexDoArquivo(SIndice& rIndice, std::size_t uiColuna);
    template <class TBusca>
    HRESULT NoIndex(XVUInt uiColuna, TBusca busca) const;
    // What an index asks the records in memory.
    auto ChavesDe(std::size_t uiColuna) const {
        return [this, uiColuna](XVUInt uiPosicao) {
            return m_listaIndices[uiColuna].GetChave(m_aRegistros[uiPosicao - 1], uiColuna);
        };
    }
    XVUInt BuscaPrimeira(XVUInt64 uiChave, std::size_t uiColuna) const {
        return m_listaIndices[uiColuna].indice.GetPrimeira(uiChave, ChavesDe(uiColuna));
    }
    void PreparaMemoria(XVUInt uiPosicao, std::size_t uiQuantidade);
    void AtualizaMemoria(const CPreparados& rPreparados);

    TXVArrayRegistros<T> m_aRegistros;
    TXVResumo<T> m_resumo;
    TXVColunas<T> m_colunas;
    SVistaCarregada m_vista;
    bool m_bVistaValida = true;  // what is in memory was loaded whole
    std::vector<SIndice> m_listaIndices;
    std::vector<std::unique_ptr<CPreparados>> m_listaPreparados;  // used again and again
    XVUInt m_ulUltimaPrevista = 0;  // highest position that a prepared write may have asked for
};

#include "core/xvdatabase/XVFileGravacao.inl"
#include "core/xvdatabase/XVFileIndice.inl"
#include "core/xvdatabase/XVFileLeitura.inl"
#include "core/xvdatabase/XVFileVisao.inl"
