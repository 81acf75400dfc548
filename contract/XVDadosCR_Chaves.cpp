#include "contract/XVDadosCR.h"

void CXVDadosCR_ChaveRegistroTelvoParaTerceiro::CopiarDe(
    const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& reg) {
    uiChaveRegistroSistemaTerceiro = reg.uiChaveRegistroSistemaTerceiro;
    regDmcRegistroTelvo = reg.regDmcRegistroTelvo;
    uiBaseDadosTerceiro = reg.uiBaseDadosTerceiro;
    eTipoIntegracao = reg.eTipoIntegracao;
    eSistemaIntegracao = reg.eSistemaIntegracao;
    regDmcOrigemIntegracao = reg.regDmcOrigemIntegracao;
}

tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS CXVDadosCR_ChaveRegistroTelvoParaTerceiro::ComoRegistro()
    const {
    return {.uiChaveRegistroSistemaTerceiro = uiChaveRegistroSistemaTerceiro,
            .regDmcRegistroTelvo = regDmcRegistroTelvo,
            .uiBaseDadosTerceiro = uiBaseDadosTerceiro,
            .eTipoIntegracao = eTipoIntegracao,
            .eSistemaIntegracao = eSistemaIntegracao,
            .regDmcOrigemIntegracao = regDmcOrigemIntegracao};
}

tagREG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS CXVDadosCR_ChaveRegistroTelvoParaTerceiro::ComoFiltro()
    const {
    return {.uiChaveRegistroSistemaTerceiro = uiChaveRegistroSistemaTerceiro,
            .regDmcRegistroTelvo = regDmcRegistroTelvo,
            .uiBaseDadosTerceiro = uiBaseDadosTerceiro,
            .eTipoIntegracao = eTipoIntegracao,
            .eSistemaIntegracao = eSistemaIntegracao,
            .cFiller = {}};
}

void CXVDadosCR_DataHoraIntegracaoTerceiro::CopiarDe(const tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS& reg) {
    regDataHora = reg.regDataHora;
    eTipoIntegracao = reg.eTipoIntegracao;
    eSistemaIntegracao = reg.eSistemaIntegracao;
    eTipoData = reg.eTipoData;
}

tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS CXVDadosCR_DataHoraIntegracaoTerceiro::ComoRegistro() const {
    return {.regDataHora = regDataHora,
            .eTipoIntegracao = eTipoIntegracao,
            .eSistemaIntegracao = eSistemaIntegracao,
            .eTipoData = eTipoData,
            .cFiller = {}};
}

tagREG_CR_FILTRO_DATA_HORA_INTEGRACAO_TERCEIROPS CXVDadosCR_DataHoraIntegracaoTerceiro::ComoFiltro() const {
    return {.cFiller = {},
            .eTipoIntegracao = eTipoIntegracao,
            .eSistemaIntegracao = eSistemaIntegracao,
            .eTipoData = eTipoData};
}
