// A file of length-prefixed texts addressed by 1-based position, kept whole in memory.
//
// A changed text is never rewritten in place: the new one is appended and the old bytes stay behind,
// unreferenced; the file only grows. Texts are bytes, never converted. Thread rule: any thread after
// Inicializa; reads share the file's lock, a write holds it alone only while it changes memory.
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

class CXVTextFile : public CXVFileBase {
  public:
    XV_CLASSE("CXVTextFile", "core/xvdatabase/XVTextFile")

    // pDataBase must outlive the file.
    CXVTextFile(std::string sNomeArquivo, CXVDataBase* pDataBase,
                ERegistroArquivo eRegistro = ERegistroArquivo::eNoContainer);
    ~CXVTextFile() override;

    // One text: the offset of its length prefix from the first byte after the header, and its bytes, which
    // live in blocks owned by the file.
    struct SEntrada {
        XVUInt64 uiOffsetDados;
        const char* pTexto;
        XVUInt ulTamanho;

        std::string_view GetTexto() const { return {pTexto, ulTamanho}; }
    };
    using CColecao = TXVArrayRegistros<SEntrada>;

    // Copies a text up to its first NUL byte. E_XVCR_TENTATIVA_LER_POSICAO_ZERO, E_XVCR_ARQUIVO_NAO_EXISTE,
    // E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO; then the text is empty.
    HRESULT Le(XVUInt uiPosicao, std::string& sTexto) const;
    HRESULT Le(XVUInt uiPosicao, std::string* psTexto) const { return Le(uiPosicao, *psTexto); }

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

    bool PrecisaGravar(XVUInt uiPosicao, std::span<const std::string_view> aRegistros) const;
    XVUInt64 GetQtdRegistros() const;
    // The collection, for a database with direct access; otherwise null.
    const CColecao* GetPtrRegistros() const;

  protected:
    HRESULT OnInicializa() override;
    HRESULT OnFinaliza() override;
    CXVErroArquivo ConfereConteudo(XVUInt64 uiTamanho, bool* pbIntegro) override;

  private:
    // A prepared write: a run of texts as it lies on disk, which then holds the texts in memory.
    class CPreparados;

    HRESULT Carrega();
    HRESULT LeVisto(XVUInt uiPosicao, std::string& sTexto) const;
    HRESULT CarregaNovos();
    HRESULT AbreParaGravacao();
    HRESULT InterpretaDados(const char* pDados, XVUInt64 uiInicio, XVUInt64 uiTamanho);
    HRESULT MontaBloco(std::span<const std::string_view> aRegistros, CPreparados* pPreparados);
    void AtualizaMemoria(CPreparados& rPreparados);

    CColecao m_colecao;
    std::vector<std::unique_ptr<char[]>> m_listaBlocos;           // where the texts live
    std::vector<std::unique_ptr<CPreparados>> m_listaPreparados;  // used again and again
    std::size_t m_uiTextosPreparados = 0;
    XVUInt64 m_uiFimCarregado = 0;  // bytes of payload that a viewer has in memory
};
