// A store whose system 16 is served by the library that writes everything down. Every field of every record
// here has a value of its own, so that none can stand in for another.
#pragma once

#include "platform/XVBibliotecaDinamica.h"
#include "tests/middleware/XVCenarioLoja.h"
#include "tests/middleware/exchange/XVGravador.h"

class CXVCenarioTroca : public CXVCenarioLoja {
  protected:
    CXVCenarioTroca();
    ~CXVCenarioTroca() override;

    static constexpr XVUInt64 k_uiOrigem = XVChaveDmc(XVDma(2024, 3, 1), 15, 2);     // of the integration
    static constexpr XVUInt64 k_uiMovimento = XVChaveDmc(XVDma(2024, 3, 1), 16, 2);  // of the item
    static constexpr const char* k_pszMovimento = "20240301-16-2";

    // What a caller may hand over: what counts for the exchange, and everything else, which must not leak.
    static tagREG_CR_INTEGRACAO_MIDDLEWAREPS Pedido(XVUInt eTransacao);
    static SItemGravador Item(const std::string& sJSON = "{\"p\":1}");
    // An answer that changes every field, those that are not a provider's as well.
    static SRespostaDados Resposta(unsigned uiBase, XVUInt eStatus);

    // Parts of the lines in which the library and the tests describe records.
    static std::string Comuns(XVUInt eTransacao, unsigned uiChaveRegistro, unsigned uiBase,
                              unsigned uiFilial);
    static std::string Respondido(unsigned uiBase, XVUInt eStatus);
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
