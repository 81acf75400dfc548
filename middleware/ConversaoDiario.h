// The journal of a conversion step, "CRMIDDLEWARECV.srk": which files were converted, what the old ones
// were and what the copies are. While it stands there all copies are complete and their exchange may have
// begun. docs/formats.md describes its bytes.
//
// Thread rule: one object is used by one thread, which holds the conversion's mark.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "middleware/ConversaoArquivo.h"
#include "suite/XVInicializador.h"

inline constexpr const char* k_pszDiarioConversao = "CRMIDDLEWARECV.srk";

struct SEntradaDiario {
    std::string sNome;    // of the live file
    SSomaArquivo antigo;  // the live file that was converted
    SSomaArquivo novo;    // its ".tra" copy, and the live file once the copy took its place
};

class CXVDiarioConversao : public CXVInicializador {
  public:
    XV_CLASSE("CXVDiarioConversao", "ConversaoDiario")

    // Reads the journal of step usPasso. None, one of a step before (it has served), or one that an earlier
    // program did not come to the end of: S_OK, not in course. Anything else that is no journal of this step
    // is refused with E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS: files may have been exchanged by it
    // that nobody could tell any more. Changes nothing.
    HRESULT Le(XVUShort usPasso);
    bool EstaEmCurso() const { return m_bEmCurso; }
    // False for a journal of earlier programs, which named the files and no more.
    bool TemSomas() const { return m_bTemSomas; }
    const std::vector<SEntradaDiario>& GetEntradas() const { return m_listaEntradas; }

    void Inclui(SEntradaDiario entrada) { m_listaEntradas.push_back(std::move(entrada)); }
    // Writes the journal in one step: it is there whole, on the device, or not at all.
    HRESULT Grava(XVUShort usPasso);
    // Deletes the journal and what the writing of one may have left; absent is no error.
    HRESULT Remove();

  private:
    enum class ELeitura : std::uint8_t { eValido, eInterrompido, eInvalido };

    HRESULT MontaPath(const char* pszNome, std::string* psPath);
    HRESULT LeBytes(const std::string& sPath, std::string* psDiario);
    ELeitura Interpreta(std::string_view sDiario, XVUShort* pusPasso);
    ELeitura InterpretaEntradas(std::string_view sEntradas, XVUInt ulQuantidade);

    std::vector<SEntradaDiario> m_listaEntradas;
    bool m_bEmCurso = false;
    bool m_bTemSomas = true;
};
