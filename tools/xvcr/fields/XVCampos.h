// The fields of each record in the order of its layout, under the names of the store's interface records:
// the one description from which JSON is read and written.
#pragma once

#include <array>
#include <string_view>
#include <variant>

#include "contract/XVDadosCR.h"
#include "contract/XVEnumeracoesTexto.h"

template <class T>
struct TCampo {
    std::string_view sNome;
    std::variant<std::string T::*, REG_XVDMC T::*, REG_XVDMAHMSUTC T::*, XVUInt64 T::*, XVUInt T::*,
                 XVByte T::*>
        membro;
    EEnumeracao eEnumeracao = EEnumeracao::eNenhuma;
};

template <class T>
struct TCampos;

template <>
struct TCampos<CXVDadosCR_IntegracaoMiddleware> {
    using S = CXVDadosCR_IntegracaoMiddleware;
    using C = TCampo<S>;
    static constexpr std::array k_aLista{
        C{"regRegistroJSON", &S::sRegistroJSON},
        C{"regMensagemIntegracao", &S::sMensagemIntegracao},
        C{"regJSONRetornoIntegracao", &S::sJSONRetornoIntegracao},
        C{"regDmc", &S::regDmc},
        C{"regDmcIntegracaoOrigem", &S::regDmcIntegracaoOrigem},
        C{"regDmcMovimentoOrigem", &S::regDmcMovimentoOrigem},
        C{"regDataHoraInclusao", &S::regDataHoraInclusao},
        C{"regDataHoraAlteracaoStatus", &S::regDataHoraAlteracaoStatus},
        C{"uiChaveIntegracaoSistemaTerceiro", &S::uiChaveIntegracaoSistemaTerceiro},
        C{"uiChaveRegistroSistemaTerceiro", &S::uiChaveRegistroSistemaTerceiro},
        C{"uiBaseDadosTerceiro", &S::uiBaseDadosTerceiro},
        C{"eTipoIntegracao", &S::eTipoIntegracao, EEnumeracao::eTipoIntegracao},
        C{"eStatusIntegracao", &S::eStatusIntegracao, EEnumeracao::eStatusIntegracao},
        C{"eSistemaIntegracao", &S::eSistemaIntegracao, EEnumeracao::eSistemaIntegracao},
        C{"eTipoTransacao", &S::eTipoTransacao, EEnumeracao::eTipoTransacao},
        C{"ulPonteiroFilial", &S::ulPonteiroFilial},
        C{"ulPonteiroUsuarioInclusao", &S::ulPonteiroUsuarioInclusao},
        C{"ulPonteiroUsuarioCancelamento", &S::ulPonteiroUsuarioCancelamento},
        C{"ulPonteiroAuxiliar", &S::ulPonteiroAuxiliar},
        C{"cReconsultarIdTerceiros", &S::cReconsultarIdTerceiros},
        C{"ucTipoPonteiroAuxiliar", &S::ucTipoPonteiroAuxiliar},
    };
};

template <>
struct TCampos<CXVDadosCR_StatusIntegracaoMiddleware> {
    using S = CXVDadosCR_StatusIntegracaoMiddleware;
    using C = TCampo<S>;
    static constexpr std::array k_aLista{
        C{"regDmc", &S::regDmc},
        C{"regMensagemIntegracao", &S::sMensagemIntegracao},
        C{"regJSONRetornoIntegracao", &S::sJSONRetornoIntegracao},
        C{"uiChaveIntegracaoSistemaTerceiro", &S::uiChaveIntegracaoSistemaTerceiro},
        C{"eStatusIntegracao", &S::eStatusIntegracao, EEnumeracao::eStatusIntegracao},
        C{"eSistemaIntegracao", &S::eSistemaIntegracao, EEnumeracao::eSistemaIntegracao},
    };
};

template <>
struct TCampos<CXVDadosCR_ChaveRegistroTelvoParaTerceiro> {
    using S = CXVDadosCR_ChaveRegistroTelvoParaTerceiro;
    using C = TCampo<S>;
    static constexpr std::array k_aLista{
        C{"uiChaveRegistroSistemaTerceiro", &S::uiChaveRegistroSistemaTerceiro},
        C{"regDmcRegistroTelvo", &S::regDmcRegistroTelvo},
        C{"uiBaseDadosTerceiro", &S::uiBaseDadosTerceiro},
        C{"eTipoIntegracao", &S::eTipoIntegracao, EEnumeracao::eTipoIntegracao},
        C{"eSistemaIntegracao", &S::eSistemaIntegracao, EEnumeracao::eSistemaIntegracao},
        C{"regDmcOrigemIntegracao", &S::regDmcOrigemIntegracao},
    };
};

template <>
struct TCampos<CXVDadosCR_DataHoraIntegracaoTerceiro> {
    using S = CXVDadosCR_DataHoraIntegracaoTerceiro;
    using C = TCampo<S>;
    static constexpr std::array k_aLista{
        C{"regDataHora", &S::regDataHora},
        C{"eTipoIntegracao", &S::eTipoIntegracao, EEnumeracao::eTipoIntegracao},
        C{"eSistemaIntegracao", &S::eSistemaIntegracao, EEnumeracao::eSistemaIntegracao},
        C{"eTipoData", &S::eTipoData, EEnumeracao::eTipoData},
    };
};

template <>
struct TCampos<CXVDadosCR_StatusConsultaSistemaTerceiro> {
    using S = CXVDadosCR_StatusConsultaSistemaTerceiro;
    using C = TCampo<S>;
    static constexpr std::array k_aLista{
        C{"regMensagemRetorno", &S::sMensagemRetorno},
        C{"regJSONRetorno", &S::sJSONRetorno},
        C{"eStatusConsulta", &S::eStatusConsulta, EEnumeracao::eStatusConsulta},
        C{"pDocumentoRetorno", &S::sDocumentoRetorno},
    };
};
