// On-disk record layouts of the integration store: packed, little-endian. A layout never changes; a new
// one gets a new version number and a conversion step.
#pragma once

#include <cstddef>

#include "core/xvdatabase/XVConteudo.h"
#include "support/trace/XVCheck.h"
#include "support/values/XVDmc.h"

#pragma pack(push, 1)

// One per integration, in "CRINDEXINTEG.dat".
struct REG_CR_INDEX_INTEGRACAO_V1 {
    XVUInt64 uiChaveIntegracaoSistemaTerceiro;  // the external system's key; 0: not yet known
    REG_XVDMC regDmcIntegracao;
    XVUInt eSistemaIntegracao;
    XVUInt eStatusIntegracao;
};
static_assert(sizeof(REG_CR_INDEX_INTEGRACAO_V1) == 24);
static_assert(offsetof(REG_CR_INDEX_INTEGRACAO_V1, regDmcIntegracao) == 8);
static_assert(offsetof(REG_CR_INDEX_INTEGRACAO_V1, eSistemaIntegracao) == 16);
static_assert(offsetof(REG_CR_INDEX_INTEGRACAO_V1, eStatusIntegracao) == 20);

// The index keeps a summary of its records. Whoever makes a file of them without XVResumoIndex.h must not
// compile: it would be another class of the same name.
template <class T>
struct TXVResumo;
template <>
struct TXVResumo<REG_CR_INDEX_INTEGRACAO_V1>;

// One per integration, in the "CRINTEGMID????????.dat" of its date at the position in its DMC. Status,
// external system and external key are kept in the index record only.
struct REG_CR_INTEGRACAO_MIDDLEWARE_V2 {
    REG_XVDMC regDmcIntegracaoOrigem;
    REG_XVDMC regDmcMovimentoOrigem;
    REG_XVDMAHMSUTC regDataHoraInclusao;
    REG_XVDMAHMSUTC regDataHoraAlteracaoStatus;
    XVUInt64 uiBaseDadosTerceiro;
    XVUInt eTipoIntegracao;
    XVUInt eTipoTransacao;
    XVUInt ulPonteiroJSONRegistro;  // positions in the text files of the same date; 0: none
    XVUInt ulPonteiroMensagemRetorno;
    XVUInt ulPonteiroJSONRetornoIntegracao;
    XVUInt ulPonteiroFilial;
    XVUInt ulPonteiroUsuarioInclusao;
    XVUInt ulPonteiroUsuarioCancelamento;
    XVByte cReconsultarIdTerceiros;
    XVByte ucTipoPonteiroAuxiliar;
    XVUInt ulPonteiroAuxiliar;  // unaligned
    XVByte aFiller[10];
};
static_assert(sizeof(REG_CR_INTEGRACAO_MIDDLEWARE_V2) == 88);
static_assert(offsetof(REG_CR_INTEGRACAO_MIDDLEWARE_V2, regDmcMovimentoOrigem) == 8);
static_assert(offsetof(REG_CR_INTEGRACAO_MIDDLEWARE_V2, regDataHoraInclusao) == 16);
static_assert(offsetof(REG_CR_INTEGRACAO_MIDDLEWARE_V2, regDataHoraAlteracaoStatus) == 24);
static_assert(offsetof(REG_CR_INTEGRACAO_MIDDLEWARE_V2, uiBaseDadosTerceiro) == 32);
static_assert(offsetof(REG_CR_INTEGRACAO_MIDDLEWARE_V2, eTipoIntegracao) == 40);
static_assert(offsetof(REG_CR_INTEGRACAO_MIDDLEWARE_V2, eTipoTransacao) == 44);
static_assert(offsetof(REG_CR_INTEGRACAO_MIDDLEWARE_V2, ulPonteiroJSONRegistro) == 48);
static_assert(offsetof(REG_CR_INTEGRACAO_MIDDLEWARE_V2, ulPonteiroMensagemRetorno) == 52);
static_assert(offsetof(REG_CR_INTEGRACAO_MIDDLEWARE_V2, ulPonteiroJSONRetornoIntegracao) == 56);
static_assert(offsetof(REG_CR_INTEGRACAO_MIDDLEWARE_V2, ulPonteiroFilial) == 60);
static_assert(offsetof(REG_CR_INTEGRACAO_MIDDLEWARE_V2, ulPonteiroUsuarioInclusao) == 64);
static_assert(offsetof(REG_CR_INTEGRACAO_MIDDLEWARE_V2, ulPonteiroUsuarioCancelamento) == 68);
static_assert(offsetof(REG_CR_INTEGRACAO_MIDDLEWARE_V2, cReconsultarIdTerceiros) == 72);
static_assert(offsetof(REG_CR_INTEGRACAO_MIDDLEWARE_V2, ucTipoPonteiroAuxiliar) == 73);
static_assert(offsetof(REG_CR_INTEGRACAO_MIDDLEWARE_V2, ulPonteiroAuxiliar) == 74);

// Its columns likewise are XVColunasIntegracao.h.
template <class T>
struct TXVColunas;
template <>
struct TXVColunas<REG_CR_INTEGRACAO_MIDDLEWARE_V2>;

// Earlier layout of the integration record, read by the conversions only.
struct REG_CR_INTEGRACAO_MIDDLEWARE_V1 {
    REG_XVDMC regDmcIntegracaoOrigem;
    REG_XVDMC regDmcMovimentoOrigem;
    REG_XVDMAHMSUTC regDataHoraInclusao;
    REG_XVDMAHMSUTC regDataHoraAlteracaoStatus;
    XVUInt eTipoIntegracao;
    XVUInt eTipoTransacao;
    XVUInt ulPonteiroJSONRegistro;
    XVUInt ulPonteiroMensagemRetorno;
    XVUInt ulPonteiroJSONRetornoIntegracao;
    XVUInt ulPonteiroFilial;
    XVUInt ulPonteiroUsuarioInclusao;
    XVUInt ulPonteiroUsuarioCancelamento;
    XVByte cReconsultarIdTerceiros;
    XVByte aFiller[15];
};
static_assert(sizeof(REG_CR_INTEGRACAO_MIDDLEWARE_V1) == 80);
static_assert(offsetof(REG_CR_INTEGRACAO_MIDDLEWARE_V1, eTipoIntegracao) == 32);
static_assert(offsetof(REG_CR_INTEGRACAO_MIDDLEWARE_V1, ulPonteiroFilial) == 52);
static_assert(offsetof(REG_CR_INTEGRACAO_MIDDLEWARE_V1, cReconsultarIdTerceiros) == 64);

// Key map, in "CRCHAVEREGTER.dat": the id that an external system gave to a record of the suite; id 0 is a
// pending mapping.
struct REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2 {
    XVUInt64 uiChaveRegistroSistemaTerceiro;
    REG_XVDMC regDmcRegistroTelvo;
    XVUInt64 uiBaseDadosTerceiro;
    XVUInt eTipoIntegracao;
    XVUInt eSistemaIntegracao;
    REG_XVDMC regDmcOrigemIntegracao;
};
static_assert(sizeof(REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2) == 40);
static_assert(offsetof(REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2, uiBaseDadosTerceiro) == 16);
static_assert(offsetof(REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2, eTipoIntegracao) == 24);
static_assert(offsetof(REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2, eSistemaIntegracao) == 28);
static_assert(offsetof(REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2, regDmcOrigemIntegracao) == 32);

struct REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V1 {
    XVUInt64 uiChaveRegistroSistemaTerceiro;
    REG_XVDMC regDmcRegistroTelvo;
    XVUInt eTipoIntegracao;
    XVUInt eSistemaIntegracao;
};
static_assert(sizeof(REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V1) == 24);

// One date-time per system, integration type and date kind, in "CRDTHRINTEG.dat".
struct REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1 {
    REG_XVDMAHMSUTC regDataHora;
    XVUInt eTipoIntegracao;
    XVUInt eSistemaIntegracao;
    XVUInt eTipoData;
    XVByte aFiller[12];
};
static_assert(sizeof(REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1) == 32);
static_assert(offsetof(REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1, eTipoIntegracao) == 8);
static_assert(offsetof(REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1, eSistemaIntegracao) == 12);
static_assert(offsetof(REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1, eTipoData) == 16);

#pragma pack(pop)

template <>
inline constexpr std::string_view k_sNomeRegistro<REG_CR_INDEX_INTEGRACAO_V1> = "REG_CR_INDEX_INTEGRACAO_V1";
template <>
inline constexpr std::string_view k_sNomeRegistro<REG_CR_INTEGRACAO_MIDDLEWARE_V1> =
    "REG_CR_INTEGRACAO_MIDDLEWARE_V1";
template <>
inline constexpr std::string_view k_sNomeRegistro<REG_CR_INTEGRACAO_MIDDLEWARE_V2> =
    "REG_CR_INTEGRACAO_MIDDLEWARE_V2";
template <>
inline constexpr std::string_view k_sNomeRegistro<REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V1> =
    "REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V1";
template <>
inline constexpr std::string_view k_sNomeRegistro<REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2> =
    "REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2";
template <>
inline constexpr std::string_view k_sNomeRegistro<REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1> =
    "REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1";

// Dates of the calendar, seconds of a day, reserved bits zero, a pointer where a record is named. Numbers
// and enumerations are open to later programs and prove nothing.
template <>
struct TXVPlausibilidade<REG_CR_INDEX_INTEGRACAO_V1> {
    static bool EhPlausivel(const REG_CR_INDEX_INTEGRACAO_V1& reg) {
        return REG_XVDMC(reg.regDmcIntegracao).EhDeIntegracao();
    }
};

// The first four fields, which both layouts of the integration record begin with.
template <class TReg>
bool XVEhIntegracaoPlausivel(const TReg& reg) {
    return REG_XVDMC(reg.regDmcIntegracaoOrigem).EhValido() &&
           REG_XVDMC(reg.regDmcMovimentoOrigem).EhValido() &&
           REG_XVDMAHMSUTC(reg.regDataHoraInclusao).EhValida() &&
           REG_XVDMAHMSUTC(reg.regDataHoraAlteracaoStatus).EhValida();
}
template <>
struct TXVPlausibilidade<REG_CR_INTEGRACAO_MIDDLEWARE_V1> {
    static bool EhPlausivel(const REG_CR_INTEGRACAO_MIDDLEWARE_V1& reg) {
        return XVEhIntegracaoPlausivel(reg);
    }
};
template <>
struct TXVPlausibilidade<REG_CR_INTEGRACAO_MIDDLEWARE_V2> {
    static bool EhPlausivel(const REG_CR_INTEGRACAO_MIDDLEWARE_V2& reg) {
        return XVEhIntegracaoPlausivel(reg);
    }
};

inline bool XVNomeiaRegistro(REG_XVDMC regDmc) {
    return regDmc.EhValido() && !regDmc.EhNulo();
}
template <>
struct TXVPlausibilidade<REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V1> {
    static bool EhPlausivel(const REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V1& reg) {
        return XVNomeiaRegistro(reg.regDmcRegistroTelvo);
    }
};
template <>
struct TXVPlausibilidade<REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2> {
    static bool EhPlausivel(const REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2& reg) {
        return XVNomeiaRegistro(reg.regDmcRegistroTelvo) && REG_XVDMC(reg.regDmcOrigemIntegracao).EhValido();
    }
};
template <>
struct TXVPlausibilidade<REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1> {
    static bool EhPlausivel(const REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1& reg) {
        return REG_XVDMAHMSUTC(reg.regDataHora).EhValida();
    }
};
