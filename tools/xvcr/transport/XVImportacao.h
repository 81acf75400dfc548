// An exported store back into a store, line by line: each line is recorded whole or not at all.
//
// With its keys kept, an import into a company without store writes the files from front to back as long as
// the lines come in their order; everything else goes through the store's own operations. Recording the same
// lines again changes nothing then.
//
// Thread rule: one thread.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <variant>
#include <vector>

#include "middleware/BaseMiddleware.h"
#include "middleware/verificacao/XVLojaNova.h"
#include "tools/xvcr/fields/XVLinhaExportacao.h"
#include "tools/xvcr/text/XVFonteBytes.h"

enum class EChavesImportacao : bool { eMantidas, eNovas };

struct SContagemImportacao {
    XVUInt64 uiNovas = 0;
    XVUInt64 uiJaEstavam = 0;
    XVUInt64 uiDeixadas = 0;     // what no index record leads to, where keys are new
    XVUInt64 uiLancamentos = 0;  // of the key map and the date-times, recorded now or already there
    // Where keys are new: that named an integration which did not come along. Its key is another's here.
    XVUInt64 uiOrigensVazias = 0;
};

class CXVImportacao {
  public:
    // sDiretorio: of the company's files. rDono must outlive this object.
    CXVImportacao(std::string sDiretorio, const IXVDF_Profiler& rDono, EChavesImportacao eChaves);

    struct SErro {
        SErroCampo campo;
        bool bDefinitivo = false;  // the next line would fare no better
        bool Ok() const { return campo.sMensagem.empty(); }
    };
    SErro Importa(std::string_view sLinha);
    // Whether a last line is still to come.
    bool FaltaFim() const { return !m_bTeveFim; }
    // Gives what was recorded before its origin came that origin, makes the store whole and closes it.
    HRESULT Termina();

    const SContagemImportacao& GetContagem() const { return m_contagem; }
    // With new keys: told of each integration's key there and here.
    std::function<void(REG_XVDMC regAntiga, REG_XVDMC regNova)> m_fnNova;

  private:
    SErro Recebe(std::monostate) { return {}; }
    SErro Recebe(const SInicioExportacao& rInicio);
    SErro Recebe(SIntegracaoTransportada& rIntegracao);
    SErro Recebe(CXVDadosMapa& rDados);
    SErro Recebe(const CXVDadosDataHora& rDados);
    SErro Recebe(const SFimExportacao& rFim);
    void Encerra() {
        m_bDentro = false;
        m_bTeveFim = true;
    }
    // S_OK: recorded; S_FALSE: to be recorded by the store's operations.
    HRESULT PoeNaLojaNova(const SIntegracaoTransportada& rIntegracao);
    HRESULT ConcluiLojaNova();
    HRESULT AbreBase();
    SErro MantemChave(const SIntegracaoTransportada& rIntegracao);
    SErro DaChaveNova(SIntegracaoTransportada& rIntegracao);
    REG_XVDMC Traduz(REG_XVDMC* pOrigem) const;
    HRESULT PoeOrigens();
    SErro Falha(HRESULT hr);

    std::string m_sDiretorio;
    const IXVDF_Profiler& m_rDono;
    const EChavesImportacao m_eChaves;
    bool m_bDentro = false;  // of an export
    bool m_bTeveFim = false;
    SContagemExportacao m_lidas;
    XVUInt64 m_uiSoma = 0;
    SContagemImportacao m_contagem;
    std::unique_ptr<CXVLojaNova> m_pNova;
    bool m_bAberta = false;  // m_Base, which is never left for files again
    CBaseMiddleware m_Base;
    using TChaves = std::unordered_map<XVUInt64, REG_XVDMC>;  // new ones, by those that came
    std::map<std::string, TChaves> m_mapaChaves;              // of each company that was exported
    TChaves* m_pChaves = nullptr;                             // of the export that is being read
    struct SSemOrigem {
        REG_XVDMC regDmcOrigem;  // as it came
        const TChaves* pChaves;
        std::variant<REG_XVDMC, CXVDadosMapa> quem;  // under its key here, or as it was recorded
    };
    std::vector<SSemOrigem> m_listaSemOrigem;
};

std::string XVDescreveLinhaLonga(std::size_t uiLinhaMaxima);
// Reads a whole export for its sums and last lines alone; an empty text, or what is wrong.
std::string XVConfereExportacao(IXVFonteBytes& rFonte, std::size_t uiLinhaMaxima);
