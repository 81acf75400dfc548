// A file of length-prefixed texts addressed by 1-based position. Memory holds where each text lies; the text
// is read from the open file, or from memory where the file is read often, and its prefix must still be the
// one that was found there.
//
// A changed text is never rewritten in place: the new one is appended and the old bytes stay behind,
// unreferenced; the file only grows. Texts are bytes, never converted. Thread rule: any thread after
// Inicializa; reads share the file's lock, a write holds it alone only while it changes memory. Texts that
// memory knows are never written again, so they are read beside a write.
// Limits: 4,294,967,295 texts a file and as many bytes a text.
#pragma once

#include <algorithm>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/xvdatabase/XVArrayRegistros.h"
#include "core/xvdatabase/XVFileBase.h"
#include "core/xvdatabase/XVTextosLidos.h"
#include "platform/XVBufferSaida.h"

class CXVTextFile : public CXVFileBase {
  public:
    XV_CLASSE("CXVTextFile", "core/xvdatabase/XVTextFile")

    // pDataBase must outlive the file.
    CXVTextFile(std::string sNomeArquivo, CXVDataBase* pDataBase,
                ERegistroArquivo eRegistro = ERegistroArquivo::eNoContainer);
    ~CXVTextFile() override;

    // Copies a text up to its first NUL byte. E_XVCR_TENTATIVA_LER_POSICAO_ZERO, E_XVCR_ARQUIVO_NAO_EXISTE,
    // E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO, E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA
    // or the code of a failed read; then the text is empty.
    HRESULT Le(XVUInt uiPosicao, std::string& sTexto) const;
    HRESULT Le(XVUInt uiPosicao, std::string* psTexto) const { return Le(uiPosicao, *psTexto); }
    // The same to where a caller of the interface will read it.
    HRESULT Le(XVUInt uiPosicao, CXVBufferSaida* pTexto) const;
    // After a reading: brings the texts into memory where so many are read that this costs less, and gives
    // the bytes that it took. uiMaximo: bytes of a file that may be in memory.
    XVUInt64 CarregaTextosLidos(XVUInt64 uiMaximo) const;
    // Appends all texts, with all their bytes.
    HRESULT LeTodos(std::vector<std::string>* plistaTextos) const;

    // Store one text, or a run of texts that belong together. uiPosicao in: the run's present position or 0;
    // out: where it stands now. An unchanged run is not written and keeps its position.
    HRESULT Grava(XVUInt& uiPosicao, std::string_view sTexto);
    HRESULT GravaColecao(XVUInt& uiPosicao, std::span<const std::string_view> aRegistros);
    HRESULT GravaColecao(XVUInt& uiPosicao, const std::vector<std::string>& aRegistros);

    // The same as part of an operation: checked and prepared, nothing is changed. out: the position that the
    // operation will use.
    HRESULT Prepara(CXVOperacao& rOperacao, XVUInt& uiPosicao, std::string_view sTexto) {
        return PreparaColecao(rOperacao, uiPosicao, std::span<const std::string_view>(&sTexto, 1));
    }
    HRESULT PreparaColecao(CXVOperacao& rOperacao, XVUInt& uiPosicao,
                           std::span<const std::string_view> aRegistros);

    XVUInt64 GetQtdRegistros() const;
    // Bytes that the object, its table and the texts in memory take.
    XVUInt64 GetMemoria() const;

  protected:
    HRESULT OnInicializa() override;
    HRESULT OnFinaliza() override;
    CXVErroArquivo ConfereConteudo(XVUInt64 uiTamanho, bool* pbIntegro) override;

  private:
    static constexpr std::size_t k_uiTamanhoPrefixo = sizeof(XVUInt);

    // A prepared write: a run of texts as it lies on disk.
    class CPreparados;

    HRESULT Carrega();
    HRESULT CarregaTabela(XVUInt64 uiFim);
    CXVErroArquivo LePayload(XVUInt64 uiOffsetDados, void* pDados, std::size_t uiTamanho) const;
    CXVErroArquivo LePayloadVisto(CXVVisao& rVisao, XVUInt64 uiOffsetDados, void* pDados,
                                  std::size_t uiTamanho) const;
    std::size_t GetTamanhoTexto(std::size_t uiIndice) const;
    bool PodeSerOTexto(std::size_t uiIndice, std::string_view sTexto) const;
    template <class TDestino>
    HRESULT LePara(XVUInt uiPosicao, TDestino& sTexto) const;
    template <class TDestino>
    HRESULT LeTexto(std::size_t uiIndice, TDestino& sTexto) const;
    HRESULT LeTexto(std::size_t uiIndice, std::string& sTexto) const;
    bool ConferePedaco(CXVTextosLidos::SPedaco& rPedaco) const;
    HRESULT LeVisto(XVUInt uiPosicao, std::string& sTexto) const;
    HRESULT CarregaNovos();
    HRESULT AbreParaGravacao();
    HRESULT PrecisaGravar(XVUInt uiPosicao, std::span<const std::string_view> aRegistros,
                          bool* pbPrecisa) const;
    HRESULT MontaBloco(std::span<const std::string_view> aRegistros, CPreparados* pPreparados);
    void AtualizaMemoria(const CPreparados& rPreparados);

    // Where the length prefix of each text lies in the payload. Texts follow each other without a gap, so a
    // text ends where the next one begins.
    TXVArrayRegistros<XVUInt64> m_aOffsets;
    // Sums of the texts that were written since the file was opened: what differs by them need not be read to
    // be known as different.
    std::size_t m_uiSemSoma = 0;  // texts before them
    TXVArrayRegistros<XVUInt> m_aSomas;
    XVUInt64 m_uiFim = 0;                                         // of the last text in the table
    XVUInt64 m_uiSeek = 0;                                        // of the payload in the file
    std::vector<std::unique_ptr<CPreparados>> m_listaPreparados;  // used again and again
    std::size_t m_uiTextosPreparados = 0;
    mutable CXVTextosLidos m_lidos;
};
