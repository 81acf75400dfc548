// Distrust of what comes from outside: every check answers S_OK or E_INVALIDARG and touches nothing; and the
// rule of the missing key.
#pragma once

#include "contract/XVCR_BuffersPS.h"
#include "contract/XVCR_Enumeracoes.h"
#include "contract/XVCR_RegistrosPS.h"

namespace XVValidacaoIntegracao {

constexpr HRESULT ResultadoDe(bool bValido) {
    return bValido ? S_OK : E_INVALIDARG;
}

constexpr HRESULT ValidaTipoIntegracao(XVUInt eTipoIntegracao) {
    return ResultadoDe(eTipoIntegracao < eXVSMiddleware_QuantidadeTipoIntegracao);
}
constexpr HRESULT ValidaStatusIntegracao(XVUInt eStatusIntegracao) {
    return ResultadoDe(eStatusIntegracao < eXVSMiddleware_QuantidadeStatusIntegracao);
}
constexpr HRESULT ValidaSistemaIntegracao(XVUInt eSistemaIntegracao) {
    return ResultadoDe(eSistemaIntegracao == Tipo_Nenhum || eSistemaIntegracao == SimulacaoSistemaTerceiro ||
                       eSistemaIntegracao == OfficialBank || eSistemaIntegracao == Mercos);
}
constexpr HRESULT ValidaTipoTransacao(XVUInt eTipoTransacao) {
    return ResultadoDe(eTipoTransacao < eXVSMiddleware_QuantidadeTipoTransacao);
}
constexpr HRESULT ValidaTipoData(XVUInt eTipoData) {
    return ResultadoDe(eTipoData < eXVSMiddleware_QuantidadeTipoDataIntegracaoTerceiro);
}
constexpr HRESULT ValidaTipoConsulta(XVUInt eTipoConsulta) {
    return ResultadoDe(eTipoConsulta != eXVSMiddleware_NenhumaConsulta &&
                       eTipoConsulta < eXVSMiddleware_QuantidadeTipoConsulta);
}
inline HRESULT ValidaDataHora(REG_XVDMAHMSUTC regDataHora) {
    return ResultadoDe(regDataHora.EhValida());
}
// The clock of a record that is written now.
inline HRESULT ValidaRelogio() {
    const REG_XVDMAHMSUTC regAgora = REG_XVDMAHMSUTC::Agora();
    return ResultadoDe(!regAgora.EhNula() && regAgora.EhValida());
}
inline HRESULT ValidaDmc(REG_XVDMC regDmc) {
    return ResultadoDe(regDmc.EhValido());
}
inline HRESULT ValidaDmcIntegracao(REG_XVDMC regDmc) {
    return ResultadoDe(regDmc.EhDeIntegracao());
}
inline HRESULT ValidaTexto(const _REG_DF_TEXTOPS& regTexto) {
    return ResultadoDe(CXVStringPS::EhValido(regTexto));
}

// Whether an existing integration may lose or lack its external key in this status.
constexpr bool AdmiteChaveZerada(XVUInt eStatusIntegracao) {
    return eStatusIntegracao == eXVSMiddleware_Pendente || eStatusIntegracao == eXVSMiddleware_Erro ||
           eStatusIntegracao == eXVSMiddleware_Cancelado;
}

}  // namespace XVValidacaoIntegracao
