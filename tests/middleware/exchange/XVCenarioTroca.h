// A store whose system 16 is served by the library that writes everything down. Every field of every record
// here has a value of its own, so that none can stand in for another.
#pragma once

#include "platform/XVBibliotecaDinamica.h"
#include "tests/middleware/XVCenarioLoja.h"
#include "tests/middleware/exchange/XVGravador.h"

// What an integration consists of: what passes through the provider, and the users that the store adds.
struct SDadosTeste : SDadosGravador {
    unsigned uiUsuarioInclusao = 0, uiUsuarioCancelamento = 0;

    std::string Chamada(const std::string& sOperacao) const;  // as the library notes it
    std::string Integracao() const;                           // as the store reads it
};

class CXVCenarioTroca : public CXVCenarioLoja {
  protected:
    CXVCenarioTroca();
    ~CXVCenarioTroca() override;

    static constexpr XVUInt64 k_uiOrigem = XVChaveDmc(XVDma(2024, 3, 1), 15, 2);     // of the integration
    static constexpr XVUInt64 k_uiMovimento = XVChaveDmc(XVDma(2024, 3, 1), 16, 2);  // of the item
    static constexpr XVUInt64 k_uiAgora = XVDataHora(k_uiHoje, 12);
    static constexpr const char* k_pszMovimento = "20240301-16-2";

    // What a caller may hand over: what counts for the exchange, and everything else, which must not leak.
    static tagREG_CR_INTEGRACAO_MIDDLEWAREPS Pedido(XVUInt eTransacao);
    static SItemGravador Item(const std::string& sJSON = "{\"p\":1}");
    // The item after the exchange's preparation: caller's record and item joined.
    static SDadosTeste Preparado(XVUInt eTransacao);
    // An answer that changes every field, those that are not a provider's as well.
    static SRespostaDados Resposta(unsigned uiBase, XVUInt eStatus);
    // What of an answer counts.
    static void Aplica(const SRespostaDados& rResposta, SDadosTeste* pDados);
    static std::string Parametros(const std::string& sOperacao, const XVProvedorParametros& reg) {
        return sOperacao + " MATRIZ/7/99 " + XVDescreve(reg);
    }
    static XVProvedorParametros ParametrosDe(const SDadosTeste& rDados, XVUInt64 uiDmc);
    // The question for pending items that a caller's request leads to.
    static std::string Pergunta(XVUInt eTransacao, XVUInt64 uiDmc, XVUInt64 uiOrigem = k_uiOrigem,
                                XVUInt64 uiChaveRegistro = 0, XVUInt64 uiBase = 0);
    static std::string Descreve(const SIntegracaoLida& rLida);
    static std::string Le(CBaseMiddleware& rLoja, REG_XVDMC regDmc, XVUInt64 ullFlags = 7) {
        return Descreve(XVLe(rLoja, regDmc, ullFlags));
    }

    HRESULT Troca(XVUInt eTransacao, REG_XVDMC* pDmc) {
        return m_pLoja->GravaIntegracaoInstantanea(pDmc, Pedido(eTransacao));
    }
    // Messages of the error log that speak of an exchange without record.
    std::vector<std::string> LinhasPerdidas() const;
    unsigned Chamadas(const std::string& sOperacao) const;
    // An integration of system 16 with this key, recorded by user 33 two days before.
    REG_XVDMC GravaAnterior(XVUInt64 uiChave, XVUInt eStatus);

    CXVBibliotecaDinamica m_Biblioteca{"XVProvedor16.dll"};
    SGravador& m_rGravador;
    TLoja m_pLoja;
};
