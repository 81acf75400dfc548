// The component: the integration store's operations as interface methods. No rule of the store lives
// here: each method clears its outputs, checks what arrived from outside and calls the operation of the
// same name inside the common frame.
//
// A class template over the logic object, so that the layer can be run over another one; the component
// itself is CXVCR_Middleware.
#pragma once

#include "contract/IXVCR_Middleware.h"
#include "core/xvrpcdll/T_XVUnknown.h"
#include "core/xvrpcdll/XVListasPS.h"

template <class TLogica>
class T_XVCR_Middleware : public T_XVUnknown<IXVCR_Middleware, TLogica> {
  public:
    XV_CLASSE("CXVCR_Middleware", "XVCR_Middleware")

    HRESULT STDMETHODCALLTYPE LeIntegracao(XVUInt64 uiDmc, tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pRegIntegracao,
                                           XVUInt64 ullFlagLeitura) override;
    HRESULT STDMETHODCALLTYPE LeIntegracoes(const _REG_DF_LISTA_XVDMCPS* pListaDmc, XVUInt* pulQuantidade,
                                            tagREG_CR_INTEGRACAO_MIDDLEWAREPS** ppRegIntegracao,
                                            XVUInt64 ullFlagLeitura) override;
    HRESULT STDMETHODCALLTYPE GravaIntegracaoInstantanea(
        REG_XVDMC* pRegDmc, const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pRegIntegracao) override;
    HRESULT STDMETHODCALLTYPE
    GravaIntegracao(REG_XVDMC* pRegDmc, const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pRegIntegracao) override;
    HRESULT STDMETHODCALLTYPE GravaPendenciaIntegracao(
        XVUInt64 uiDmcOrigem, const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pRegIntegracao) override;
    HRESULT STDMETHODCALLTYPE
    GravaStatusIntegracao(const tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS* pRegStatus) override;
    HRESULT STDMETHODCALLTYPE BuscaPonteiros(const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS* pRegFiltro,
                                             _REG_DF_LISTA_XVDMCPS* pListaDmc) override;
    HRESULT STDMETHODCALLTYPE
    GravaChaveRegistroTelvoParaTerceiro(const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS* pReg) override;
    HRESULT STDMETHODCALLTYPE BuscaChaveRegistroTelvoParaTerceiro(
        const tagREG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS* pRegFiltro,
        tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS* pReg) override;
    HRESULT STDMETHODCALLTYPE GravaChaveRegistroTelvoParaTerceiroPendente(
        const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS* pReg) override;
    HRESULT STDMETHODCALLTYPE
    GravaDataHoraIntegracaoTerceiro(const tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS* pReg) override;
    HRESULT STDMETHODCALLTYPE
    BuscaDataHoraIntegracaoTerceiro(const tagREG_CR_FILTRO_DATA_HORA_INTEGRACAO_TERCEIROPS* pRegFiltro,
                                    tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS* pReg) override;
    HRESULT STDMETHODCALLTYPE
    BuscaDadosSistemaTerceiro(const tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS* pRegConsulta,
                              tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS* pRegStatus) override;
};

#include "core/xvrpcdll/XVCR_Middleware.inl"
