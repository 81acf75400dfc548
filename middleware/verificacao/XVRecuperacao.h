// Recovery: a new data directory with everything of a damaged one whose bytes can be read.
//
// Headers, index and creation control are made anew; records and texts keep their positions, for keys name
// them. A place whose record is lost stays vacant, so that no later integration gets its key. What only the
// index knew and nothing else tells is not invented: such an integration comes back without system, in status
// error, with a message that says so. What can be placed nowhere is put aside, byte for byte. A file that
// cannot be read, or not to its end, is named, and everything else goes on. The damaged directory is only
// read.
//
// Thread rule: one thread.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "middleware/verificacao/XVChavesDoLog.h"
#include "middleware/verificacao/XVDiasDaLoja.h"
#include "middleware/verificacao/XVExameDia.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/IXVDF_Profiler.h"

// An integration that did not come back as it was.
struct SIntegracaoRecuperada {
    REG_XVDMC regDmc;
    bool bPerdida = false;
    XVUInt ulMotivos = 0;  // EMotivo
    // What the index knew of a lost one, or the general log of one that the index had lost.
    std::optional<XVUInt64> uiChave;
};

struct SBytesSeparados {
    std::string sArquivo;
    XVUInt64 uiOffset;  // in the file
    XVUInt64 uiBytes;
};

struct SRecuperacao {
    XVUInt64 uiInteiras = 0;
    XVUInt64 uiComFaltas = 0;  // back, with a message that says what is missing
    XVUInt64 uiPerdidas = 0;
    XVUInt64 uiLancamentos = 0;                           // of the key map and the date-times
    std::vector<SIntegracaoRecuperada> listaIntegracoes;  // with gaps, or lost
    std::vector<SBytesSeparados> listaSeparados;
    std::vector<std::string> listaIlegiveis;  // files that the system would not read to their end
    // Files that the creation control names and that are gone, or that are shorter than their header says.
    std::vector<std::string> listaIncompletos;

    bool TudoVoltou() const {
        return uiComFaltas + uiPerdidas == 0 && listaSeparados.empty() && listaIlegiveis.empty() &&
               listaIncompletos.empty();
    }
};

class CXVEscritaRecuperada;

class CXVRecuperacao {
  public:
    struct SPastas {
        std::string sOrigem;     // the damaged data directory
        std::string sDestino;    // the new one, which must not hold anything
        std::string sSeparados;  // where bytes go that can be placed nowhere; made when needed
    };
    // bVersaoAtual: a person says that the store was of the present version where its own file does not.
    CXVRecuperacao(SPastas pastas, const IXVDF_Profiler& rDono, bool bVersaoAtual);
    ~CXVRecuperacao();
    CXVRecuperacao(const CXVRecuperacao&) = delete;
    CXVRecuperacao& operator=(const CXVRecuperacao&) = delete;

    // eSharingViolation: somebody has the store open. E_XVCR_VERSAO_INCOMPATIVEL,
    // E_XVCR_VERSAO_BASE_SUPERIOR_VERSAO_SISTEMA: it is of another version.
    // E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS: nothing tells its version.
    HRESULT Executa(SRecuperacao* pRecuperacao);
    // Why Executa refused the directories before it made anything.
    enum class ERecusa : std::uint8_t {
        eNenhuma,
        eEmUso,            // eSharingViolation, of the damaged store
        eDestinoOcupado,   // eInvalidFile: the new directory, or the one for bytes put aside, is not empty
        eDestinoNaOrigem,  // E_INVALIDARG: one of them lies in the damaged store
    };
    ERecusa GetRecusa() const { return m_eRecusa; }
    // From here on a failure leaves a part of the new store behind.
    bool Comecou() const { return m_bComecou; }

    // Told of every piece that was read.
    std::function<void(XVUInt64 uiBytes)> m_fnProgresso;

  private:
    HRESULT Prepara();
    // S_FALSE: the system does not let the file be looked at, which is noted.
    HRESULT Descreve(const std::string& sNome, SArquivoLoja* pArquivo);
    HRESULT PreparaDestino();
    HRESULT Recusa(ERecusa eRecusa, HRESULT hr) {
        m_eRecusa = eRecusa;
        return hr;
    }
    HRESULT ConfereVersao();
    void ProcuraIncompletos();
    HRESULT LeIndice();
    HRESULT RecuperaDia(XVUInt64 uiDia, std::span<const SEntradaIndice> aEntradas);
    HRESULT SeparaDia(const CXVExameDia& rDia);
    static HRESULT RecusaOutroPrograma(const CXVExameDia& rDia);
    HRESULT RecuperaTextos(const CXVExameDia& rDia);
    HRESULT CopiaTextos(const SArquivoLoja& rArquivo, XVUInt64 uiDe, XVUInt64 uiAte,
                        CXVEscritaRecuperada& rEscrita);
    HRESULT RecuperaRegistros(const CXVExameDia& rDia, std::span<const SEntradaIndice> aEntradas);
    // Notes what is lost behind the records of the day. Returns how many places that takes.
    XVUInt64 ContaLugares(const CXVExameDia& rDia);
    HRESULT RecuperaRegistro(const CXVExameDia& rDia, XVUInt ulPonteiro, const SEntradaIndice* pEntrada,
                             REG_CR_INTEGRACAO_MIDDLEWARE_V2* pReg);
    HRESULT RefazTextos(const CXVExameDia& rDia, XVUInt ulMotivos, REG_CR_INTEGRACAO_MIDDLEWARE_V2* pReg);
    HRESULT LeTexto(const CXVExameDia& rDia, std::size_t uiQual, XVUInt ulPosicao, std::string* psTexto);
    HRESULT GravaTexto(std::size_t uiQual, const std::string& sTexto, REG_CR_INTEGRACAO_MIDDLEWARE_V2* pReg);
    HRESULT GravaAviso(const CXVExameDia& rDia, XVUInt ulMotivos, REG_CR_INTEGRACAO_MIDDLEWARE_V2* pReg);
    bool FoiSubstituida(REG_XVDMC regDmc) const;
    void PoeNoIndice(REG_XVDMC regDmc);
    void AnotaPerdida(REG_XVDMC regDmc, XVUInt ulMotivos, std::optional<XVUInt64> uiChave);
    template <class T>
    HRESULT RecuperaLancamentos(const char* pszNome, XVUInt ulColunas);
    HRESULT GravaIndice();
    HRESULT GravaVersao();
    HRESULT GravaControle();
    HRESULT CopiaLogs();
    HRESULT CopiaLog(const std::string& sNome);
    HRESULT Conclui(CXVEscritaRecuperada& rEscrita);
    // Bytes of a file from uiDe to uiAte of its payload; a run of its own behind each place that cannot be
    // read.
    HRESULT Separa(const SArquivoLoja& rArquivo, XVUInt64 uiDe, XVUInt64 uiAte);
    // Records of one size by where they begin, ascending; neighbours are one run.
    HRESULT SeparaRegistros(const SArquivoLoja& rArquivo, std::span<const XVUInt64> aDe, XVUInt64 uiTamanho);
    void AnotaIlegivel(const std::string& sNome, HRESULT hr);

    SPastas m_pastas;
    const IXVDF_Profiler& m_rDono;
    bool m_bVersaoAtual;
    bool m_bComecou = false;
    ERecusa m_eRecusa = ERecusa::eNenhuma;
    CXVLeituraLoja m_leitura;
    const TSelos m_semSelos;
    SRecuperacao* m_pRecuperacao = nullptr;
    SArquivoLoja m_arquivoIndice;
    CXVExameIndice m_indice;
    bool m_bIndiceConfere = false;
    std::vector<SDiaListado> m_listaDias;
    std::vector<TChaveDmc> m_aDoBanco;  // that come back
    CXVChavesDoLog m_log;
    // Index records by their old position; those that are made anew come behind all others.
    std::map<XVUInt64, REG_CR_INDEX_INTEGRACAO_V1> m_mapaIndice;
    std::vector<std::string> m_listaArquivos;  // that were made
    // Of the day that is being made: texts, and how many there are.
    std::array<XVUInt, CXVExameDia::k_uiTextos> m_aulTextos{};
    std::array<std::unique_ptr<CXVEscritaRecuperada>, CXVExameDia::k_uiTextos> m_aTextos;
};

// The file was made or written by a later program, whose layouts nobody here knows.
inline bool XVEhDeOutroPrograma(HRESULT hr) {
    return hr == E_XVCR_VERSAO_CABECALHO_SUPERIOR_VERSAO_SISTEMA ||
           hr == E_XVCR_VERSAO_SISTEMA_INFERIOR_VERSAO_CRIACAO_CABECALHO ||
           hr == E_XVCR_VERSAO_SISTEMA_INFERIOR_VERSAO_MODIFICACAO_ARQUIVO;
}
