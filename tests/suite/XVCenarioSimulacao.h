// The simulated system of a company in memory, and an integration with a value of its own in every field.
#pragma once

#include "suite/XVMiddlewareFacade.h"
#include "suite/simulation/XVPastaSimulacao.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVCapturaTrace.h"
#include "tests/suite/XVCenarioSuite.h"

class CXVCenarioSimulacao : public CXVCenarioSuite {
  protected:
    using TDados = CXVDadosCR_IntegracaoMiddleware;
    using TParametros = CXVDadosCR_ParametrosIntegracao;

    static REG_XVDMC Origem(XVUInt ulPonteiro) {
        return REG_XVDMC::Cria(2, ulPonteiro, REG_XVDMA::Cria(2024, 3, 15));
    }
    static TDados Dados(XVUInt ulOrigem = 1, XVUInt64 uiChave = 0) {
        TDados dados;
        dados.sRegistroJSON = "{\"a\":\"ção\r\n\"}\n";
        dados.sMensagemIntegracao = "mensagem velha";
        dados.sJSONRetornoIntegracao = "retorno velho";
        dados.regDmc = Origem(1001);
        dados.regDmcIntegracaoOrigem = Origem(1002);
        dados.regDmcMovimentoOrigem = Origem(ulOrigem);
        dados.regDataHoraInclusao.uiValor = 21;
        dados.regDataHoraAlteracaoStatus.uiValor = 22;
        dados.uiChaveIntegracaoSistemaTerceiro = uiChave;
        dados.uiChaveRegistroSistemaTerceiro = 55;
        dados.uiBaseDadosTerceiro = 31;
        dados.eSistemaIntegracao = SimulacaoSistemaTerceiro;
        dados.eTipoIntegracao = eXVSMiddleware_BuscaPedidos;
        dados.eTipoTransacao = eXVSMiddleware_Alteracao;
        dados.ulPonteiroFilial = 32;
        dados.ulPonteiroUsuarioInclusao = 33;
        dados.ulPonteiroUsuarioCancelamento = 34;
        dados.ulPonteiroAuxiliar = 35;
        dados.cReconsultarIdTerceiros = 1;
        dados.ucTipoPonteiroAuxiliar = 36;
        return dados;
    }
    // What is asked and told about Dados(1).
    static TParametros Parametros() {
        const TDados dados = Dados();
        return {dados.regDmcMovimentoOrigem, dados.regDmc,           dados.uiChaveRegistroSistemaTerceiro,
                dados.uiBaseDadosTerceiro,   dados.eTipoIntegracao,  dados.eSistemaIntegracao,
                dados.eTipoTransacao,        dados.ulPonteiroFilial, dados.ulPonteiroAuxiliar,
                dados.ucTipoPonteiroAuxiliar};
    }
    static void Responde(TDados& rDados, XVUInt eStatus, const char* pszMensagem, const char* pszRetorno) {
        rDados.eStatusIntegracao = eStatus;
        rDados.sMensagemIntegracao = pszMensagem;
        rDados.sJSONRetornoIntegracao = pszRetorno;
    }

    using CXVTroca = CXVMiddlewareIntegracaoSistemas;
    HRESULT Envia(TDados& rDados) const {
        return CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(rDados, &m_Dono);
    }
    HRESULT Busca(TDados& rDados, TParametros* pParametros = nullptr) const {
        return CXVTroca::BuscaDadosIntegracaoSistemasTerceiros(rDados, pParametros, &m_Dono);
    }
    HRESULT Exclui(TDados& rDados) const {
        return CXVTroca::ExcluiDadosIntegracaoSistemasTerceiros(rDados, &m_Dono);
    }

    CXVCapturaTrace m_Captura;
};
