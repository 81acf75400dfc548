// The simulated system told by documents: rules, pending items, queries.
#include "tests/suite/XVCenarioSimulacao.h"

namespace {

class SimulacaoRegrasTeste : public CXVCenarioSimulacao {
  protected:
    void SetUp() override { ASSERT_EQ(m_Facade.Inicializa(&m_Dono), S_OK); }
    static TDados DadosCom(const char* pszJSON, XVUInt64 uiChave = 0) {
        TDados dados = Dados(uiChave);
        dados.sRegistroJSON = pszJSON;
        return dados;
    }
    void Regra(const std::string& sNome, const std::string& sRegra) {
        CriaSimulacao("regras/" + sNome + ".regra", "Operacao: " + sRegra);
    }
    void Pendente(const std::string& sNome, const std::string& sPendente) {
        CriaSimulacao("pendentes/" + sNome + ".pend", "Origem: 20240315-1" + sPendente);
    }
    CXVMiddlewareFacade m_Facade;
};

TEST_F(SimulacaoRegrasTeste, PrimeiraRegraQueValeDecide) {
    // One condition of each does not hold, but for the last two.
    char cRegra = '0';
    for (const char* pszCondicao :
         {"Contem: outra", "Transacao: Inclusao", "Origem: 20240315-11-2", "Tipo: 1", "Chave: 7"})
        Regra(std::string{'1', cRegra++}, std::string("EnviaJson\n") + pszCondicao + "\nNovaChave: 1\n");
    Regra("20",
          "EnviaJson\nContem: urgente\nOrigem: 20240315-1-2\nTipo: BuscaPedidos\nTransacao: 2\nChave: 0\n"
          "NovaChave: 900\nNovaChaveRegistro: 901\nStatus: Enviado\nMensagem: na fila\n\n{\"fila\":1}\n");
    Regra("30", "EnviaJson\nNovaChave: 2\n");
    CriaSimulacao("regras/05.regra.txt", "isto não é regra");
    TDados dados = DadosCom("{\"urgente\":true}");
    TDados esperado = DadosCom("{\"urgente\":true}", 900);
    ASSERT_EQ(Envia(dados), S_OK);
    Responde(esperado, eXVSMiddleware_Enviado, "na fila", "{\"fila\":1}");
    esperado.uiChaveRegistroSistemaTerceiro = 901;
    EXPECT_TRUE(dados == esperado);
    TDados outro = DadosCom("{}");
    ASSERT_EQ(Envia(outro), S_OK);
    EXPECT_EQ(outro.uiChaveIntegracaoSistemaTerceiro, 2U);
}

TEST_F(SimulacaoRegrasTeste, RecusaFalhaETempoEsgotadoNaoGuardamNada) {
    Regra("1", "EnviaJson\nContem: recusa\nStatus: Erro\nMensagem: CNPJ inválido\n");
    Regra("2", "EnviaJson\nContem: falha\nResultado: 0x800706ba\n");
    Regra("3", "EnviaJson\nContem: tempo\nTempoEsgotado: 30000\n");
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
    const char* const pszDocumento = "Status: Sucesso\nMensagem: do documento\n\n{\"doc\":1}";
    CriaSimulacao("7.doc", pszDocumento);
    Regra("1", "BuscaDados\nChave: 7\nStatus: Cancelado\n\n{\"regra\":1}");
    Regra("2", "ExcluiDados\nStatus: Erro\nMensagem: já faturado\n");
    TDados dados = Dados(7);
    TDados esperado = dados;
    ASSERT_EQ(Busca(dados), S_OK);
    Responde(esperado, eXVSMiddleware_Cancelado, "do documento", "{\"regra\":1}");
    EXPECT_TRUE(dados == esperado);
    ASSERT_EQ(Exclui(dados), S_OK);
    Responde(esperado, eXVSMiddleware_Erro, "já faturado", "{\"doc\":1}");
    EXPECT_TRUE(dados == esperado);
    EXPECT_EQ(LeSimulacao("7.doc"), pszDocumento);
}

TEST_F(SimulacaoRegrasTeste, AntesEDepoisDaTrocaMudaSoOQueARegraDizESoParaQuemElaVale) {
    Regra("1",
          "RealizaOperacaoAnterior\nNovaFilial: 3\nNovaBaseDados: 12\nNovaChaveRegistro: 4\n\n{\"n\":1}");
    Regra("2", "RealizaOperacaoPosterior\nResultado: 0x80004005\n");
    Regra("3",
          "AtualizaParametrosIntegracao\nTipo: BuscaPedidos\nNovoTipo: CadastroTabelaPreco\nNovaFilial: 8\n"
          "NovaTransacao: Exclusao\nNovaOrigem: 20240315-11-2\nNovaChaveRegistro: 44\n");
    TDados dados = Dados();
    TDados esperado = DadosCom("{\"n\":1}");
    esperado.ulPonteiroFilial = 3;
    esperado.uiBaseDadosTerceiro = 12;
    esperado.uiChaveRegistroSistemaTerceiro = 4;
    ASSERT_EQ(m_Facade.RealizaOperacaoAnterior(dados), S_OK);
    EXPECT_TRUE(dados == esperado);
    TParametros parametros = Parametros();
    TParametros mudados = parametros;
    mudados.eTipoIntegracao = eXVSMiddleware_CadastroTabelaPreco;
    mudados.eTipoTransacao = eXVSMiddleware_Exclusao;
    mudados.ulPonteiroFilial = 8;
    mudados.regDmcOrigem = XVOrigemTeste(11);
    mudados.uiChaveRegistroSistemaTerceiro = 44;
    ASSERT_EQ(m_Facade.AtualizaParametrosIntegracao(parametros), S_OK);
    EXPECT_TRUE(parametros == mudados);
    parametros.ulPonteiroFilial = mudados.ulPonteiroFilial = 77;
    ASSERT_EQ(m_Facade.AtualizaParametrosIntegracao(parametros), S_OK);
    EXPECT_TRUE(parametros == mudados) << "the rule is not for the new type";
    EXPECT_EQ(m_Facade.RealizaOperacaoPosterior(parametros), E_FAIL);
}

TEST_F(SimulacaoRegrasTeste, PendenciasDaOrigemEmOrdemDeNome) {
    Pendente("b", "-2\nSistema: 8\nFilial: 5\nBaseDados: 6\nChaveRegistro: 7\nReconsultar: 1\n\n{\"b\":1}\n");
    Pendente("a", "-2\nTipo: 9\nTransacao: 2\nRegistro: 20240315-9-2\n\n{\"a\":1}");
    Pendente("c", "-2\nTransacao: Exclusao\n\n{}");
    Pendente("d", "1-2\n\n{}");
    Pendente("f", "-2\nTipo: 7\n\n{}");
    CriaSimulacao("pendentes/leia-me.txt", "qualquer coisa");
    std::vector<CXVDadosCR_PendenciaIntegracaoSistema> lista(1);
    ASSERT_EQ(m_Facade.BuscaIntegracoes(Parametros(), lista), S_OK);
    EXPECT_TRUE(lista == (std::vector<CXVDadosCR_PendenciaIntegracaoSistema>{
                             {"{\"a\":1}", XVOrigemTeste(9), 0, 0, 2, 0, 0},
                             {"{\"b\":1}", XVOrigemTeste(1), 6, 7, 8, 5, 1}}));

    CriaSimulacao("pendentes/e.pend", "Tipo: 6\n\n{}");
    EXPECT_EQ(m_Facade.BuscaIntegracoes(Parametros(), lista), CXVPastaSimulacao::k_hrDocumentoInvalido);
    ASSERT_FALSE(m_Captura.GetFalhas().empty());
    EXPECT_EQ(m_Captura.GetFalhas()[0].sMensagem,
              "Documento de simulação recusado: \"e.pend\": campo \"Origem\": falta");
}

TEST_F(SimulacaoRegrasTeste, ConsultaRespondePelaRegraDaChave) {
    const std::string sRecibo("%PDF\0\xFF\n", 7);
    Regra("1",
          "BuscaDadosSistemaTerceiro\nConsulta: Boleto\nChaveConsulta: 341\nMensagem: pago\n"
          "Documento: recibo.pdf\n\n{\"valor\":10}\n");
    Regra("2", "BuscaDadosSistemaTerceiro\nConsulta: Cnpj\nStatus: PagamentoNecessario\n");
    Regra("3", "BuscaDadosSistemaTerceiro\nConsulta: PagamentoLote\nDocumento: falta.pdf\n");
    CriaSimulacao("documentos/recibo.pdf", sRecibo);
    using TStatus = CXVDadosCR_StatusConsultaSistemaTerceiro;
    TStatus status{"velha", "velho", "velho", 9};
    const auto consulta = [&](XVUInt eTipo, const char* pszChave) {
        return m_Facade.BuscaDadosSistemaTerceiro({pszChave, eTipo, 0, 0}, status);
    };
    ASSERT_EQ(consulta(eXVSMiddleware_ConsultaBoleto, "341"), S_OK);
    EXPECT_TRUE(status == (TStatus{"pago", "{\"valor\":10}", sRecibo, 1}));
    ASSERT_EQ(consulta(eXVSMiddleware_ConsultaBoleto, "342"), S_OK);
    EXPECT_TRUE(status == (TStatus{"Documento não encontrado no sistema simulado.", "", "", 6}));
    ASSERT_EQ(consulta(eXVSMiddleware_ConsultaCnpj, "342"), S_OK);
    EXPECT_TRUE(status == (TStatus{"", "", "", eXVSMiddleware_ConsultaPagamentoNecessario}));
    EXPECT_EQ(consulta(eXVSMiddleware_ConsultaPagamento, "342"), E_NOTIMPL);
    EXPECT_EQ(consulta(eXVSMiddleware_ConsultaPagamentoLote, "342"), eFileNotFound);
    EXPECT_EQ(consulta(eXVSMiddleware_QuantidadeTipoConsulta, "342"), E_INVALIDARG);
}

}  // namespace
