// Schema of the integration store: its files, the indexes over them and the key of every index.
#pragma once

#include <array>
#include <atomic>
#include <map>

#include "core/xvdatabase/XVFile.h"
#include "core/xvdatabase/XVGroupFileDynamic.h"
#include "core/xvdatabase/XVGroupTextFileDynamic.h"
#include "middleware/XVColunasIntegracao.h"
#include "middleware/XVRegistrosMiddleware.h"
#include "middleware/XVResumoIndex.h"

inline constexpr const char* k_pszArquivoIndexIntegracao = "CRINDEXINTEG.dat";
inline constexpr const char* k_pszArquivoIntegracao = "CRINTEGMID????????.dat";
inline constexpr const char* k_pszArquivoJSONIntegracao = "CRINTEGMIDJSON????????.dat";
inline constexpr const char* k_pszArquivoMensagemIntegracao = "CRINTEGMIDMENS????????.dat";
inline constexpr const char* k_pszArquivoJSONRetornoIntegracao = "CRINTEGMIDJSONRET????????.dat";
inline constexpr const char* k_pszArquivoChaveRegistroParaTerceiro = "CRCHAVEREGTER.dat";
inline constexpr const char* k_pszArquivoDataHoraIntegracao = "CRDTHRINTEG.dat";
inline constexpr const char* k_pszArquivoVersao = "CRMIDDLEWAREVS.dat";

// The schema's data files, the version file apart.
inline constexpr const char* k_apszArquivosUnicos[] = {
    k_pszArquivoIndexIntegracao, k_pszArquivoChaveRegistroParaTerceiro, k_pszArquivoDataHoraIntegracao};
inline constexpr const char* k_apszGrupos[] = {k_pszArquivoIntegracao, k_pszArquivoJSONIntegracao,
                                               k_pszArquivoMensagemIntegracao,
                                               k_pszArquivoJSONRetornoIntegracao};

enum EColuna_Indexacao_Middleware : XVUInt {
    eIndexacao_ChaveIntegracaoComSistemaTerceiro = 0,
    eIndexacao_DMCIntegracao = 1,
    eIndexacao_ChaveIntegracao = 2,
};
enum EColuna_Indexacao_ChaveRegistroParaTerceiro : XVUInt {
    eIndexacao_SistemaTipoIntegracaoChaveTelvo = 0,
    eIndexacao_SistemaTipoIntegracaoIDTerceiro = 1,
};
enum EColuna_Indexacao_DataHoraIntegracao : XVUInt {
    eIndexacao_SistemaTipoIntegracaoTipoData = 0,
};

// Several objects write this group. The texts inside its templates stand in one of them: the linker of MinGW
// takes such texts for defined twice where one compilation kept a function that another one did not.
#define XV_PREPARACAO_INTEGRACAO(funcao)                                                \
    HRESULT TXVGroupDinamico<CXVFile<REG_CR_INTEGRACAO_MIDDLEWARE_V2>,                  \
                             SNomesGroupFileDynamic<REG_CR_INTEGRACAO_MIDDLEWARE_V2>>:: \
        funcao(CXVOperacao&, XVUInt64, XVUInt&, const std::span<const REG_CR_INTEGRACAO_MIDDLEWARE_V2>&)
extern template XV_PREPARACAO_INTEGRACAO(PreparaNoMembro);
extern template XV_PREPARACAO_INTEGRACAO(PreparaNoMembroFechado);
extern template XV_PREPARACAO_INTEGRACAO(PreparaNoMembroDoMapa);

class CXVDataBase_CR_Middleware : public CXVDataBase {
  public:
    XV_CLASSE("CXVDataBase_CR_Middleware", "XVDataBase_CR_Middleware")

    CXVDataBase_CR_Middleware();
    ~CXVDataBase_CR_Middleware() override;

    // Keys of the index columns; 0 is no key. A column that the record does not have: 0.
    XVUInt64 GetChaveIndex(const REG_CR_INDEX_INTEGRACAO_V1& reg, XVUInt uiColuna) const;
    XVUInt64 GetChaveIndex(const REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2& reg, XVUInt uiColuna) const;
    XVUInt64 GetChaveIndex(const REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1& reg, XVUInt uiColuna) const;
    // Key of an integration in eIndexacao_DMCIntegracao.
    static XVUInt64 GetChaveIndex(REG_XVDMC regDmc) { return regDmc.uiValor; }
    // Key of eIndexacao_ChaveIntegracaoComSistemaTerceiro; 0 when either part is 0.
    static XVUInt64 GetChaveIndexSistemaTerceiro(XVUInt64 uiChaveIntegracaoSistemaTerceiro,
                                                 XVUInt eSistemaIntegracao);

    // True for one call with each day, and again once another day was begun.
    bool ComecaDia(XVUInt64 uiDia) {
        return m_uiDiaAtual.load(std::memory_order_relaxed) != uiDia && m_uiDiaAtual.exchange(uiDia) != uiDia;
    }

    // Whether the four files of a day are there and open.
    bool EstaDiaAberto(XVUInt64 uiChaveNomeArquivo) const;
    // The texts of an integration, each in a group of its own.
    enum class ETexto : std::uint8_t { eJSON, eMensagem, eJSONRetorno, eQuantidade };
    // Before a text is recorded in a day: no record of the day names a text that the day's file does not
    // hold, or the new one would answer for an old integration.
    // E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS; the error log names both files. Each file is looked at
    // once. The lock of changes is held.
    HRESULT ConfereTextos(XVUInt64 uiChaveNomeArquivo, ETexto eTexto);

    // Records that a day's file of a group contradicts another file, and yields the code for it.
    HRESULT RecusaMembro(XVUInt64 uiChaveNomeArquivo, const std::string& sPadrao) const;

    // Every group keeps at least the members that it used last open; more, while the budget allows.
    static constexpr std::size_t k_uiMinimoAbertos = 2;

    CXVFile<REG_CR_INDEX_INTEGRACAO_V1> m_IndexIntegracao;
    CXVGroupFileDynamic<REG_CR_INTEGRACAO_MIDDLEWARE_V2> m_Integracao;
    CXVGroupTextFileDynamic m_JSONIntegracao;
    CXVGroupTextFileDynamic m_MensagemIntegracao;
    CXVGroupTextFileDynamic m_JSONRetornoIntegracao;
    CXVFile<REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2> m_ChaveRegistroParaTerceiro;
    CXVFile<REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1> m_DataHoraIntegracao;

  protected:
    HRESULT OnInicializa() override;
    HRESULT OnFinaliza() override;

  private:
    static constexpr std::size_t k_uiTextos = static_cast<std::size_t>(ETexto::eQuantidade);
    // Highest text position that the records of a day name, and whether the files were found to hold it.
    struct SDia {
        std::array<XVUInt, k_uiTextos> aulMaior{};
        std::array<bool, k_uiTextos> abConferido{};
    };
    HRESULT LeMaioresPonteiros(XVUInt64 uiChaveNomeArquivo, SDia* pDia);
    CXVGroupTextFileDynamic& GetGrupo(ETexto eTexto);

    std::map<XVUInt64, SDia> m_mapaDias;
    std::atomic<XVUInt64> m_uiDiaAtual = 0;
};
