// Random operations on a store, each checked at once against the model.
//
// Thread rule: one object, one thread; objects of different shares may work on one store at once.
#pragma once

#include <string>

#include "middleware/BaseMiddleware.h"
#include "tests/harness/XVSorteio.h"
#include "tests/model/XVModeloLoja.h"

// The keys, records and types that one of several workers uses alone.
struct SParteModelo {
    unsigned uiQual = 0;
    unsigned uiQuantas = 1;
};

class CXVPassosModelo {
  public:
    CXVPassosModelo(XVUInt64 uiSemente, SParteModelo parte) : m_sorteio(uiSemente), m_parte(parte) {}

    void SetAgora(REG_XVDMAHMSUTC regAgora) { m_modelo.SetAgora(regAgora); }
    // One operation. Empty: the store answered as the model; otherwise what differs.
    std::string Passo(CBaseMiddleware& rLoja);
    // Everything that the model knows, read again.
    std::string ConfereTudo(CBaseMiddleware& rLoja);

  private:
    std::string Inclui(CBaseMiddleware& rLoja);
    std::string Altera(CBaseMiddleware& rLoja);
    std::string GravaStatus(CBaseMiddleware& rLoja);
    std::string Le(CBaseMiddleware& rLoja);
    std::string LeLista(CBaseMiddleware& rLoja);
    std::string Busca(CBaseMiddleware& rLoja);
    std::string GravaChave(CBaseMiddleware& rLoja);
    std::string BuscaChave(CBaseMiddleware& rLoja);
    std::string GravaDataHora(CBaseMiddleware& rLoja);
    std::string BuscaDataHora(CBaseMiddleware& rLoja);

    std::string ConfereUma(CBaseMiddleware& rLoja, REG_XVDMC regDmc, XVUInt64 ullFlags);
    std::string ConfereBusca(CBaseMiddleware& rLoja, const SFiltroTeste& rFiltro);

    SIntegracaoLida SorteiaIntegracao();
    SFiltroTeste SorteiaFiltro();
    CXVModeloLoja::TChave SorteiaChave();
    REG_XVDMC SorteiaDmc();
    std::string SorteiaTexto();
    XVUInt SorteiaSistema();
    XVUInt64 SorteiaChaveExterna();
    REG_XVDMAHMSUTC SorteiaDataHora();
    XVUInt64 Escolhe(XVUInt64 uiLimite) { return m_sorteio.Ate(uiLimite); }
    XVUInt Enumeracao(XVUInt ulQuantidade);

    CXVSorteio m_sorteio;
    const SParteModelo m_parte;
    CXVModeloLoja m_modelo;
    XVUInt64 m_uiTextos = 0;
};
