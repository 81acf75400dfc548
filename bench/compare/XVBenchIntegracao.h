// The work that every opponent of the comparison does: integrations made by number, the same in every run.
// One is an index entry of 24 bytes, a record of 88 and texts of 1500, 80 and 600 bytes.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "contract/XVCR_Enumeracoes.h"
#include "support/values/XVDmc.h"

inline constexpr std::size_t k_uiBytesJSON = 1500;
inline constexpr std::size_t k_uiBytesMensagem = 80;
inline constexpr std::size_t k_uiBytesRetorno = 600;
inline constexpr XVUInt k_aeSistemasBench[] = {SimulacaoSistemaTerceiro, OfficialBank, Mercos};
inline constexpr XVUInt k_ulTiposBench = 17;

// The texts live until the generator makes the next integration or status.
struct SIntegracaoBench {
    REG_XVDMC regDmc;               // the key that it has to get,
    bool bQualquerPosicao = false;  // unless several threads record at the same time
    unsigned uiDia = 0;
    XVUInt64 uiChave = 0;  // ascending, as external systems number
    XVUInt eSistema = 0;
    XVUInt eStatus = 0;  // 1 % pending
    XVUInt eTipo = 0;
    std::string_view sJSON{};
    std::string_view sMensagem{};
    std::string_view sRetorno{};
};

struct SStatusBench {
    REG_XVDMC regDmc;  // whose status it is; opponents find it by key and system
    unsigned uiDia = 0;
    XVUInt64 uiChave = 0;
    XVUInt eSistema = 0;
    XVUInt eStatus = 0;
    std::string_view sMensagem{};
    std::string_view sRetorno{};
};

// What a search asks for; 0 and empty lists restrict nothing.
struct SFiltroBench {
    const char* pszNome;
    XVUInt64 uiChaveInicial = 0;
    XVUInt64 uiChaveFinal = 0;
    REG_XVDMA diaInicial{};
    REG_XVDMA diaFinal{};
    std::vector<XVUInt> listaTipos{};
    std::vector<XVUInt> listaStatus{};
    std::vector<XVUInt> listaSistemas{};

    bool EhExato() const { return uiChaveInicial != 0 && uiChaveInicial == uiChaveFinal; }
    bool Aceita(REG_XVDMC regDmc, XVUInt64 uiChave, XVUInt eSistema, XVUInt eStatus, XVUInt eTipo) const {
        const auto contem = [](const std::vector<XVUInt>& rLista, XVUInt e) {
            return rLista.empty() || std::find(rLista.begin(), rLista.end(), e) != rLista.end();
        };
        const XVUInt ulDia = regDmc.GetDma().GetValor();
        return uiChave >= uiChaveInicial && (uiChaveFinal == 0 || uiChave <= uiChaveFinal) &&
               ulDia >= diaInicial.GetValor() && (diaFinal.EhNula() || ulDia <= diaFinal.GetValor()) &&
               contem(listaStatus, eStatus) && contem(listaSistemas, eSistema) && contem(listaTipos, eTipo);
    }
};

enum class EOrdemBench {
    ePorDia,        // day after day, as a store grows
    eEmbaralhados,  // every one belongs to another day than the one before
};

class CXVGeradorBench {
  public:
    CXVGeradorBench(unsigned uiIntegracoes, unsigned uiDias, EOrdemBench eOrdem = EOrdemBench::ePorDia);

    unsigned Quantidade() const { return m_uiIntegracoes; }
    unsigned Dias() const { return m_uiDias; }
    unsigned PorDia() const { return m_uiIntegracoes / m_uiDias; }
    static REG_XVDMA Data(unsigned uiDia);  // 0 is 2025-01-01

    // The integration uiNumero, counted from 0 in the order of recording.
    SIntegracaoBench Gera(unsigned uiNumero);
    // Another status of it; uiVez makes its texts differ.
    SStatusBench GeraStatus(unsigned uiNumero, unsigned uiVez);
    std::vector<SFiltroBench> Filtros() const;

  private:
    // Day and position in it.
    REG_XVDMC Dmc(unsigned uiNumero, unsigned* puiDia) const;

    unsigned m_uiIntegracoes;
    unsigned m_uiDias;
    EOrdemBench m_eOrdem;
    std::string m_sJSON;
    std::string m_sMensagem;
    std::string m_sRetorno;
    std::string m_sMensagemStatus;
    std::string m_sRetornoStatus;
};
