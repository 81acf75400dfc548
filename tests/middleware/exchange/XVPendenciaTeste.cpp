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
    // What the provider makes of an item's parameters: its fields, and those that are not its to change.
    void Atualiza(std::int32_t iResultado, XVUInt eTipo, XVUInt eTransacao, XVUInt64 uiOrigem) {
        const XVProvedorParametros reg{.ulTamanho = 0,
                                       .eTipoIntegracao = eTipo,
                                       .uiDmcOrigem = uiOrigem,
                                       .uiDmcIntegracao = 1U << 14,
                                       .uiChaveRegistroSistemaTerceiro = 205,
                                       .uiBaseDadosTerceiro = 99,
                                       .eSistemaIntegracao = 2,
                                       .eTipoTransacao = eTransacao,
                                       .ulPonteiroFilial = 204,
                                       .ulPonteiroAuxiliar = 99,
                                       .ucTipoPonteiroAuxiliar = 99,
                                       .cFiller = {}};
        m_rGravador.mapParametros["Atualiza"] = {iResultado, true, reg};
    }
};

TEST_F(CXVPendenciaTeste, ItemEGravadoComOQueOProvedorMudouEComSeuMapeamento) {
    m_rGravador.listaItens = {Item(), Item("")};
    Atualiza(1, eXVSMiddleware_CadastroProduto, eXVSMiddleware_Alteracao, k_uiTrocada);
    ASSERT_EQ(GravaPendencia(), S_OK);
    const std::string sPedido = " MATRIZ/7/99 dmc=90223-77-1 origem=";
    EXPECT_EQ(m_rGravador.listaChamadas,
              (std::vector<std::string>{"BuscaIntegracoes" + sPedido + "90209-19-2" + Comuns(1, 992, 993, 3),
                                        "Atualiza" + sPedido + "90209-16-2" + Comuns(1, 102, 101, 103)}));
    ASSERT_EQ(XVBusca(*m_pLoja), TListaDmc{XVChaveDmc(k_uiHoje, 1)}) << "the item without JSON is left out";

    EXPECT_EQ(Le(*m_pLoja, {XVChaveDmc(k_uiHoje, 1)}),
              "dmc=90223-1-1 origens=90209-19-2/90209-20-2 datas=90209+3600/90209+7200 tipo=6 sistema=16 "
              "transacao=2 auxiliar=21/22 chaveRegistro=0 base=101 filial=204 chave=0 status=1 reconsultar=1 "
              "textos=[{\"p\":1}][][] usuarios=994/995");

    tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS chave{};
    ASSERT_EQ(m_pLoja->BuscaChaveRegistroTelvoParaTerceiro(
                  {0, {k_uiTrocada}, 101, eXVSMiddleware_CadastroProduto, Mercos, {}}, &chave),
              S_OK);
    EXPECT_EQ(chave.regDmcOrigemIntegracao.uiValor, XVChaveDmc(k_uiHoje, 1));
    EXPECT_EQ(chave.uiChaveRegistroSistemaTerceiro, 0U);
}

TEST_F(CXVPendenciaTeste, ItemQueNaoCabeNaoEGravado) {
    m_rGravador.listaItens = {Item(), Item()};
    m_rGravador.listaItens[1].reg.eSistemaIntegracao = 4;
    EXPECT_EQ(GravaPendencia(), E_INVALIDARG);
    m_rGravador.listaItens[1].reg.eSistemaIntegracao = OfficialBank;
    EXPECT_EQ(GravaPendencia(), E_NOTIMPL);
    m_rGravador.listaItens = {Item()};
    m_rGravador.listaItens[0].reg.uiDmcOrigem = 0;  // no mapping without a record of the suite
    EXPECT_EQ(GravaPendencia(), E_XVCR_CHAVE_REGISTRO_TELVO_ZERADA);
    m_rGravador.listaItens = {Item()};
    for (const auto& [eTipo, eTransacao, uiOrigem] :
         {std::tuple{18U, 1U, k_uiTrocada}, {1U, 4U, k_uiTrocada}, {1U, 1U, XVUInt64{1U << 14 | 4}}}) {
        Atualiza(0, eTipo, eTransacao, uiOrigem);
        EXPECT_EQ(GravaPendencia(), CXVProvedorAdaptador::k_hrRespostaInvalida);
    }
    EXPECT_TRUE(XVBusca(*m_pLoja).empty());
    EXPECT_EQ(Conteudo("CRCHAVEREGTER.dat"), "<ausente>");
}

}  // namespace
