// Random operations on a store, each checked at once against the model.
//
// Thread rule: one object, one thread; objects of different shares may work on one store at once.
#pragma once

#include <random>
#include <string>

#include "middleware/BaseMiddleware.h"
#include "tests/harness/XVRelogioFalso.h"
#include "tests/model/XVModeloLoja.h"

// Where the random choices come from: a seed, or the bytes of a fuzzer.
class IXVDecisoes {
  public:
    virtual ~IXVDecisoes() = default;
    virtual XVUInt64 Escolhe(XVUInt64 uiLimite) = 0;  // 0 to uiLimite - 1; uiLimite above 0
};

class CXVDecisoesSemente final : public IXVDecisoes {
  public:
    explicit CXVDecisoesSemente(XVUInt64 uiSemente) : m_sorteio(uiSemente) {}
    XVUInt64 Escolhe(XVUInt64 uiLimite) override { return m_sorteio() % uiLimite; }

  private:
    std::mt19937_64 m_sorteio;
};

// The keys, records and types that one of several workers uses alone.
struct SParteModelo {
    unsigned uiQual = 0;
    unsigned uiQuantas = 1;
};

class CXVPassosModelo {
  public:
    CXVPassosModelo(IXVDecisoes& rDecisoes, SParteModelo parte) : m_rDecisoes(rDecisoes), m_parte(parte) {}

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
    std::string BuscaOuRecusa(CBaseMiddleware& rLoja);
    std::string RecusaTroca(CBaseMiddleware& rLoja);

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
    XVUInt64 Escolhe(XVUInt64 uiLimite) { return m_rDecisoes.Escolhe(uiLimite); }
    XVUInt Enumeracao(XVUInt ulQuantidade);

    IXVDecisoes& m_rDecisoes;
    const SParteModelo m_parte;
    CXVModeloLoja m_modelo;
    XVUInt64 m_uiTextos = 0;
};

// A clock that jumps among a few days, back as well as on.
class CXVDiasModelo {
  public:
    explicit CXVDiasModelo(CXVRelogioFalso& rRelogio) : m_rRelogio(rRelogio) {}
    // Sets the clock to one of the days and a time of day; the date-time it then shows.
    REG_XVDMAHMSUTC Sorteia(IXVDecisoes& rDecisoes);

  private:
    CXVRelogioFalso& m_rRelogio;
};
