// Conversion of databases of earlier versions to the current one, step by step.
//
// A step first writes every converted file as a ".tra" copy, then a journal that names them with their
// lengths and checksums ("CRMIDDLEWARECV.srk"), then moves the copies onto the live files, then writes the
// version record and deletes the journal. Killed anywhere and run again it ends with the same bytes: without
// a journal the live files are untouched and the step starts over; with one only the moves are finished,
// after every file was found to be the one that the journal means. A file that carries the step's stamp is
// not converted again. A mark on the directory keeps two processes from converting at once.
// docs/formats.md describes the journal.
//
// Thread rule: one object is used by one thread.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "middleware/ConversaoDiario.h"
#include "platform/XVSistemaArquivos.h"
#include "suite/XVBaseParaRotinas.h"

class CXVImagemArquivo;
template <class T>
class TXVArrayRegistros;

inline constexpr XVUShort k_usVersaoAtualBase = 5;

// Told of the progress of a conversion, on the converting thread.
class IXVObservadorConversao {
  public:
    virtual ~IXVObservadorConversao() = default;
    virtual void OnInicioPasso(XVUShort usPasso, std::size_t uiQtdArquivos) = 0;
    virtual void OnArquivoConvertido(XVUShort usPasso, const std::string& sNomeArquivo,
                                     XVUInt64 uiQtdRegistros) = 0;
    virtual void OnFimPasso(XVUShort usPasso) = 0;
};

// What one step would do.
struct SArquivoPrevisto {
    std::string sNomeArquivo;
    XVUInt64 uiTamanho = 0;  // bytes of records on disk now
};
struct SPassoPrevisto {
    XVUShort usPasso = 0;
    std::vector<SArquivoPrevisto> listaArquivos;
};

class CXVConversaoMiddleware : public CXVBaseParaRotinas {
  public:
    XV_CLASSE("CBaseMiddleware", "BaseMiddleware")

    // pObservador may be null.
    explicit CXVConversaoMiddleware(IXVObservadorConversao* pObservador) : m_pObservador(pObservador) {}

    // Brings the database of the caller's company to version 5. A later version:
    // E_XVCR_VERSAO_BASE_SUPERIOR_VERSAO_SISTEMA, nothing changed. The first failure ends the conversion; the
    // version stays at the last complete step. A file of the schema that the creation control lists and the
    // directory does not hold, or one that does not fit the journal of an interrupted step:
    // E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS, nothing converted or moved, the file named in the
    // error log.
    HRESULT ExecutaConversao();

    // Version of the database on disk (0: no version file). Changes nothing. A version file that is listed in
    // the creation control and missing, or missing beside data files that contradict version 0:
    // E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS, for its absence is no version 0.
    HRESULT LeVersao(XVUShort* pusVersao);
    // A version later than the system's: E_XVCR_VERSAO_BASE_SUPERIOR_VERSAO_SISTEMA, the version file
    // refused.
    HRESULT RecusaVersaoPosterior(XVUShort usVersao);

    // What ExecutaConversao would do: per step the files that it would rewrite. Changes nothing.
    HRESULT Simula(XVUShort* pusVersao, std::vector<SPassoPrevisto>* plistaPassos);
    // For viewing: S_OK when the files are of the current version or there are none.
    HRESULT ValidaVersaoAtual();

  protected:
    HRESULT OnInicializa() override;

  private:
    using CListaNomes = std::vector<std::string>;

    // Trace texts of a file's conversion: the names that operators know.
    struct STextosPasso {
        XVUShort usPasso;
        const char* pszFuncao;
        const char* pszLe;
        const char* pszGrava;
        const char* pszRenomeia;
    };

    // As the public LeVersao. *pbTemDados becomes false when there is neither a version file nor any data:
    // then the database is a new one, which needs no conversion.
    HRESULT LeVersao(XVUShort* pusVersao, bool* pbTemDados);
    HRESULT MarcaConversao(std::unique_ptr<IXVMarcaDiretorio>& marca);
    // Lists the version file in the creation control, in case an earlier run died between making it and that.
    HRESULT ControlaArquivoVersao();
    HRESULT ConcluiPasso(XVUShort usPasso);
    HRESULT TemArquivosDeDados(bool* pbTem);
    // E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS: a single file is listed in the creation control and
    // missing.
    HRESULT ValidaArquivosUnicos();
    // The same code for any file of the schema, members of groups included.
    HRESULT ConfereArquivosControlados();
    static bool EhArquivoDoEsquema(const std::string& sNome);
    HRESULT ConverteBaseV01();
    HRESULT ConverteBaseV02();
    HRESULT ConverteBaseV03();
    HRESULT ConverteBaseV04();
    HRESULT ConverteBaseV05();
    template <class TAntigo, class TNovo, class TConverte>
    HRESULT ConverteArquivo(const std::string& sNomeArquivo, const STextosPasso& rTextos,
                            SEntradaDiario* pEntrada, TConverte converte);
    template <class TAntigo, class TNovo, class TConverte>
    HRESULT GravaCopia(const std::string& sNomeArquivo, XVUShort usPasso,
                       const TXVArrayRegistros<TAntigo>& rRegistros, TConverte converte);
    template <class TConverteArquivo>
    HRESULT ConverteTodos(XVUShort usPasso, CXVDiarioConversao& rDiario, TConverteArquivo converteArquivo);
    HRESULT SomaEntrada(const std::string& sNomeArquivo, SEntradaDiario* pEntrada);
    template <class TNovo>
    HRESULT GravaCabecalhoDaCopia(CXVImagemArquivo& rCopia, const std::string& sNomeArquivo, XVUShort usPasso,
                                  std::size_t uiQtdRegistros);

    template <class TConverteArquivo>
    HRESULT ConverteArquivos(const STextosPasso& rTextos, TConverteArquivo converteArquivo);
    HRESULT Registra(HRESULT hr, const char* pszExpressao, const STextosPasso& rTextos);
    HRESULT ListaArquivosDoPasso(XVUShort usPasso, CListaNomes* plistaNomes);
    static bool EhArquivoDoPasso(XVUShort usPasso, const std::string& sNome);
    HRESULT RemoveCopias(const CListaNomes& listaNomes);
    HRESULT RemoveDiario();
    HRESULT ConcluiTroca(XVUShort usPasso, const CXVDiarioConversao& rDiario);

    // These check every file before an interrupted exchange goes on. A file that is not the one that the
    // journal means is E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS, and nothing is moved.
    HRESULT ConfereTroca(XVUShort usPasso, const CXVDiarioConversao& rDiario);
    HRESULT ConfereSomas(const SEntradaDiario& rEntrada, const std::string& sPath,
                         const std::string& sPathCopia);
    HRESULT ConfereCarimbos(XVUShort usPasso, const std::string& sNome, const std::string& sPath,
                            const std::string& sPathCopia);
    HRESULT ConfereForaDoDiario(XVUShort usPasso, const CListaNomes& listaConvertidos);

    // Notes the file sNome as the one that was refused with hr, and returns hr unchanged.
    HRESULT Recusa(HRESULT hr, const std::string& sNome);
    HRESULT MontaPath(const std::string& sNome, std::string* psPath);
    HRESULT MontaPaths(const std::string& sNome, std::string* psPath, std::string* psPathCopia);

    IXVObservadorConversao* m_pObservador;
};
