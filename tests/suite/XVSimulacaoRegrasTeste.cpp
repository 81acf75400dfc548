// The simulated system told by documents: rules, pending items, queries.
#include "tests/suite/XVCenarioSimulacao.h"

namespace {

class SimulacaoRegrasTeste : public CXVCenarioSimulacao {
  protected:
    void SetUp() override { ASSERT_EQ(m_Facade.Inicializa(&m_Dono), S_OK); }
    static TDados DadosCom(const char* pszJSON) {
        TDados dados = Dados();
        dados.sRegistroJSON = pszJSON;
        return dados;
    }
    CXVMiddlewareFacade m_Facade;
};

TEST_F(SimulacaoRegrasTeste, PrimeiraRegraQueValeDecide) {
    // One condition of each does not hold, but for the last two.
    char cRegra = '0';
    for (const char* pszCondicao :
         {"Contem: outra", "Transacao: Inclusao", "Origem: 20240315-11-2", "Tipo: 1", "Chave: 7"})
        CriaSimulacao(std::string("regras/1") + cRegra++ + ".regra",
                      std::string("Operacao: EnviaJson\n") + pszCondicao + "\nNovaChave: 1\n");
    CriaSimulacao(
        "regras/20.regra",
        "Operacao: EnviaJson\nContem: urgente\nOrigem: 20240315-1-2\nTipo: BuscaPedidos\nTransacao: "
        "2\nChave: 0\n"
        "NovaChave: 900\nNovaChaveRegistro: 901\nStatus: Enviado\nMensagem: na fila\n\n{\"fila\":1}\n");
    CriaSimulacao("regras/30.regra", "Operacao: EnviaJson\nNovaChave: 2\n");
    CriaSimulacao("regras/05.regra.txt", "isto não é regra");
    TDados dados = DadosCom("{\"urgente\":true}");
    TDados esperado = dados;
    ASSERT_EQ(Envia(dados), S_OK);
    Responde(esperado, eXVSMiddleware_Enviado, "na fila", "{\"fila\":1}");
    esperado.uiChaveIntegracaoSistemaTerceiro = 900;
    esperado.uiChaveRegistroSistemaTerceiro = 901;
    EXPECT_TRUE(dados == esperado);
    TDados outro = DadosCom("{}");
    ASSERT_EQ(Envia(outro), S_OK);
    EXPECT_EQ(outro.uiChaveIntegracaoSistemaTerceiro, 2U);
}

TEST_F(SimulacaoRegrasTeste, RecusaFalhaETempoEsgotadoNaoGuardamNada) {
    CriaSimulacao("regras/1.regra",
                  "Operacao: EnviaJson\nContem: recusa\nStatus: Erro\nMensagem: CNPJ inválido\n");
    CriaSimulacao("regras/2.regra", "Operacao: EnviaJson\nContem: falha\nResultado: 0x800706ba\n");
    CriaSimulacao("regras/3.regra", "Operacao: EnviaJson\nContem: tempo\nTempoEsgotado: 30000\n");
    const auto antes = m_Arquivos.Retrata();
    for (const auto& [pszJSON, hrEsperado] :
         {std::pair{"recusa", S_OK}, {"falha", XVHResult(0x800706BAU)}, {"tempo", XVHResult(0x800705B4U)}}) {
        TDados dados = DadosCom(pszJSON);
        TDados esperado = dados;
        if (hrEsperado == S_OK) Responde(esperado, eXVSMiddleware_Erro, "CNPJ inválido", "");
        EXPECT_EQ(Envia(dados), hrEsperado) << pszJSON;
        EXPECT_TRUE(dados == esperado) << pszJSON;
    }
    EXPECT_EQ(m_Relogio.GetMilissegundosDormidos(), 30000U);
    EXPECT_EQ(CXVSistemaArquivosMemoria::Diferenca(antes, m_Arquivos.Retrata()), "");
}

TEST_F(SimulacaoRegrasTeste, RegraPrevaleceSobreODocumentoAoConsultarEAoExcluir) {
    CriaSimulacao("7.doc", "Status: Sucesso\nMensagem: do documento\n\n{\"doc\":1}");
    CriaSimulacao("regras/1.regra", "Operacao: BuscaDados\nChave: 7\nStatus: Cancelado\n\n{\"regra\":1}");
    CriaSimulacao("regras/2.regra", "Operacao: ExcluiDados\nStatus: Erro\nMensagem: já faturado\n");
    TDados dados = Dados(1, 7);
    TDados esperado = dados;
    ASSERT_EQ(Busca(dados), S_OK);
    Responde(esperado, eXVSMiddleware_Cancelado, "do documento", "{\"regra\":1}");
    EXPECT_TRUE(dados == esperado);
    ASSERT_EQ(Exclui(dados), S_OK);
    Responde(esperado, eXVSMiddleware_Erro, "já faturado", "{\"doc\":1}");
    EXPECT_TRUE(dados == esperado);
    EXPECT_EQ(LeSimulacao("7.doc"), "Status: Sucesso\nMensagem: do documento\n\n{\"doc\":1}");
}

TEST_F(SimulacaoRegrasTeste, OperacaoAnteriorCompletaOsDadosEAPosteriorPodeFalhar) {
    CriaSimulacao("regras/1.regra",
                  "Operacao: RealizaOperacaoAnterior\nNovaFilial: 3\nNovaBaseDados: 12\nNovaChaveRegistro: "
                  "4\n\n{\"novo\":1}\n");
    CriaSimulacao("regras/2.regra",
                  "Operacao: RealizaOperacaoPosterior\nTransacao: Exclusao\nResultado: 0x80004005\n");
    TDados dados = Dados();
    TDados esperado = DadosCom("{\"novo\":1}");
    esperado.ulPonteiroFilial = 3;
    esperado.uiBaseDadosTerceiro = 12;
    esperado.uiChaveRegistroSistemaTerceiro = 4;
    ASSERT_EQ(m_Facade.RealizaOperacaoAnterior(dados), S_OK);
    EXPECT_TRUE(dados == esperado);
    TParametros parametros = Parametros();
    EXPECT_EQ(m_Facade.RealizaOperacaoPosterior(parametros), S_OK);
    parametros.eTipoTransacao = eXVSMiddleware_Exclusao;
    EXPECT_EQ(m_Facade.RealizaOperacaoPosterior(parametros), E_FAIL);
}

TEST_F(SimulacaoRegrasTeste, ParametrosMudamSoNoQueARegraDizESoParaQuemElaVale) {
    CriaSimulacao(
        "regras/1.regra",
        "Operacao: AtualizaParametrosIntegracao\nTipo: BuscaPedidos\nNovoTipo: CadastroTabelaPreco\n"
        "NovaTransacao: Inclusao\nNovaFilial: 8\nNovaOrigem: 20240315-11-2\nNovaChaveRegistro: 44\n");
    TParametros parametros = Parametros();
    TParametros esperado = parametros;
    esperado.eTipoIntegracao = eXVSMiddleware_CadastroTabelaPreco;
    esperado.eTipoTransacao = eXVSMiddleware_Inclusao;
    esperado.ulPonteiroFilial = 8;
    esperado.regDmcOrigem = Origem(11);
    esperado.uiChaveRegistroSistemaTerceiro = 44;
    ASSERT_EQ(m_Facade.AtualizaParametrosIntegracao(parametros), S_OK);
    EXPECT_TRUE(parametros == esperado);
    parametros.ulPonteiroFilial = esperado.ulPonteiroFilial = 77;
    ASSERT_EQ(m_Facade.AtualizaParametrosIntegracao(parametros), S_OK);
    EXPECT_TRUE(parametros == esperado) << "the rule is not for the new type";
}

TEST_F(SimulacaoRegrasTeste, PendenciasDaOrigemEmOrdemDeNome) {
    CriaSimulacao("pendentes/b.pend",
                  "Origem: 20240315-1-2\nSistema: 8\nFilial: 5\nBaseDados: 6\nChaveRegistro: 7\nReconsultar: "
                  "1\n\n{\"b\":1}\n");
    CriaSimulacao("pendentes/a.pend",
                  "Origem: 20240315-1-2\nTipo: 9\nTransacao: 2\nRegistro: 20240315-9-2\n\n{\"a\":1}");
    CriaSimulacao("pendentes/c.pend", "Origem: 20240315-1-2\nTransacao: Exclusao\n\n{}");
    CriaSimulacao("pendentes/d.pend", "Origem: 20240315-11-2\n\n{}");
    CriaSimulacao("pendentes/f.pend", "Origem: 20240315-1-2\nTipo: 7\n\n{}");
    CriaSimulacao("pendentes/leia-me.txt", "qualquer coisa");
    std::vector<CXVDadosCR_PendenciaIntegracaoSistema> lista(1);
    ASSERT_EQ(m_Facade.BuscaIntegracoes(Parametros(), lista), S_OK);
    ASSERT_EQ(lista.size(), 2U);
    EXPECT_TRUE(lista[0] == (CXVDadosCR_PendenciaIntegracaoSistema{"{\"a\":1}", Origem(9), 0, 0, 2, 0, 0}));
    EXPECT_TRUE(lista[1] == (CXVDadosCR_PendenciaIntegracaoSistema{"{\"b\":1}", Origem(1), 6, 7, 8, 5, 1}));

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
    CriaSimulacao("regras/3.regra",
                  "Operacao: BuscaDadosSistemaTerceiro\nConsulta: PagamentoLote\nDocumento: falta.pdf\n");
    CriaSimulacao("documentos/recibo.pdf", std::string("%PDF\0\xFF\n", 7));
    CXVDadosCR_StatusConsultaSistemaTerceiro status{"velha", "velho", "velho", 9};
    const auto consulta = [&](XVUInt eTipo, const char* pszChave) {
        return m_Facade.BuscaDadosSistemaTerceiro({pszChave, eTipo, 0, 0}, status);
    };
    using TStatus = CXVDadosCR_StatusConsultaSistemaTerceiro;
    ASSERT_EQ(consulta(eXVSMiddleware_ConsultaBoleto, "341"), S_OK);
    EXPECT_TRUE(status == (TStatus{"pago", "{\"valor\":10}", std::string("%PDF\0\xFF\n", 7), 1}));
    ASSERT_EQ(consulta(eXVSMiddleware_ConsultaBoleto, "342"), S_OK);
    EXPECT_TRUE(status == (TStatus{"Documento não encontrado no sistema simulado.", "", "", 6}));
    ASSERT_EQ(consulta(eXVSMiddleware_ConsultaCnpj, "342"), S_OK);
    EXPECT_TRUE(status == (TStatus{"", "", "", eXVSMiddleware_ConsultaPagamentoNecessario}));
    EXPECT_EQ(consulta(eXVSMiddleware_ConsultaPagamento, "342"), E_NOTIMPL);
    EXPECT_EQ(consulta(eXVSMiddleware_ConsultaPagamentoLote, "342"), eFileNotFound);
    EXPECT_EQ(consulta(eXVSMiddleware_QuantidadeTipoConsulta, "342"), E_INVALIDARG);
}

}  // namespace
