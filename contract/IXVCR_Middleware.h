// The component's interface as the component implements it and the client calls it: the same slots, in the
// same order and with the same binary shapes, as XVCR_Middleware.idl, over the system's own records.
//
// Every output is cleared on entry. Buffers in outputs come from XVAmbienteSO::AlocaSaida and belong to
// the caller. No exception leaves a slot. Thread rule: any thread.
#pragma once

#include <string_view>

#include "contract/XVCR_MiddlewareGuids.h"
#include "contract/XVCR_RegistrosPS.h"
#include "contract/XVRegistroInicializacao.h"
#include "platform/XVCom.h"

// IDL's "long" and "unsigned long": 32 bits in every language.
using XVLongPS = std::int32_t;

// The binary form of an identifier's text ("8-4-4-4-12" hexadecimal digits).
consteval GUID XVGuidDeTexto(const char (&szTexto)[37]) {
    const auto digito = [](char c) {
        return static_cast<XVUInt>(c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10);
    };
    const auto numero = [&](std::size_t uiInicio, std::size_t uiDigitos) {
        XVUInt ulValor = 0;
        for (std::size_t i = 0; i < uiDigitos; ++i) ulValor = ulValor << 4 | digito(szTexto[uiInicio + i]);
        return ulValor;
    };
    GUID guid{};
    guid.Data1 = numero(0, 8);
    guid.Data2 = static_cast<XVUShort>(numero(9, 4));
    guid.Data3 = static_cast<XVUShort>(numero(14, 4));
    for (std::size_t i = 0; i < 8; ++i)
        guid.Data4[i] = static_cast<XVByte>(numero(i < 2 ? 19 + 2 * i : 20 + 2 * i, 2));
    return guid;
}

XV_INTERFACE_COM_INICIO

struct IXVCR_Middleware : public IUnknown {
    static constexpr std::string_view k_sNomeInterface = "IXVCR_Middleware";
    static constexpr GUID k_iidInterface = XVGuidDeTexto(XV_TEXTO_UUID(XV_UUID_IXVCR_MIDDLEWARE));

    // 3. As slot 9.
    virtual HRESULT STDMETHODCALLTYPE Inicializa(const REG_DF_INICIALIZAPS* pRegInicializa) = 0;
    // 4. Whether there is a component at all: always 1.
    virtual HRESULT STDMETHODCALLTYPE EstaInicializado(XVLongPS* plInicializado) = 0;
    // 5. The last failure of this component; all zero when there was none.
    virtual HRESULT STDMETHODCALLTYPE GetUltimoErro(REG_DF_ULTIMO_ERROPS* pRegUltimoErro) = 0;
    // 6 to 8. Operations that the suite's other components share; this one answers E_NOTIMPL.
    virtual HRESULT STDMETHODCALLTYPE FuncaoGenerica(XVUInt ulFuncao, const _REG_CR_LISTA_BYTESPS* pEntrada,
                                                     _REG_CR_LISTA_BYTESPS* pSaida) = 0;
    virtual HRESULT STDMETHODCALLTYPE
    AlteracaoMultiplaCadastro(XVUInt ulPonteiro, const _REG_CR_LISTA_BYTESPS* pListaAlteracoes) = 0;
    virtual HRESULT STDMETHODCALLTYPE
    AlteracaoMultiplaMovimento(XVUInt64 uiDmc, const _REG_CR_LISTA_BYTESPS* pListaAlteracoes) = 0;
    // 9. Initialises the component for the record's company, user and session; again: finalises first.
    virtual HRESULT STDMETHODCALLTYPE Inicializa_Padrao(const REG_DF_INICIALIZAPS* pRegInicializa) = 0;

    // 10 to 22. The integration store's operations (middleware/BaseMiddleware.h).
    virtual HRESULT STDMETHODCALLTYPE LeIntegracao(XVUInt64 uiDmc,
                                                   tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pRegIntegracao,
                                                   XVUInt64 ullFlagLeitura) = 0;
    virtual HRESULT STDMETHODCALLTYPE LeIntegracoes(const _REG_DF_LISTA_XVDMCPS* pListaDmc,
                                                    XVUInt* pulQuantidade,
                                                    tagREG_CR_INTEGRACAO_MIDDLEWAREPS** ppRegIntegracao,
                                                    XVUInt64 ullFlagLeitura) = 0;
    virtual HRESULT STDMETHODCALLTYPE GravaIntegracaoInstantanea(
        REG_XVDMC* pRegDmc, const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pRegIntegracao) = 0;
    virtual HRESULT STDMETHODCALLTYPE
    GravaIntegracao(REG_XVDMC* pRegDmc, const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pRegIntegracao) = 0;
    virtual HRESULT STDMETHODCALLTYPE GravaPendenciaIntegracao(
        XVUInt64 uiDmcOrigem, const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pRegIntegracao) = 0;
    virtual HRESULT STDMETHODCALLTYPE
    GravaStatusIntegracao(const tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS* pRegStatus) = 0;
    virtual HRESULT STDMETHODCALLTYPE BuscaPonteiros(
        const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS* pRegFiltro, _REG_DF_LISTA_XVDMCPS* pListaDmc) = 0;
    virtual HRESULT STDMETHODCALLTYPE
    GravaChaveRegistroTelvoParaTerceiro(const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS* pReg) = 0;
    virtual HRESULT STDMETHODCALLTYPE BuscaChaveRegistroTelvoParaTerceiro(
        const tagREG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS* pRegFiltro,
        tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS* pReg) = 0;
    virtual HRESULT STDMETHODCALLTYPE GravaChaveRegistroTelvoParaTerceiroPendente(
        const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS* pReg) = 0;
    virtual HRESULT STDMETHODCALLTYPE
    GravaDataHoraIntegracaoTerceiro(const tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS* pReg) = 0;
    virtual HRESULT STDMETHODCALLTYPE
    BuscaDataHoraIntegracaoTerceiro(const tagREG_CR_FILTRO_DATA_HORA_INTEGRACAO_TERCEIROPS* pRegFiltro,
                                    tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS* pReg) = 0;
    virtual HRESULT STDMETHODCALLTYPE
    BuscaDadosSistemaTerceiro(const tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS* pRegConsulta,
                              tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS* pRegStatus) = 0;

  protected:
    ~IXVCR_Middleware() = default;
};

XV_INTERFACE_COM_FIM

inline constexpr GUID k_clsidMiddleware = XVGuidDeTexto(XV_TEXTO_UUID(XV_UUID_CLASSE_MIDDLEWARE));
