// The simulated system of a company in memory.
#pragma once

#include "suite/XVMiddlewareFacade.h"
#include "suite/simulation/XVPastaSimulacao.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVCapturaTrace.h"
#include "tests/suite/XVCenarioSuite.h"
#include "tests/suite/XVIntegracaoCheia.h"

class CXVCenarioSimulacao : public CXVCenarioSuite {
  protected:
    using TDados = CXVDadosCR_IntegracaoMiddleware;
    using TParametros = CXVDadosCR_ParametrosIntegracao;

    static TDados Dados(XVUInt64 uiChave = 0) {
        TDados dados = XVIntegracaoCheia();
        dados.uiChaveIntegracaoSistemaTerceiro = uiChave;
        return dados;
    }
    // What is asked and told about Dados().
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

    std::string Caminho(const std::string& sNome) const {
        return m_Arquivos.Junta(PastaDados("simulacao"), sNome);
    }
    std::string LeSimulacao(const std::string& sNome) const {
        return m_Arquivos.LeConteudo(Caminho(sNome)).value_or("<ausente>");
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
