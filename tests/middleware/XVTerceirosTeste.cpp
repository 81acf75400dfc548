// The exchange with external systems: at once, pending, on reading; with the simulated one.
#include "tests/middleware/XVCenarioLoja.h"

namespace {

const std::string k_sOrigem = "20240301-15-2";
const REG_XVDMC k_regOrigem{XVChaveDmc(XVDma(2024, 3, 1), 15, 2)};

class CXVTerceirosTest : public CXVCenarioLoja {
  protected:
    CXVTerceirosTest() : m_pLoja(Abre()) {}

    static tagREG_CR_INTEGRACAO_MIDDLEWAREPS Pedido(XVUInt eTransacao) {
        tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
        reg.regDmcIntegracaoOrigem = k_regOrigem;
        reg.eTipoIntegracao = eXVSMiddleware_BuscaPedidos;
        reg.eTipoTransacao = eTransacao;
        reg.ulPonteiroFilial = 3;
        reg.ulPonteiroAuxiliar = 21;
        reg.ucTipoPonteiroAuxiliar = 2;
        return reg;
    }
    void Pendente(const std::string& sNome, const std::string& sCampos, const std::string& sJSON) {
        CriaSimulacao("pendentes/" + sNome + ".pend", "Origem: " + k_sOrigem + "\n" + sCampos + "\n" + sJSON);
    }
    void Regra(const std::string& sNome, const std::string& sTexto) {
        CriaSimulacao("regras/" + sNome + ".regra", sTexto);
    }

    TLoja m_pLoja;
};

TEST_F(CXVTerceirosTest, ItemsAreSentAtOnceEachFromTheCallersOwnRecord) {
    Pendente("1", "BaseDados: 7\nFilial: 4\nRegistro: 20240301-16-2\n", "{\"p\":1}");
    Pendente("2", "", "{\"p\":2}");
    Pendente("3", "", "");                // skipped: nothing to send
    Pendente("4", "Sistema: 0\n", "{}");  // skipped: no system
    REG_XVDMC regDmc;
    ASSERT_EQ(m_pLoja->GravaIntegracaoInstantanea(&regDmc, Pedido(eXVSMiddleware_Inclusao)), S_OK);
    EXPECT_EQ(regDmc.uiValor, XVChaveDmc(k_uiHoje, 2)) << "the last one recorded";
    const SIntegracaoLida um = XVLe(*m_pLoja, {XVChaveDmc(k_uiHoje, 1)});
    EXPECT_EQ(um.sJSON, "{\"p\":1}");
    EXPECT_EQ(um.reg.eStatusIntegracao, eXVSMiddleware_Sucesso);
    EXPECT_EQ(um.reg.uiChaveIntegracaoSistemaTerceiro, 1U);
    EXPECT_EQ(um.reg.ulPonteiroFilial, 4U);
    EXPECT_EQ(um.reg.uiBaseDadosTerceiro, 7U);
    EXPECT_EQ(um.reg.regDmcMovimentoOrigem.uiValor, XVChaveDmc(XVDma(2024, 3, 1), 16, 2));
    EXPECT_EQ(um.reg.ulPonteiroUsuarioInclusao, 7U);
    EXPECT_EQ(um.sRetorno, "{\"chave\":\"1\",\"situacao\":\"aceito\"}");
    const SIntegracaoLida dois = XVLe(*m_pLoja, regDmc);
    EXPECT_EQ(dois.sJSON, "{\"p\":2}");
    EXPECT_EQ(dois.reg.ulPonteiroFilial, 3U) << "nothing of the first item";
    EXPECT_EQ(dois.reg.uiBaseDadosTerceiro, 0U);
    EXPECT_EQ(dois.reg.uiChaveIntegracaoSistemaTerceiro, 2U);
    EXPECT_EQ(dois.reg.ulPonteiroAuxiliar, 21U);
    EXPECT_EQ(XVBusca(*m_pLoja).size(), 2U);
}

TEST_F(CXVTerceirosTest, ChangeAndDeletionUpdateTheIntegrationThatIsNamed) {
    Pendente("1", "", "{\"p\":1}");
    REG_XVDMC regDmc;
    ASSERT_EQ(m_pLoja->GravaIntegracaoInstantanea(&regDmc, Pedido(eXVSMiddleware_Inclusao)), S_OK);
    CriaSimulacao("1.doc", "Status: Enviado\nMensagem: em análise\nOrigem: " + k_sOrigem +
                               "\nTipo: BuscaPedidos\n\n{\"etapa\":2}");
    ASSERT_EQ(m_pLoja->GravaIntegracaoInstantanea(&regDmc, Pedido(eXVSMiddleware_Alteracao)), S_OK);
    SIntegracaoLida lida = XVLe(*m_pLoja, regDmc);
    EXPECT_EQ(lida.reg.eStatusIntegracao, eXVSMiddleware_Enviado);
    EXPECT_EQ(lida.sMensagem, "em análise");
    EXPECT_EQ(lida.sRetorno, "{\"etapa\":2}");
    REG_XVDMC regNula;
    ASSERT_EQ(m_pLoja->GravaIntegracaoInstantanea(&regNula, Pedido(eXVSMiddleware_Alteracao)), S_OK);
    EXPECT_TRUE(regNula.EhNulo()) << "a change that names no integration records nothing";

    Regra("1", "Operacao: ExcluiDados\nStatus: Erro\nMensagem: em uso\n");
    ASSERT_EQ(m_pLoja->GravaIntegracaoInstantanea(&regDmc, Pedido(eXVSMiddleware_Exclusao)), S_OK);
    EXPECT_EQ(XVLe(*m_pLoja, regDmc).reg.eStatusIntegracao, eXVSMiddleware_Enviado)
        << "a refused deletion changes nothing";
    Regra("1", "Operacao: ExcluiDados\nContem: outro\n");
    ASSERT_EQ(m_pLoja->GravaIntegracaoInstantanea(&regDmc, Pedido(eXVSMiddleware_Exclusao)), S_OK);
    EXPECT_EQ(XVLe(*m_pLoja, regDmc).reg.eStatusIntegracao, eXVSMiddleware_Cancelado);
    EXPECT_EQ(XVBusca(*m_pLoja).size(), 1U);
    REG_XVDMC regFora{XVChaveDmc(k_uiHoje, 9)};
    EXPECT_EQ(m_pLoja->GravaIntegracaoInstantanea(&regFora, Pedido(eXVSMiddleware_Alteracao)),
              E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
}

TEST_F(CXVTerceirosTest, ExchangeThatFailsEndsTheCallAndWhatWasRecordedStays) {
    Pendente("1", "", "{\"p\":1}");
    Pendente("2", "", "{\"p\":2}");
    Pendente("3", "", "{\"p\":3}");
    Regra("1", "Operacao: EnviaJson\nContem: \"p\":2\nResultado: 0x800706BA\n");
    REG_XVDMC regDmc;
    EXPECT_EQ(m_pLoja->GravaIntegracaoInstantanea(&regDmc, Pedido(eXVSMiddleware_Inclusao)),
              XVHResult(0x800706BAU));
    EXPECT_EQ(regDmc.uiValor, XVChaveDmc(k_uiHoje, 1));
    EXPECT_EQ(XVBusca(*m_pLoja).size(), 1U);
    Regra("1", "Operacao: EnviaJson\nStatus: Erro\nMensagem: recusado\n");
    regDmc = {};
    ASSERT_EQ(m_pLoja->GravaIntegracaoInstantanea(&regDmc, Pedido(eXVSMiddleware_Inclusao)), S_OK);
    EXPECT_EQ(XVLe(*m_pLoja, regDmc).reg.eStatusIntegracao, eXVSMiddleware_Erro) << "a refusal is a result";
    EXPECT_EQ(XVLe(*m_pLoja, regDmc).sMensagem, "recusado");
    Regra("1", "Operacao: RealizaOperacaoPosterior\nResultado: 0x800706BA\n");
    regDmc = {};
    EXPECT_EQ(m_pLoja->GravaIntegracaoInstantanea(&regDmc, Pedido(eXVSMiddleware_Inclusao)),
              XVHResult(0x800706BAU));
    EXPECT_EQ(XVLe(*m_pLoja, regDmc).hr, S_OK) << "recorded, and its key is told";
}

TEST_F(CXVTerceirosTest, PendingItemsAreRecordedWithTheirMappingAndWithoutExchange) {
    Pendente("1", "BaseDados: 7\nReconsultar: 1\n", "{\"p\":1}");
    Pendente("2", "Sistema: 0\n", "{}");
    Regra("1",
          "Operacao: AtualizaParametrosIntegracao\nNovoTipo: CadastroProduto\nNovaTransacao: "
          "Alteracao\nNovaFilial: 8\n");
    ASSERT_EQ(m_pLoja->GravaPendenciaIntegracao(k_regOrigem, Pedido(eXVSMiddleware_Inclusao)), S_OK);
    const REG_XVDMC regDmc{XVChaveDmc(k_uiHoje, 1)};
    const SIntegracaoLida lida = XVLe(*m_pLoja, regDmc);
    ASSERT_EQ(lida.hr, S_OK);
    EXPECT_EQ(lida.reg.eStatusIntegracao, eXVSMiddleware_Pendente);
    EXPECT_EQ(lida.reg.eTipoIntegracao, eXVSMiddleware_CadastroProduto);
    EXPECT_EQ(lida.reg.eTipoTransacao, eXVSMiddleware_Alteracao);
    EXPECT_EQ(lida.reg.ulPonteiroFilial, 8U);
    EXPECT_EQ(lida.reg.cReconsultarIdTerceiros, 1U);
    EXPECT_EQ(lida.reg.uiChaveIntegracaoSistemaTerceiro, 0U);
    EXPECT_EQ(lida.sJSON, "{\"p\":1}");
    EXPECT_EQ(LeSimulacao("1.doc"), "<ausente>") << "nothing was sent";
    tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS chave{};
    ASSERT_EQ(m_pLoja->BuscaChaveRegistroTelvoParaTerceiro(
                  {0, k_regOrigem, 7, eXVSMiddleware_CadastroProduto, 2, {}}, &chave),
              S_OK);
    EXPECT_EQ(chave.regDmcOrigemIntegracao.uiValor, regDmc.uiValor);
    EXPECT_EQ(chave.uiChaveRegistroSistemaTerceiro, 0U);
    ASSERT_EQ(m_pLoja->GravaPendenciaIntegracao(k_regOrigem, Pedido(eXVSMiddleware_Inclusao)), S_OK);
    EXPECT_EQ(XVBusca(*m_pLoja).size(), 2U);
    EXPECT_EQ(Dados(Conteudo("CRCHAVEREGTER.dat")).size(), 40U) << "the mapping is there already";
}

TEST_F(CXVTerceirosTest, SystemWithoutProviderStoresNothingNotEvenTheItemsBeforeIt) {
    Pendente("1", "", "{\"p\":1}");
    Pendente("2", "Sistema: 8\n", "{\"p\":2}");
    const auto retrato = m_Arquivos.Retrata();
    REG_XVDMC regDmc;
    EXPECT_EQ(m_pLoja->GravaIntegracaoInstantanea(&regDmc, Pedido(eXVSMiddleware_Inclusao)), E_NOTIMPL);
    EXPECT_EQ(m_pLoja->GravaPendenciaIntegracao(k_regOrigem, Pedido(eXVSMiddleware_Inclusao)), E_NOTIMPL);
    EXPECT_TRUE(regDmc.EhNulo());
    EXPECT_EQ(m_Arquivos.Diferenca(retrato, m_Arquivos.Retrata()), "");
    const REG_XVDMC regBanco = Grava(*m_pLoja, CXVIntegracaoTeste(1, OfficialBank));
    EXPECT_EQ(XVLe(*m_pLoja, regBanco, 8).hr, E_NOTIMPL);
    EXPECT_EQ(XVLe(*m_pLoja, regBanco).hr, S_OK);
}

TEST_F(CXVTerceirosTest, ReadingWithFlagsAsksTheExternalSystemAndStoresNothing) {
    Pendente("1", "", "{\"p\":1}");
    REG_XVDMC regDmc;
    ASSERT_EQ(m_pLoja->GravaIntegracaoInstantanea(&regDmc, Pedido(eXVSMiddleware_Inclusao)), S_OK);
    CriaSimulacao("1.doc", "Status: Cancelado\nMensagem: desistiu\n\n{\"etapa\":9}");
    Regra("1", "Operacao: RealizaOperacaoPosterior\nResultado: 0x80070005\n");
    const auto retrato = RetratoSemLogs();
    const SIntegracaoLida consultada = XVLe(*m_pLoja, regDmc, 8);
    EXPECT_EQ(consultada.hr, S_OK);
    EXPECT_EQ(consultada.reg.eStatusIntegracao, eXVSMiddleware_Cancelado);
    EXPECT_EQ(consultada.sMensagem, "desistiu");
    EXPECT_EQ(XVLe(*m_pLoja, regDmc, 8 | 16).hr, XVHResult(0x80070005U))
        << "flag 16 runs the closing operation";
    EXPECT_EQ(XVLe(*m_pLoja, regDmc, 16).hr, S_OK) << "which needs flag 8";
    EXPECT_EQ(XVLe(*m_pLoja, regDmc).reg.eStatusIntegracao, eXVSMiddleware_Sucesso);
    EXPECT_EQ(m_Arquivos.Diferenca(retrato, RetratoSemLogs()), "");
}

TEST_F(CXVTerceirosTest, DirectQueryAnswersByRulesAndOtherwiseNotAtAll) {
    tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS consulta{};
    const std::string sChave = "2026-000341";
    consulta.regChaveConsulta = XVTextoPS(sChave);
    consulta.eTipoConsulta = eXVSMiddleware_ConsultaPagamentoComprovante;
    tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS status{};
    EXPECT_EQ(m_pLoja->BuscaDadosSistemaTerceiro(consulta, &status), E_NOTIMPL);
    Regra("1",
          "Operacao: BuscaDadosSistemaTerceiro\nConsulta: PagamentoComprovante\nChaveConsulta: "
          "2026-000341\nDocumento: c.pdf\nMensagem: Pago\n\n{\"v\":1}");
    CriaSimulacao("documentos/c.pdf", std::string("%PDF\0\1", 6));
    ASSERT_EQ(m_pLoja->BuscaDadosSistemaTerceiro(consulta, &status), S_OK);
    EXPECT_EQ(CXVStringPS::RegToString(status.regMensagemRetorno), "Pago");
    EXPECT_EQ(CXVStringPS::RegToString(status.regJSONRetorno), "{\"v\":1}");
    EXPECT_EQ(status.eStatusConsulta, eXVSMiddleware_ConsultaSucesso);
    EXPECT_EQ(status.ulTamanhoDocumentoRetorno, 6U);
    XVLiberaBuffers(&status);
}

}  // namespace
