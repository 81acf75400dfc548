// What a store must answer, kept in plain containers and written from the rules alone: no file, no index, no
// code of the store. Thread rule: one thread.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/middleware/XVCenarioLoja.h"

class CXVModeloLoja {
  public:
    using TChave = tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS;
    using TStatus = tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS;
    using TDataHora = tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS;

    void SetAgora(REG_XVDMAHMSUTC regAgora) { m_regAgora = regAgora; }

    // Whether a new integration would be taken, and the DMC it gets when nobody else records on that day.
    static HRESULT PodeIncluir(const SIntegracaoLida& rEntrada);
    REG_XVDMC ProximoDmc() const;
    void Inclui(REG_XVDMC regDmc, const SIntegracaoLida& rEntrada);
    HRESULT Altera(REG_XVDMC regDmc, const SIntegracaoLida& rEntrada);
    HRESULT GravaStatus(const TStatus& rStatus, XVUShort usUsuario);
    // Null: no such integration.
    const SIntegracaoLida* Le(REG_XVDMC regDmc) const;
    std::vector<XVUInt64> Busca(const SFiltroTeste& rFiltro) const;
    // Every DMC that was ever given, those taken over included.
    const std::vector<REG_XVDMC>& GetDmcs() const { return m_listaDmcs; }

    HRESULT GravaChave(const TChave& rChave, bool bPendente);
    // All zero when nothing is found. uiChaveRegistroSistemaTerceiro 0 and a null record match nothing.
    TChave BuscaChave(const TChave& rFiltro) const;
    HRESULT GravaDataHora(const TDataHora& rDataHora);
    TDataHora BuscaDataHora(const TDataHora& rFiltro) const;

  private:
    SIntegracaoLida* Localiza(REG_XVDMC regDmc);
    SIntegracaoLida* LocalizaPorChave(XVUInt64 uiChave, XVUInt eSistema);
    TChave* LocalizaChave(const TChave& rChave);
    static bool PassaNivel2(const SFiltroTeste& rFiltro, const SIntegracaoLida& rIntegracao);

    REG_XVDMAHMSUTC m_regAgora{};
    std::vector<SIntegracaoLida> m_listaIndex;  // in the order of the index
    std::map<XVUInt, XVUInt> m_mapaPosicoes;    // integrations recorded by date
    std::vector<REG_XVDMC> m_listaDmcs;
    std::vector<TChave> m_listaChaves;
    std::vector<TDataHora> m_listaDatasHoras;
};
