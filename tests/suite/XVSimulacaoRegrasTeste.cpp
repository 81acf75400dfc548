// The simulated system told by documents: rules, pending items, queries.
#include "suite/XVMiddlewareFacade.h"
#include "suite/simulation/XVPastaSimulacao.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVCapturaTrace.h"
#include "tests/suite/XVCenarioSuite.h"

namespace {

using CXVTroca = CXVMiddlewareIntegracaoSistemas;

class SimulacaoRegrasTeste : public CXVCenarioSuite {
  protected:
    void SetUp() override { ASSERT_EQ(m_Facade.Inicializa(&m_Dono), S_OK); }

    static CXVDadosCR_IntegracaoMiddleware Dados(std::string sJSON = "{}") {
        CXVDadosCR_IntegracaoMiddleware dados;
        dados.sRegistroJSON = std::move(sJSON);
        dados.regDmcMovimentoOrigem = k_regOrigem;
        dados.eSistemaIntegracao = SimulacaoSistemaTerceiro;
        dados.eTipoIntegracao = eXVSMiddleware_CadastroProduto;
        dados.eTipoTransacao = eXVSMiddleware_Inclusao;
        return dados;
    }
    static CXVDadosCR_ParametrosIntegracao Parametros() {
        CXVDadosCR_ParametrosIntegracao parametros;
        parametros.regDmcOrigem = k_regOrigem;
        parametros.eTipoIntegracao = eXVSMiddleware_CadastroProduto;
        parametros.eTipoTransacao = eXVSMiddleware_Inclusao;
        return parametros;
    }

    static constexpr REG_XVDMC k_regOrigem = REG_XVDMC::Cria(2, 10, REG_XVDMA::Cria(2024, 3, 15));
    CXVMiddlewareFacade m_Facade;
    CXVCapturaTrace m_Captura;
};

TEST_F(SimulacaoRegrasTeste, PrimeiraRegraQueValeDecide) {
    CriaSimulacao("regras/10.regra",
                  "Operacao: EnviaJson\nContem: urgente\nTransacao: Alteracao\nNovaChave: 1\n");
    CriaSimulacao(
        "regras/20.regra",
        "Operacao: EnviaJson\nContem: urgente\nOrigem: 20240315-10-2\nTipo: CadastroProduto\n"
        "Transacao: Inclusao\n"
        "NovaChave: 900\nNovaChaveRegistro: 901\nStatus: Enviado\nMensagem: na fila\n\n{\"fila\":1}\n");
    CriaSimulacao("regras/15.regra", "Operacao: EnviaJson\nOrigem: 20240315-11-2\nNovaChave: 3\n");
    CriaSimulacao("regras/30.regra", "Operacao: EnviaJson\nNovaChave: 2\n");
    CriaSimulacao("regras/05.regra.txt", "isto não é regra");
    auto dados = Dados("{\"urgente\":true}");
    ASSERT_EQ(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(dados, &m_Dono), S_OK);
    EXPECT_EQ(dados.uiChaveIntegracaoSistemaTerceiro, 900U);
    EXPECT_EQ(dados.uiChaveRegistroSistemaTerceiro, 901U);
    EXPECT_EQ(dados.eStatusIntegracao, eXVSMiddleware_Enviado);
    EXPECT_EQ(dados.sMensagemIntegracao, "na fila");
    EXPECT_EQ(dados.sJSONRetornoIntegracao, "{\"fila\":1}");
    auto outro = Dados();
    ASSERT_EQ(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(outro, &m_Dono), S_OK);
    EXPECT_EQ(outro.uiChaveIntegracaoSistemaTerceiro, 2U);
}

TEST_F(SimulacaoRegrasTeste, RecusaFalhaETempoEsgotadoNaoGuardamNada) {
    CriaSimulacao("regras/1.regra",
                  "Operacao: EnviaJson\nContem: recusa\nStatus: Erro\nMensagem: CNPJ inválido\n");
    CriaSimulacao("regras/2.regra", "Operacao: EnviaJson\nContem: falha\nResultado: 0x800706ba\n");
    CriaSimulacao("regras/3.regra", "Operacao: EnviaJson\nContem: tempo\nTempoEsgotado: 30000\n");
    const auto antes = m_Arquivos.Retrata();
    auto recusa = Dados("recusa");
    ASSERT_EQ(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(recusa, &m_Dono), S_OK);
    EXPECT_EQ(recusa.eStatusIntegracao, eXVSMiddleware_Erro);
    EXPECT_EQ(recusa.sMensagemIntegracao, "CNPJ inválido");
    EXPECT_EQ(recusa.uiChaveIntegracaoSistemaTerceiro, 0U);
    auto falha = Dados("falha");
    EXPECT_EQ(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(falha, &m_Dono), XVHResult(0x800706BAU));
    auto tempo = Dados("tempo");
    EXPECT_EQ(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(tempo, &m_Dono), XVHResult(0x800705B4U));
    EXPECT_EQ(m_Relogio.GetMilissegundosDormidos(), 30000U);
    EXPECT_EQ(CXVSistemaArquivosMemoria::Diferenca(antes, m_Arquivos.Retrata()), "");
    EXPECT_FALSE(m_Captura.GetFalhas().empty());
}

TEST_F(SimulacaoRegrasTeste, RegraPrevaleceSobreODocumentoAoConsultarEAoExcluir) {
    CriaSimulacao("7.doc", "Status: Sucesso\nMensagem: do documento\n\n{\"doc\":1}");
    CriaSimulacao("regras/0.regra", "Operacao: BuscaDados\nChave: 8\nStatus: Erro\n");
    CriaSimulacao("regras/1.regra", "Operacao: BuscaDados\nChave: 7\nStatus: Cancelado\n\n{\"regra\":1}");
    CriaSimulacao("regras/2.regra", "Operacao: ExcluiDados\nStatus: Erro\nMensagem: já faturado\n");
    auto dados = Dados();
    dados.uiChaveIntegracaoSistemaTerceiro = 7;
    ASSERT_EQ(CXVTroca::BuscaDadosIntegracaoSistemasTerceiros(dados, nullptr, &m_Dono), S_OK);
    EXPECT_EQ(dados.eStatusIntegracao, eXVSMiddleware_Cancelado);
    EXPECT_EQ(dados.sMensagemIntegracao, "do documento");
    EXPECT_EQ(dados.sJSONRetornoIntegracao, "{\"regra\":1}");
    ASSERT_EQ(CXVTroca::ExcluiDadosIntegracaoSistemasTerceiros(dados, &m_Dono), S_OK);
    EXPECT_EQ(dados.eStatusIntegracao, eXVSMiddleware_Erro);
    EXPECT_EQ(dados.sMensagemIntegracao, "já faturado");
    EXPECT_EQ(LeSimulacao("7.doc"), "Status: Sucesso\nMensagem: do documento\n\n{\"doc\":1}");
}

TEST_F(SimulacaoRegrasTeste, OperacaoAnteriorCompletaOsDadosEAPosteriorPodeFalhar) {
    CriaSimulacao("regras/1.regra",
                  "Operacao: RealizaOperacaoAnterior\nNovaFilial: 3\nNovaBaseDados: 12\nNovaChaveRegistro: "
                  "4\n\n{\"novo\":1}\n");
    CriaSimulacao("regras/2.regra",
                  "Operacao: RealizaOperacaoPosterior\nTransacao: Exclusao\nResultado: 0x80004005\n");
    auto dados = Dados();
    ASSERT_EQ(m_Facade.RealizaOperacaoAnterior(dados), S_OK);
    EXPECT_EQ(dados.sRegistroJSON, "{\"novo\":1}");
    EXPECT_EQ(dados.ulPonteiroFilial, 3U);
    EXPECT_EQ(dados.uiBaseDadosTerceiro, 12U);
    EXPECT_EQ(dados.uiChaveRegistroSistemaTerceiro, 4U);
    auto parametros = Parametros();
    parametros.eSistemaIntegracao = SimulacaoSistemaTerceiro;
    EXPECT_EQ(m_Facade.RealizaOperacaoPosterior(parametros), S_OK);
    parametros.eTipoTransacao = eXVSMiddleware_Exclusao;
    EXPECT_EQ(m_Facade.RealizaOperacaoPosterior(parametros), E_FAIL);
}

TEST_F(SimulacaoRegrasTeste, ParametrosMudamSoNoQueARegraDizESoParaQuemElaVale) {
    CriaSimulacao(
        "regras/1.regra",
        "Operacao: AtualizaParametrosIntegracao\nTipo: CadastroProduto\nNovoTipo: CadastroTabelaPreco\n"
        "NovaTransacao: Alteracao\nNovaFilial: 8\nNovaOrigem: 20240316-11-2\nNovaChaveRegistro: 44\n");
    const REG_XVDMC regIntegracao = REG_XVDMC::Cria(1, 2, REG_XVDMA::Cria(2024, 3, 15));
    CXVDadosCR_ParametrosIntegracao parametros{k_regOrigem,
                                               regIntegracao,
                                               5,
                                               6,
                                               eXVSMiddleware_CadastroProduto,
                                               SimulacaoSistemaTerceiro,
                                               eXVSMiddleware_Inclusao,
                                               7,
                                               9,
                                               10};
    ASSERT_EQ(m_Facade.AtualizaParametrosIntegracao(parametros), S_OK);
    const CXVDadosCR_ParametrosIntegracao esperado{REG_XVDMC::Cria(2, 11, REG_XVDMA::Cria(2024, 3, 16)),
                                                   regIntegracao,
                                                   44,
                                                   6,
                                                   eXVSMiddleware_CadastroTabelaPreco,
                                                   SimulacaoSistemaTerceiro,
                                                   eXVSMiddleware_Alteracao,
                                                   8,
                                                   9,
                                                   10};
    EXPECT_TRUE(parametros == esperado);
    parametros.ulPonteiroFilial = 77;  // the new type has no rule
    ASSERT_EQ(m_Facade.AtualizaParametrosIntegracao(parametros), S_OK);
    EXPECT_EQ(parametros.ulPonteiroFilial, 77U);
}

TEST_F(SimulacaoRegrasTeste, PendenciasDaOrigemEmOrdemDeNome) {
    CriaSimulacao("pendentes/b.pend",
                  "Origem: 20240315-10-2\nSistema: 8\nFilial: 5\nBaseDados: 6\nChaveRegistro: "
                  "7\nReconsultar: 1\n\n{\"b\":1}\n");
    CriaSimulacao("pendentes/a.pend",
                  "Origem: 20240315-10-2\nTipo: 6\nTransacao: 1\nRegistro: 20240101-1-0\n\n{\"a\":1}");
    CriaSimulacao("pendentes/c.pend", "Origem: 20240315-10-2\nTransacao: Exclusao\n\n{}");
    CriaSimulacao("pendentes/d.pend", "Origem: 20240315-11-2\n\n{}");
    CriaSimulacao("pendentes/f.pend", "Origem: 20240315-10-2\nTipo: 7\n\n{}");
    CriaSimulacao("pendentes/leia-me.txt", "qualquer coisa");
    std::vector<CXVDadosCR_PendenciaIntegracaoSistema> lista(1);
    ASSERT_EQ(m_Facade.BuscaIntegracoes(Parametros(), lista), S_OK);
    const std::vector<CXVDadosCR_PendenciaIntegracaoSistema> listaEsperada{
        {"{\"a\":1}", REG_XVDMC::Cria(0, 1, REG_XVDMA::Cria(2024, 1, 1)), 0, 0, SimulacaoSistemaTerceiro, 0,
         0},
        {"{\"b\":1}", k_regOrigem, 6, 7, OfficialBank, 5, 1}};
    EXPECT_TRUE(lista == listaEsperada);

    CriaSimulacao("pendentes/e.pend", "Tipo: 6\n\n{}");
    EXPECT_EQ(m_Facade.BuscaIntegracoes(Parametros(), lista), CXVPastaSimulacao::k_hrDocumentoInvalido);
    ASSERT_FALSE(m_Captura.GetFalhas().empty());
    EXPECT_EQ(m_Captura.GetFalhas()[0].sMensagem,
              "Documento de simulação recusado: \"e.pend\": campo \"Origem\": falta");
}

TEST_F(SimulacaoRegrasTeste, ConsultaRespondePelaRegraDaChave) {
    CriaSimulacao(
        "regras/1.regra",
        "Operacao: BuscaDadosSistemaTerceiro\nConsulta: Boleto\nChaveConsulta: 341\nMensagem: pago\n"
        "Documento: recibo.pdf\n\n{\"valor\":10}\n");
    CriaSimulacao("regras/2.regra",
                  "Operacao: BuscaDadosSistemaTerceiro\nConsulta: Cnpj\nStatus: PagamentoNecessario\n");
    CriaSimulacao("documentos/recibo.pdf", std::string("%PDF\0\xFF\n", 7));
    const struct {
        XVUInt eTipo;
        const char* pszChave;
        CXVDadosCR_StatusConsultaSistemaTerceiro esperado;
    } aCasos[] = {
        {eXVSMiddleware_ConsultaBoleto,
         "341",
         {"pago", "{\"valor\":10}", std::string("%PDF\0\xFF\n", 7), eXVSMiddleware_ConsultaSucesso}},
        {eXVSMiddleware_ConsultaBoleto,
         "342",
         {"Documento não encontrado no sistema simulado.", "", "",
          eXVSMiddleware_ConsultaDadosNaoEncontrados}},
        {eXVSMiddleware_ConsultaCnpj, "342", {"", "", "", eXVSMiddleware_ConsultaPagamentoNecessario}}};
    CXVDadosCR_ConsultaSistemaTerceiro consulta;
    CXVDadosCR_StatusConsultaSistemaTerceiro status{"velha", "velho", "velho", 9};
    for (const auto& rCaso : aCasos) {
        consulta.eTipoConsulta = rCaso.eTipo;
        consulta.sChaveConsulta = rCaso.pszChave;
        ASSERT_EQ(m_Facade.BuscaDadosSistemaTerceiro(consulta, status), S_OK);
        EXPECT_TRUE(status == rCaso.esperado) << rCaso.pszChave;
    }
    consulta.eTipoConsulta = eXVSMiddleware_ConsultaPagamento;
    EXPECT_EQ(m_Facade.BuscaDadosSistemaTerceiro(consulta, status), E_NOTIMPL);
    CriaSimulacao("regras/3.regra",
                  "Operacao: BuscaDadosSistemaTerceiro\nConsulta: Pagamento\nDocumento: falta.pdf\n");
    EXPECT_EQ(m_Facade.BuscaDadosSistemaTerceiro(consulta, status), eFileNotFound);
    consulta.eTipoConsulta = eXVSMiddleware_QuantidadeTipoConsulta;
    EXPECT_EQ(m_Facade.BuscaDadosSistemaTerceiro(consulta, status), E_INVALIDARG);
}

}  // namespace
