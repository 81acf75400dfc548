// Records that cross the component's interface: little-endian, natural alignment, fixed offsets.
//
// Counted buffers hand over bytes, no terminator counted; empty is null and 0. Buffers in results come
// from XVAmbienteSO::AlocaSaida and belong to the caller (contract/XVCR_BuffersPS.h frees whole records).
#pragma once

#include <cstddef>

#include "support/values/XVDmc.h"

struct _REG_DF_TEXTOPS {
    XVUInt ulQtdBytes;
    XVUInt ulFiller;
    XVByte* pTexto;
    XVUInt64 pFiller;
};
static_assert(sizeof(_REG_DF_TEXTOPS) == 24 && offsetof(_REG_DF_TEXTOPS, pTexto) == 8);

struct _REG_CR_LISTA_BYTESPS {
    XVUInt ulQtdBytes;
    XVUInt ulFiller;
    XVByte* pListaBytes;
    XVUInt64 pFiller;
};
static_assert(sizeof(_REG_CR_LISTA_BYTESPS) == 24);

struct _REG_DF_LISTA_XVDMCPS {
    XVUInt ulQuantidade;
    XVUInt ulFiller;
    REG_XVDMC* pLista;
    XVUInt64 pFiller;
};
static_assert(sizeof(_REG_DF_LISTA_XVDMCPS) == 24);

struct tagREG_CR_INTEGRACAO_MIDDLEWAREPS {
    _REG_DF_TEXTOPS regRegistroJSON;
    _REG_DF_TEXTOPS regMensagemIntegracao;
    _REG_DF_TEXTOPS regJSONRetornoIntegracao;
    REG_XVDMC regDmc;
    REG_XVDMC regDmcIntegracaoOrigem;
    REG_XVDMC regDmcMovimentoOrigem;
    REG_XVDMAHMSUTC regDataHoraInclusao;
    REG_XVDMAHMSUTC regDataHoraAlteracaoStatus;
    XVUInt64 uiChaveIntegracaoSistemaTerceiro;
    XVUInt64 uiChaveRegistroSistemaTerceiro;
    XVUInt64 uiBaseDadosTerceiro;
    XVUInt eTipoIntegracao;
    XVUInt eStatusIntegracao;
    XVUInt eSistemaIntegracao;
    XVUInt eTipoTransacao;
    XVUInt ulPonteiroFilial;
    XVUInt ulPonteiroUsuarioInclusao;
    XVUInt ulPonteiroUsuarioCancelamento;
    XVUInt ulPonteiroAuxiliar;
    XVByte cReconsultarIdTerceiros;
    XVByte ucTipoPonteiroAuxiliar;
    XVByte cFiller[6];
};
static_assert(sizeof(tagREG_CR_INTEGRACAO_MIDDLEWAREPS) == 176);
static_assert(offsetof(tagREG_CR_INTEGRACAO_MIDDLEWAREPS, regDmc) == 72);
static_assert(offsetof(tagREG_CR_INTEGRACAO_MIDDLEWAREPS, uiChaveIntegracaoSistemaTerceiro) == 112);
static_assert(offsetof(tagREG_CR_INTEGRACAO_MIDDLEWAREPS, eTipoIntegracao) == 136);
static_assert(offsetof(tagREG_CR_INTEGRACAO_MIDDLEWAREPS, cReconsultarIdTerceiros) == 168);

struct tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS {
    REG_XVDMC regDmc;
    _REG_DF_TEXTOPS regMensagemIntegracao;
    _REG_DF_TEXTOPS regJSONRetornoIntegracao;
    XVUInt64 uiChaveIntegracaoSistemaTerceiro;
    XVUInt eStatusIntegracao;
    XVUInt eSistemaIntegracao;
    XVByte cFiller[8];
};
static_assert(sizeof(tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS) == 80);
static_assert(offsetof(tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS, uiChaveIntegracaoSistemaTerceiro) == 56);

struct tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS {
    XVUInt64 uiChaveIntegracaoSistemaTerceiroInicial;
    XVUInt64 uiChaveIntegracaoSistemaTerceiroFinal;
    REG_XVDMAHMSUTC regDataHoraInicialInclusao;
    REG_XVDMAHMSUTC regDataHoraFinalInclusao;
    REG_XVDMAHMSUTC regDataHoraInicialAlteracaoStatus;
    REG_XVDMAHMSUTC regDataHoraFinalAlteracaoStatus;
    XVUInt ulQuantidadeTipoIntegracao;
    XVUInt ulQuantidadeStatusIntegracao;
    XVUInt ulQuantidadeSistemaIntegracao;
    XVUInt ulQuantidadeTipoTransacao;
    XVUInt* pListaTipoIntegracao;
    XVUInt* pListaStatusIntegracao;
    XVUInt* pListaSistemaIntegracao;
    XVUInt* pListaTipoTransacao;
};
static_assert(sizeof(tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS) == 64 + 4 * sizeof(void*));
static_assert(offsetof(tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS, pListaTipoIntegracao) == 64);

struct tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS {
    XVUInt64 uiChaveRegistroSistemaTerceiro;
    REG_XVDMC regDmcRegistroTelvo;
    XVUInt64 uiBaseDadosTerceiro;
    XVUInt eTipoIntegracao;
    XVUInt eSistemaIntegracao;
    REG_XVDMC regDmcOrigemIntegracao;
};
static_assert(sizeof(tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS) == 40);

struct tagREG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS {
    XVUInt64 uiChaveRegistroSistemaTerceiro;
    REG_XVDMC regDmcRegistroTelvo;
    XVUInt64 uiBaseDadosTerceiro;
    XVUInt eTipoIntegracao;
    XVUInt eSistemaIntegracao;
    XVByte cFiller[8];
};
static_assert(sizeof(tagREG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS) == 40);

struct tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS {
    REG_XVDMAHMSUTC regDataHora;
    XVUInt eTipoIntegracao;
    XVUInt eSistemaIntegracao;
    XVUInt eTipoData;
    XVByte cFiller[4];
};
static_assert(sizeof(tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS) == 24);

struct tagREG_CR_FILTRO_DATA_HORA_INTEGRACAO_TERCEIROPS {
    XVByte cFiller[4];
    XVUInt eTipoIntegracao;
    XVUInt eSistemaIntegracao;
    XVUInt eTipoData;
};
static_assert(sizeof(tagREG_CR_FILTRO_DATA_HORA_INTEGRACAO_TERCEIROPS) == 16);

struct tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS {
    _REG_DF_TEXTOPS regChaveConsulta;
    XVUInt eTipoConsulta;
    XVUInt ulPonteiroAuxiliar;
    XVByte cFiller[7];
    XVByte ucTipoPonteiroAuxiliar;
};
static_assert(sizeof(tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS) == 40);
static_assert(offsetof(tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS, ucTipoPonteiroAuxiliar) == 39);

struct tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS {
    _REG_DF_TEXTOPS regMensagemRetorno;
    _REG_DF_TEXTOPS regJSONRetorno;
    XVUInt eStatusConsulta;
    XVUInt ulTamanhoDocumentoRetorno;
    XVByte cFiller[8];
    XVByte* pDocumentoRetorno;
    XVUInt64 pFiller;
};
static_assert(sizeof(tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS) == 80);
static_assert(offsetof(tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS, pDocumentoRetorno) == 64);

// A component's last error. Texts are UTF-8, cut to their field at a character boundary and always
// terminated.
struct REG_DF_ULTIMO_ERROPS {
    HRESULT hrErro;        // 0 when no error has occurred
    XVUInt ulLinha;        // source line of the failed step
    XVUInt64 regDataHora;  // REG_XVDMAHMSUTC of the failure
    char szNome[80];       // symbolic name of the code
    char szFuncao[96];     // function that failed
    char szFonte[40];      // its source unit
    char szMensagem[248];  // sentence for a person
};
static_assert(sizeof(REG_DF_ULTIMO_ERROPS) == 480);
