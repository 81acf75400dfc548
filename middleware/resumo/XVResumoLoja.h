// What a store holds, and what of it needs somebody: counts, ages, failures by what they say, sizes.
//
// The store may be open, closed or left by a process that died; nothing of it is changed or locked. The index
// is of one moment; each piece of a day's files is of a moment that is not earlier. In memory are the index,
// as a list, and one day at a time. What cannot be read is counted and passed over.
//
// Thread rule: one thread.
#pragma once

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "middleware/verificacao/XVDiasDaLoja.h"
#include "middleware/verificacao/XVExameDia.h"
#include "support/values/XVData.h"

// Of the pending integrations, by how long ago they were included.
inline constexpr std::array<XVUInt64, 4> k_auiIdades{3600, 86400, 7 * 86400, 30 * 86400};  // seconds, up to

// Seconds from one to the other; 0 where it is later.
XVUInt64 XVIdadeEmSegundos(REG_XVDMAHMSUTC regAgora, REG_XVDMAHMSUTC regQuando);

struct SGrupoFalhas {
    XVUInt64 uiQuantidade = 0;
    REG_XVDMC regDmc;  // the latest of them
    std::string sExemplo;
};

struct SResumoLoja {
    REG_XVDMAHMSUTC regMomento;
    XVUInt64 uiIntegracoes = 0;
    XVUInt64 uiIlegiveis = 0;  // of them: without a record, or a place in the index, that can be one
    std::array<XVUInt64, k_auiIdades.size() + 1> auiPendentes{};  // the last: older than all
    std::optional<std::pair<REG_XVDMC, XVUInt64>> maisAntiga;     // pending, and its age in seconds
    XVUInt64 uiFalhas = 0;
    std::map<std::string, SGrupoFalhas> mapaFalhas;  // by normal message; empty: they say nothing
    XVUInt64 uiFalhasForaDosGrupos = 0;              // where there are more groups than are kept
    std::map<XVUInt64, XVUInt64> mapaDias;
    std::map<std::pair<XVUInt, XVUInt>, XVUInt64> mapaStatusSistema;
    std::map<XVUInt, XVUInt64> mapaTipos;
    REG_XVDMAHMSUTC regPrimeira, regUltima;  // inclusions
    XVUInt64 uiArquivos = 0;
    XVUInt64 uiBytes = 0;  // of the data files
    XVUInt64 uiTextosMortos = 0;
    XVUInt64 uiBytesMortos = 0;
    XVUInt64 uiMemoria = 0;  // bytes of the index and the key map once a server has them open

    XVUInt64 Pendentes() const;
};

class CXVResumoLoja {
  public:
    enum class EAlcance : std::uint8_t {
        eNumeros,  // no text is read: neither messages nor superseded texts
        eTudo,
    };
    CXVResumoLoja(std::string sDiretorio, EAlcance eAlcance);

    // E_XVCR_VERSAO_INCOMPATIVEL, E_XVCR_VERSAO_BASE_SUPERIOR_VERSAO_SISTEMA: the store is of another
    // version. A failure of the directory, or an index that is gone or refused, is the code.
    HRESULT Executa(SResumoLoja* pResumo);

    std::function<void(XVUInt64 uiBytes)> m_fnProgresso;  // told of every piece that was read

  private:
    HRESULT ConfereVersao();
    HRESULT LeIndice(CXVExameIndice* pIndice);
    HRESULT Prepara();
    void ResumeDia(XVUInt64 uiDia, std::span<const SEntradaIndice> aEntradas);
    void ResumeIntegracao(CXVExameDia& rDia, const SEntradaIndice& rEntrada);
    void AnotaPendente(REG_XVDMC regDmc, REG_XVDMAHMSUTC regInclusao);
    void AnotaFalha(const CXVExameDia& rDia, REG_XVDMC regDmc, XVUInt ulMensagem);

    std::string m_sDiretorio;
    EAlcance m_eAlcance;
    CXVLeituraLoja m_leitura;
    const TSelos m_semSelos;
    SResumoLoja* m_pResumo = nullptr;
};
