// The operations of a store as the commands use them. Results are the store's own HRESULTs; outputs are
// defined only on success. Thread rule: one thread.
#pragma once

#include <vector>

#include "platform/XVTipos.h"
#include "tools/xvcr/XVValores.h"

// Who asks, and for which store.
struct SAcesso {
    std::string sDiretorio;  // module directory; empty: the machine's configuration names it
    std::string sEmpresa;
    XVUShort usUsuario = 0;
    XVUInt ulNumeroSessao = 0;
    bool bSomenteLeitura = false;  // open without locking; nothing can be recorded
};

class IXVOperacoes {
  public:
    virtual ~IXVOperacoes() = default;

    // Opens the store. On failure nothing stays open.
    virtual HRESULT Inicializa(const SAcesso& rAcesso) = 0;
    virtual HRESULT Finaliza() = 0;

    // *pDmc null: a new integration, whose DMC is returned there.
    virtual HRESULT GravaIntegracao(REG_XVDMC* pDmc, const SIntegracao& rDados) = 0;
    virtual HRESULT GravaIntegracaoInstantanea(REG_XVDMC* pDmc, const SIntegracao& rDados) = 0;
    virtual HRESULT GravaPendenciaIntegracao(REG_XVDMC regDmcOrigem, const SIntegracao& rDados) = 0;
    virtual HRESULT GravaStatusIntegracao(const SStatusIntegracao& rDados) = 0;

    // uiFlags: bits of XVFlagLeitura.
    virtual HRESULT LeIntegracao(REG_XVDMC regDmc, XVUInt64 uiFlags, SIntegracao* pDados) = 0;
    virtual HRESULT LeIntegracoes(const std::vector<REG_XVDMC>& lista, XVUInt64 uiFlags,
                                  std::vector<SIntegracao>* pLista) = 0;
    virtual HRESULT BuscaPonteiros(const SFiltroIntegracao& rFiltro, std::vector<REG_XVDMC>* pLista) = 0;

    virtual HRESULT GravaChaveRegistro(const SChaveRegistro& rDados) = 0;
    virtual HRESULT GravaChaveRegistroPendente(const SChaveRegistro& rDados) = 0;
    // Nothing found: success and a null regDmcRegistroTelvo.
    virtual HRESULT BuscaChaveRegistro(const SChaveRegistro& rFiltro, SChaveRegistro* pDados) = 0;

    virtual HRESULT GravaDataHora(const SDataHoraIntegracao& rDados) = 0;
    // Nothing found: success and a null regDataHora.
    virtual HRESULT BuscaDataHora(const SDataHoraIntegracao& rFiltro, SDataHoraIntegracao* pDados) = 0;

    virtual HRESULT BuscaDadosSistemaTerceiro(const SConsultaTerceiro& rConsulta,
                                              SRespostaConsulta* pResposta) = 0;
};
