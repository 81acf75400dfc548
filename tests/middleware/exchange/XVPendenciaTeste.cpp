// Pending items recorded without exchange: what the provider is asked, and the whole integration and mapping
// that result.
#include <tuple>

#include "suite/providers/XVProvedorAdaptador.h"
#include "tests/middleware/exchange/XVCenarioTroca.h"

namespace {

class CXVPendenciaTeste : public CXVCenarioTroca {
  protected:
    static constexpr XVUInt64 k_uiArgumento = XVChaveDmc(XVDma(2024, 3, 1), 19, 2);
    static constexpr XVUInt64 k_uiTrocada = XVChaveDmc(XVDma(2024, 3, 1), 20, 2);

    HRESULT GravaPendencia() {
        return m_pLoja->GravaPendenciaIntegracao({k_uiArgumento}, Pedido(eXVSMiddleware_Inclusao));
    }
    // The parameters of the item before the provider changes them.
    static XVProvedorParametros ParametrosItem() {
        XVProvedorParametros reg{};
        reg.eTipoIntegracao = eXVSMiddleware_BuscaPedidos;
        reg.uiDmcOrigem = k_uiMovimento;
        reg.uiDmcIntegracao = XVChaveDmc(k_uiHoje, 77);
        reg.uiChaveRegistroSistemaTerceiro = 102;
        reg.uiBaseDadosTerceiro = 101;
        reg.eSistemaIntegracao = Mercos;
        reg.eTipoTransacao = eXVSMiddleware_Inclusao;
        reg.ulPonteiroFilial = 103;
        reg.ulPonteiroAuxiliar = 21;
        reg.ucTipoPonteiroAuxiliar = 22;
        return reg;
    }
};

TEST_F(CXVPendenciaTeste, ItemEGravadoComOQueOProvedorMudouEComSeuMapeamento) {
    m_rGravador.listaItens = {Item(), Item("")};
    m_rGravador.mapParametros["Atualiza"] = {
        1, true, eXVSMiddleware_CadastroProduto, eXVSMiddleware_Alteracao, 204, k_uiTrocada, 205};
    ASSERT_EQ(GravaPendencia(), S_OK);
    XVProvedorParametros regPergunta = ParametrosItem();
    regPergunta.uiDmcOrigem = k_uiArgumento;
    regPergunta.uiChaveRegistroSistemaTerceiro = 992;
    regPergunta.uiBaseDadosTerceiro = 993;
    regPergunta.ulPonteiroFilial = 3;
    EXPECT_EQ(m_rGravador.listaChamadas,
              (std::vector<std::string>{Parametros("BuscaIntegracoes", regPergunta),
                                        Parametros("Atualiza", ParametrosItem())}));
    ASSERT_EQ(XVBusca(*m_pLoja), TListaDmc{XVChaveDmc(k_uiHoje, 1)}) << "the item without JSON is left out";

    const tagREG_CR_INTEGRACAO_MIDDLEWAREPS pedido = Pedido(eXVSMiddleware_Inclusao);
    SDadosTeste dados = Preparado(eXVSMiddleware_Alteracao);
    dados.reg.uiDmc = XVChaveDmc(k_uiHoje, 1);
    dados.reg.uiDmcIntegracaoOrigem = k_uiArgumento;
    dados.reg.uiDmcMovimentoOrigem = k_uiTrocada;
    dados.reg.uiDataHoraInclusao = pedido.regDataHoraInclusao.uiValor;
    dados.reg.uiDataHoraAlteracaoStatus = pedido.regDataHoraAlteracaoStatus.uiValor;
    dados.reg.uiChaveRegistroSistemaTerceiro = 0;
    dados.reg.eTipoIntegracao = eXVSMiddleware_CadastroProduto;
    dados.reg.eStatusIntegracao = eXVSMiddleware_Pendente;
    dados.reg.ulPonteiroFilial = 204;
    dados.reg.cReconsultarIdTerceiros = 1;
    dados.uiUsuarioInclusao = 994;
    dados.uiUsuarioCancelamento = 995;
    EXPECT_EQ(Le(*m_pLoja, {XVChaveDmc(k_uiHoje, 1)}), dados.Integracao());

    tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS chave{};
    ASSERT_EQ(m_pLoja->BuscaChaveRegistroTelvoParaTerceiro(
                  {0, {k_uiTrocada}, 101, eXVSMiddleware_CadastroProduto, Mercos, {}}, &chave),
              S_OK);
    EXPECT_EQ(chave.regDmcOrigemIntegracao.uiValor, XVChaveDmc(k_uiHoje, 1));
    EXPECT_EQ(chave.uiChaveRegistroSistemaTerceiro, 0U);
}

TEST_F(CXVPendenciaTeste, ItemQueNaoCabeNaoEGravado) {
    m_rGravador.listaItens = {Item(), Item()};
    m_rGravador.listaItens[1].eSistema = 4;
    EXPECT_EQ(GravaPendencia(), E_INVALIDARG);
    m_rGravador.listaItens[1].eSistema = OfficialBank;
    EXPECT_EQ(GravaPendencia(), E_NOTIMPL);
    m_rGravador.listaItens = {Item()};
    m_rGravador.listaItens[0].uiOrigem = 0;  // no mapping without a record of the suite
    EXPECT_EQ(GravaPendencia(), E_XVCR_CHAVE_REGISTRO_TELVO_ZERADA);
    m_rGravador.listaItens = {Item()};
    for (const auto& [eTipo, eTransacao, uiOrigem] :
         {std::tuple{18U, 1U, k_uiTrocada}, {1U, 4U, k_uiTrocada}, {1U, 1U, XVUInt64{1U << 14 | 4}}}) {
        m_rGravador.mapParametros["Atualiza"] = {0, true, eTipo, eTransacao, 1, uiOrigem, 1};
        EXPECT_EQ(GravaPendencia(), CXVProvedorAdaptador::k_hrRespostaInvalida);
    }
    EXPECT_TRUE(XVBusca(*m_pLoja).empty());
    EXPECT_EQ(Conteudo("CRCHAVEREGTER.dat"), "<ausente>");
}

}  // namespace
