// The exchange with the simulated external system. What a provider is handed, and what of its answers is
// recorded, is seen with one that writes everything down.
#include "tests/middleware/XVCenarioLoja.h"

namespace {

const std::string k_sOrigem = "20240301-15-2";
const REG_XVDMC k_regOrigem{XVChaveDmc(XVDma(2024, 3, 1), 15, 2)};

class CXVTerceirosTeste : public CXVCenarioLoja {
  protected:
    CXVTerceirosTeste() : m_pLoja(Abre()) {}

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

TEST_F(CXVTerceirosTeste, ItensSaoEnviadosJuntosCadaUmDoRegistroDoChamador) {
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

TEST_F(CXVTerceirosTeste, AlteracaoEExclusaoAtualizamAIntegracaoNomeada) {
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

}  // namespace
