// Values that the command line exchanges with a store, whatever carries them there: one field for each
// field of the store's own records, texts as bytes in std::string. No header of the store is needed here, so
// that the store in this process and the store behind the component's interface serve the same commands.
#pragma once

#include <string>
#include <vector>

#include "support/values/XVDmc.h"

struct SIntegracao {
    std::string sRegistroJSON;
    std::string sMensagemIntegracao;
    std::string sJSONRetornoIntegracao;
    REG_XVDMC regDmc;
    REG_XVDMC regDmcIntegracaoOrigem;
    REG_XVDMC regDmcMovimentoOrigem;
    REG_XVDMAHMSUTC regDataHoraInclusao;
    REG_XVDMAHMSUTC regDataHoraAlteracaoStatus;
    XVUInt64 uiChaveIntegracaoSistemaTerceiro = 0;
    XVUInt64 uiChaveRegistroSistemaTerceiro = 0;
    XVUInt64 uiBaseDadosTerceiro = 0;
    XVUInt eTipoIntegracao = 0;
    XVUInt eStatusIntegracao = 0;
    XVUInt eSistemaIntegracao = 0;
    XVUInt eTipoTransacao = 0;
    XVUInt ulPonteiroFilial = 0;
    XVUInt ulPonteiroUsuarioInclusao = 0;
    XVUInt ulPonteiroUsuarioCancelamento = 0;
    XVUInt ulPonteiroAuxiliar = 0;
    XVByte cReconsultarIdTerceiros = 0;
    XVByte ucTipoPonteiroAuxiliar = 0;
};

struct SStatusIntegracao {
    REG_XVDMC regDmc;  // null: named by key and system
    std::string sMensagemIntegracao;
    std::string sJSONRetornoIntegracao;
    XVUInt64 uiChaveIntegracaoSistemaTerceiro = 0;
    XVUInt eStatusIntegracao = 0;
    XVUInt eSistemaIntegracao = 0;
};

// Bounds of 0 and empty lists restrict nothing.
struct SFiltroIntegracao {
    XVUInt64 uiChaveIntegracaoSistemaTerceiroInicial = 0;
    XVUInt64 uiChaveIntegracaoSistemaTerceiroFinal = 0;
    REG_XVDMAHMSUTC regDataHoraInicialInclusao;
    REG_XVDMAHMSUTC regDataHoraFinalInclusao;
    REG_XVDMAHMSUTC regDataHoraInicialAlteracaoStatus;
    REG_XVDMAHMSUTC regDataHoraFinalAlteracaoStatus;
    std::vector<XVUInt> listaTipoIntegracao;
    std::vector<XVUInt> listaStatusIntegracao;
    std::vector<XVUInt> listaSistemaIntegracao;
    std::vector<XVUInt> listaTipoTransacao;
};

// Also the filter of the key map, which does not look at regDmcOrigemIntegracao.
struct SChaveRegistro {
    XVUInt64 uiChaveRegistroSistemaTerceiro = 0;
    REG_XVDMC regDmcRegistroTelvo;
    XVUInt64 uiBaseDadosTerceiro = 0;
    XVUInt eTipoIntegracao = 0;
    XVUInt eSistemaIntegracao = 0;
    REG_XVDMC regDmcOrigemIntegracao;
};

// Also the filter of the date-times, which does not look at regDataHora.
struct SDataHoraIntegracao {
    REG_XVDMAHMSUTC regDataHora;
    XVUInt eTipoIntegracao = 0;
    XVUInt eSistemaIntegracao = 0;
    XVUInt eTipoData = 0;
};

struct SConsultaTerceiro {
    std::string sChaveConsulta;
    XVUInt eTipoConsulta = 0;
    XVUInt ulPonteiroAuxiliar = 0;
    XVByte ucTipoPonteiroAuxiliar = 0;
};

struct SRespostaConsulta {
    std::string sMensagemRetorno;
    std::string sJSONRetorno;
    std::string sDocumentoRetorno;  // bytes of any kind
    XVUInt eStatusConsulta = 0;
};

// Bits of the reading flags of LeIntegracao.
namespace XVFlagLeitura {
inline constexpr XVUInt64 eRegistroJSON = 1;
inline constexpr XVUInt64 eMensagem = 2;
inline constexpr XVUInt64 eJSONRetorno = 4;
inline constexpr XVUInt64 eTextos = eRegistroJSON | eMensagem | eJSONRetorno;
inline constexpr XVUInt64 eConsultaTerceiro = 8;
inline constexpr XVUInt64 eOperacaoPosterior = 16;
}  // namespace XVFlagLeitura
