// The fields of each record in the order of its layout, under the names of the store's interface records:
// the one description from which JSON is read and written, and the records are shown to a person.
#pragma once

#include <array>
#include <string_view>
#include <variant>

#include "contract/XVDadosCR.h"
#include "contract/XVEnumeracoesTexto.h"

template <class T>
struct TCampo {
    std::string_view sNome;
    std::string_view sRotulo;  // what a person is shown
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
        C{"regRegistroJSON", "JSON enviado", &S::sRegistroJSON},
        C{"regMensagemIntegracao", "Mensagem", &S::sMensagemIntegracao},
        C{"regJSONRetornoIntegracao", "JSON de retorno", &S::sJSONRetornoIntegracao},
        C{"regDmc", "DMC", &S::regDmc},
        C{"regDmcIntegracaoOrigem", "Integração de origem", &S::regDmcIntegracaoOrigem},
        C{"regDmcMovimentoOrigem", "Movimento de origem", &S::regDmcMovimentoOrigem},
        C{"regDataHoraInclusao", "Inclusão", &S::regDataHoraInclusao},
        C{"regDataHoraAlteracaoStatus", "Mudança de status", &S::regDataHoraAlteracaoStatus},
        C{"uiChaveIntegracaoSistemaTerceiro", "Chave externa", &S::uiChaveIntegracaoSistemaTerceiro},
        C{"uiChaveRegistroSistemaTerceiro", "Id externo do registro", &S::uiChaveRegistroSistemaTerceiro},
        C{"uiBaseDadosTerceiro", "Base de dados externa", &S::uiBaseDadosTerceiro},
        C{"eTipoIntegracao", "Tipo", &S::eTipoIntegracao, EEnumeracao::eTipoIntegracao},
        C{"eStatusIntegracao", "Status", &S::eStatusIntegracao, EEnumeracao::eStatusIntegracao},
        C{"eSistemaIntegracao", "Sistema", &S::eSistemaIntegracao, EEnumeracao::eSistemaIntegracao},
        C{"eTipoTransacao", "Transação", &S::eTipoTransacao, EEnumeracao::eTipoTransacao},
        C{"ulPonteiroFilial", "Filial", &S::ulPonteiroFilial},
        C{"ulPonteiroUsuarioInclusao", "Usuário que incluiu", &S::ulPonteiroUsuarioInclusao},
        C{"ulPonteiroUsuarioCancelamento", "Usuário que cancelou", &S::ulPonteiroUsuarioCancelamento},
        C{"ulPonteiroAuxiliar", "Ponteiro auxiliar", &S::ulPonteiroAuxiliar},
        C{"cReconsultarIdTerceiros", "Reconsultar ids", &S::cReconsultarIdTerceiros},
        C{"ucTipoPonteiroAuxiliar", "Tipo do auxiliar", &S::ucTipoPonteiroAuxiliar},
    };
};

template <>
struct TCampos<CXVDadosCR_StatusIntegracaoMiddleware> {
    using S = CXVDadosCR_StatusIntegracaoMiddleware;
    using C = TCampo<S>;
    static constexpr std::array k_aLista{
        C{"regDmc", "DMC", &S::regDmc},
        C{"regMensagemIntegracao", "Mensagem", &S::sMensagemIntegracao},
        C{"regJSONRetornoIntegracao", "JSON de retorno", &S::sJSONRetornoIntegracao},
        C{"uiChaveIntegracaoSistemaTerceiro", "Chave externa", &S::uiChaveIntegracaoSistemaTerceiro},
        C{"eStatusIntegracao", "Status", &S::eStatusIntegracao, EEnumeracao::eStatusIntegracao},
        C{"eSistemaIntegracao", "Sistema", &S::eSistemaIntegracao, EEnumeracao::eSistemaIntegracao},
    };
};

template <>
struct TCampos<CXVDadosCR_ChaveRegistroTelvoParaTerceiro> {
    using S = CXVDadosCR_ChaveRegistroTelvoParaTerceiro;
    using C = TCampo<S>;
    static constexpr std::array k_aLista{
        C{"uiChaveRegistroSistemaTerceiro", "Id externo do registro", &S::uiChaveRegistroSistemaTerceiro},
        C{"regDmcRegistroTelvo", "Registro", &S::regDmcRegistroTelvo},
        C{"uiBaseDadosTerceiro", "Base de dados externa", &S::uiBaseDadosTerceiro},
        C{"eTipoIntegracao", "Tipo", &S::eTipoIntegracao, EEnumeracao::eTipoIntegracao},
        C{"eSistemaIntegracao", "Sistema", &S::eSistemaIntegracao, EEnumeracao::eSistemaIntegracao},
        C{"regDmcOrigemIntegracao", "Integração de origem", &S::regDmcOrigemIntegracao},
    };
};

template <>
struct TCampos<CXVDadosCR_DataHoraIntegracaoTerceiro> {
    using S = CXVDadosCR_DataHoraIntegracaoTerceiro;
    using C = TCampo<S>;
    static constexpr std::array k_aLista{
        C{"regDataHora", "Data-hora", &S::regDataHora},
        C{"eTipoIntegracao", "Tipo", &S::eTipoIntegracao, EEnumeracao::eTipoIntegracao},
        C{"eSistemaIntegracao", "Sistema", &S::eSistemaIntegracao, EEnumeracao::eSistemaIntegracao},
        C{"eTipoData", "Qual data", &S::eTipoData, EEnumeracao::eTipoData},
    };
};

template <>
struct TCampos<CXVDadosCR_StatusConsultaSistemaTerceiro> {
    using S = CXVDadosCR_StatusConsultaSistemaTerceiro;
    using C = TCampo<S>;
    static constexpr std::array k_aLista{
        C{"regMensagemRetorno", "Mensagem", &S::sMensagemRetorno},
        C{"regJSONRetorno", "JSON", &S::sJSONRetorno},
        C{"eStatusConsulta", "Resultado", &S::eStatusConsulta, EEnumeracao::eStatusConsulta},
        C{"pDocumentoRetorno", "Documento", &S::sDocumentoRetorno},
    };
};
