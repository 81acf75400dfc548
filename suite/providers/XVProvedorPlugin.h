/* Binary interface of a provider library "XVProvedor<number of the system>" (docs/providers.md). Plain C, so
 * that any compiler can make one: natural alignment, little-endian, the platform's C calling convention.
 *
 * The library defines and exports XVProvedorObtem, declared below: a definition of another form does not
 * compile where this header is included. The table it fills must stay valid until the process ends; the
 * library is never unloaded. Functions may be called from several threads at once and must let no exception
 * out.
 *
 * Ownership: XVProvedorTexto is lent for the call only, never terminated, and never freed by the receiver.
 * XVProvedorBuffer is allocated by the library and given back through its own pfnLibera exactly once, after
 * the call, whatever the call returned; a buffer that was not filled stays as it came (all zero).
 *
 * Results are HRESULTs; positive ones are successes. E_NOTIMPL (0x80004001) means that the system does not
 * offer the operation and that nothing was done. A function pointer may be null with the same meaning,
 * pfnLibera excepted. Not offering what surrounds an exchange (before, after, parameters, pending items) is
 * no failure.
 */
#ifndef XVPROVEDORPLUGIN_H
#define XVPROVEDORPLUGIN_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* How the functions of a library are called, and how its entry is exported. */
#if defined(_WIN32)
#define XVPROVEDOR_CHAMADA __cdecl
#define XVPROVEDOR_EXPORTA __declspec(dllexport)
#else
#define XVPROVEDOR_CHAMADA
#define XVPROVEDOR_EXPORTA __attribute__((visibility("default")))
#endif

#define XVPROVEDOR_VERSAO 1U
#define XVPROVEDOR_FUNCAO "XVProvedorObtem"

typedef struct XVProvedorTexto {
    const char* pBytes;
    uint64_t uiTamanho;
} XVProvedorTexto;

/* bPreenchido 1: pBytes and uiTamanho hold the answer (0 bytes: an empty text). Texts hold no NUL byte. */
typedef struct XVProvedorBuffer {
    void* pBytes;
    uint64_t uiTamanho;
    uint32_t bPreenchido;
    uint32_t ulFiller;
} XVProvedorBuffer;

/* Who asks. */
typedef struct XVProvedorDono {
    uint32_t ulTamanho; /* sizeof(XVProvedorDono) of the caller; so in every record below */
    uint32_t ulNumeroSessao;
    XVProvedorTexto sEmpresa;
    uint32_t ulUsuario;
    uint32_t ulFiller;
} XVProvedorDono;

/* One integration. The library may change the fields marked with *; all others are read only. */
typedef struct XVProvedorDados {
    uint32_t ulTamanho;
    uint32_t ulFiller;
    XVProvedorTexto sRegistroJSON;
    XVProvedorTexto sMensagemIntegracao;
    XVProvedorTexto sJSONRetornoIntegracao;
    XVProvedorBuffer bufRegistroJSON;          /* * replaces the text of the same name */
    XVProvedorBuffer bufMensagemIntegracao;    /* * */
    XVProvedorBuffer bufJSONRetornoIntegracao; /* * */
    uint64_t uiDmc;
    uint64_t uiDmcIntegracaoOrigem;
    uint64_t uiDmcMovimentoOrigem;
    uint64_t uiDataHoraInclusao;
    uint64_t uiDataHoraAlteracaoStatus;
    uint64_t uiChaveIntegracaoSistemaTerceiro; /* * */
    uint64_t uiChaveRegistroSistemaTerceiro;   /* * */
    uint64_t uiBaseDadosTerceiro;              /* * */
    uint32_t eTipoIntegracao;
    uint32_t eStatusIntegracao; /* * */
    uint32_t eSistemaIntegracao;
    uint32_t eTipoTransacao;
    uint32_t ulPonteiroFilial; /* * */
    uint32_t ulPonteiroAuxiliar;
    uint8_t cReconsultarIdTerceiros; /* * */
    uint8_t ucTipoPonteiroAuxiliar;
    uint8_t cFiller[6];
} XVProvedorDados;

typedef struct XVProvedorParametros {
    uint32_t ulTamanho;
    uint32_t eTipoIntegracao; /* * (AtualizaParametrosIntegracao only, so all below) */
    uint64_t uiDmcOrigem;     /* * */
    uint64_t uiDmcIntegracao;
    uint64_t uiChaveRegistroSistemaTerceiro; /* * */
    uint64_t uiBaseDadosTerceiro;
    uint32_t eSistemaIntegracao;
    uint32_t eTipoTransacao;   /* * */
    uint32_t ulPonteiroFilial; /* * */
    uint32_t ulPonteiroAuxiliar;
    uint8_t ucTipoPonteiroAuxiliar;
    uint8_t cFiller[7];
} XVProvedorParametros;

typedef struct XVProvedorPendencia {
    XVProvedorBuffer bufJSON;
    uint64_t uiDmcOrigem;
    uint64_t uiBaseDadosTerceiro;
    uint64_t uiChaveRegistroSistemaTerceiro;
    uint32_t eSistemaIntegracao;
    uint32_t ulPonteiroFilial;
    uint8_t cReconsultarIdTerceiros;
    uint8_t cFiller[7];
} XVProvedorPendencia;

/* The answer of BuscaIntegracoes: one array, freed after the buffers of its elements. */
typedef struct XVProvedorListaPendencias {
    uint32_t ulTamanho;
    uint32_t ulTamanhoElemento; /* the library writes its sizeof(XVProvedorPendencia) here */
    XVProvedorPendencia* pLista;
    uint32_t ulQuantidade; /* at most 1,000,000 */
    uint32_t ulFiller;
} XVProvedorListaPendencias;

typedef struct XVProvedorConsulta {
    uint32_t ulTamanho;
    uint32_t eTipoConsulta;
    XVProvedorTexto sChaveConsulta;
    uint32_t ulPonteiroAuxiliar;
    uint8_t ucTipoPonteiroAuxiliar;
    uint8_t cFiller[3];
} XVProvedorConsulta;

typedef struct XVProvedorStatusConsulta {
    uint32_t ulTamanho;
    uint32_t eStatusConsulta;
    XVProvedorBuffer bufMensagemRetorno;
    XVProvedorBuffer bufJSONRetorno;
    XVProvedorBuffer bufDocumentoRetorno; /* raw bytes */
} XVProvedorStatusConsulta;

typedef int32_t(XVPROVEDOR_CHAMADA* PFXVProvedorDados)(void* pContexto, const XVProvedorDono* pDono,
                                                       XVProvedorDados* pDados);

typedef struct XVProvedorTabela {
    uint32_t ulTamanho; /* both written by the library: sizeof(XVProvedorTabela) and XVPROVEDOR_VERSAO */
    uint32_t ulVersao;
    uint32_t eSistema; /* must be the number in the library's name */
    uint32_t ulFiller;
    void* pContexto; /* handed to every function */
    void(XVPROVEDOR_CHAMADA* pfnLibera)(void* pContexto, void* pBuffer);
    PFXVProvedorDados pfnRealizaOperacaoAnterior;
    PFXVProvedorDados pfnEnviaJson;
    PFXVProvedorDados pfnBuscaDados;
    PFXVProvedorDados pfnExcluiDados;
    int32_t(XVPROVEDOR_CHAMADA* pfnRealizaOperacaoPosterior)(void* pContexto, const XVProvedorDono* pDono,
                                                             const XVProvedorParametros* pParametros);
    int32_t(XVPROVEDOR_CHAMADA* pfnAtualizaParametrosIntegracao)(void* pContexto, const XVProvedorDono* pDono,
                                                                 XVProvedorParametros* pParametros);
    int32_t(XVPROVEDOR_CHAMADA* pfnBuscaIntegracoes)(void* pContexto, const XVProvedorDono* pDono,
                                                     const XVProvedorParametros* pParametros,
                                                     XVProvedorListaPendencias* pLista);
    int32_t(XVPROVEDOR_CHAMADA* pfnBuscaDadosSistemaTerceiro)(void* pContexto, const XVProvedorDono* pDono,
                                                              const XVProvedorConsulta* pConsulta,
                                                              XVProvedorStatusConsulta* pStatus);
} XVProvedorTabela;

/* Exported by the library. ulVersao and pTabela->ulTamanho say what the caller knows; a library that needs
 * another version answers a failure and is not used. */
typedef int32_t(XVPROVEDOR_CHAMADA* PFXVProvedorObtem)(uint32_t ulVersao, XVProvedorTabela* pTabela);
XVPROVEDOR_EXPORTA int32_t XVPROVEDOR_CHAMADA XVProvedorObtem(uint32_t ulVersao, XVProvedorTabela* pTabela);

#ifdef __cplusplus
}
#endif

#endif
