// What a provider is handed and what of its answers is recorded or given back, whole records at a time.
#include <utility>

#include "platform/XVAmbienteSO.h"
#include "tests/middleware/exchange/XVCenarioTroca.h"

namespace {

using CXVTrocaTeste = CXVCenarioTroca;
using TLinhas = std::vector<std::string>;

TEST_F(CXVTrocaTeste, CadaTransacaoEntregaOItemEGravaTudoOQueFoiRespondido) {
    const struct {
        XVUInt eTransacao;
        const char* pszOperacao;
        XVUInt eRespondido;
        const char* pszDmc;      // of the integration, before and after
        const char* pszGravada;  // and when its status changed, which is not told of an inclusion
    } aCasos[] = {
        {eXVSMiddleware_Inclusao, "EnviaJson", eXVSMiddleware_Enviado, "0-0-0", "90223-1-1"},
        {eXVSMiddleware_Alteracao, "BuscaDados", eXVSMiddleware_Enviado, "90221-1-1", "90221-1-1"},
        {eXVSMiddleware_Exclusao, "ExcluiDados", eXVSMiddleware_Cancelado, "90221-2-1", "90221-2-1"}};
    m_rGravador.listaItens = {Item()};
    m_rGravador.mapDados["Anterior"] = Resposta(200, eXVSMiddleware_Pendente);
    for (const auto& rCaso : aCasos) {
        SCOPED_TRACE(rCaso.pszOperacao);
        const bool bInclusao = rCaso.eTransacao == eXVSMiddleware_Inclusao;
        const REG_XVDMC regAntes = bInclusao ? REG_XVDMC() : GravaAnterior(71, eXVSMiddleware_Sucesso);
        m_rGravador.listaChamadas.clear();
        m_rGravador.mapDados[rCaso.pszOperacao] = Resposta(400, rCaso.eRespondido);
        REG_XVDMC regDmc = regAntes;
        EXPECT_EQ(Troca(rCaso.eTransacao, &regDmc), S_OK);
        const XVUInt e = rCaso.eTransacao;
        const std::string sAntes = " MATRIZ/7/99 dmc=" + std::string(rCaso.pszDmc);
        const std::string sItem = " origens=90209-15-2/90209-16-2 datas=90223+43200/";
        const std::string sGravada = "dmc=" + std::string(rCaso.pszGravada);
        EXPECT_EQ(
            m_rGravador.listaChamadas,
            (TLinhas{"BuscaIntegracoes" + sAntes + " origem=90209-15-2" + Comuns(e, 0, 0, 3),
                     "Anterior" + sAntes + sItem + "0+0" + Comuns(e, 102, 101, 103) +
                         (bInclusao ? " chave=0" : " chave=71") +
                         " status=0 reconsultar=0 textos=[{\"p\":1}][][]",
                     rCaso.pszOperacao + sAntes + sItem + "0+0" + Comuns(e, 202, 203, 204) +
                         Respondido(200, eXVSMiddleware_Pendente),
                     "Posterior MATRIZ/7/99 " + sGravada + " origem=90209-16-2" + Comuns(e, 402, 403, 404)}));
        EXPECT_EQ(LinhasPerdidas(), TLinhas());
        // The key of the record has no place in the store.
        EXPECT_EQ(Le(*m_pLoja, regDmc), sGravada + sItem + (bInclusao ? "0+0" : "90223+43200") +
                                            Comuns(e, 0, 403, 404) + Respondido(400, rCaso.eRespondido) +
                                            " usuarios=7/0");
    }
}

TEST_F(CXVTrocaTeste, ExclusaoNaoConfirmadaSoFicaNoLog) {
    REG_XVDMC regDmc = GravaAnterior(71, eXVSMiddleware_Sucesso);
    const std::string sAntes = Le(*m_pLoja, regDmc);
    m_rGravador.listaItens = {Item()};
    m_rGravador.mapDados["ExcluiDados"] = Resposta(500, eXVSMiddleware_Enviado);
    ASSERT_EQ(Troca(eXVSMiddleware_Exclusao, &regDmc), S_OK);
    EXPECT_EQ(Le(*m_pLoja, regDmc), sAntes);
    ASSERT_EQ(LinhasPerdidas().size(), 1U);
    EXPECT_NE(LinhasPerdidas()[0].find("chave 501, origem 20240301-16-2, integração 20240313-1-1"),
              std::string::npos)
        << LinhasPerdidas()[0];
}

// Two items, and two that count for nothing: each begins with the caller's record, not with the one before.
TEST_F(CXVTrocaTeste, CadaItemComecaDoRegistroDoChamador) {
    m_rGravador.listaItens = {Item("{\"p\":1}"), Item(""), Item("sem sistema"), Item("{\"p\":2}")};
    m_rGravador.listaItens[2].reg.eSistemaIntegracao = Tipo_Nenhum;
    m_rGravador.listaItens[3].reg.uiBaseDadosTerceiro = 301;
    m_rGravador.listaItens[3].reg.uiChaveRegistroSistemaTerceiro = 302;
    m_rGravador.listaItens[3].reg.ulPonteiroFilial = 0;  // the caller's stays
    m_rGravador.mapDados["EnviaJson"] = Resposta(400, eXVSMiddleware_Sucesso);
    REG_XVDMC regDmc;
    EXPECT_EQ(Troca(eXVSMiddleware_Alteracao, &regDmc), S_OK);
    EXPECT_EQ(Chamadas("BuscaDados") + Chamadas("Posterior"), 2U) << "a change that names no integration";
    EXPECT_TRUE(XVBusca(*m_pLoja).empty());

    m_rGravador.listaChamadas.clear();
    ASSERT_EQ(Troca(eXVSMiddleware_Inclusao, &regDmc), S_OK);
    EXPECT_EQ(regDmc.uiValor, XVChaveDmc(k_uiHoje, 2)) << "the last one recorded";
    ASSERT_EQ(m_rGravador.listaChamadas.size(), 7U);
    const std::string sItem =
        "EnviaJson MATRIZ/7/99 dmc=0-0-0 origens=90209-15-2/90209-16-2 datas=90223+43200/0+0";
    const std::string sSituacao = " chave=0 status=0 reconsultar=0 textos=";
    EXPECT_EQ(m_rGravador.listaChamadas[2], sItem + Comuns(1, 102, 101, 103) + sSituacao + "[{\"p\":1}][][]");
    EXPECT_EQ(m_rGravador.listaChamadas[5], sItem + Comuns(1, 302, 301, 3) + sSituacao + "[{\"p\":2}][][]");
}

TEST_F(CXVTrocaTeste, FechamentoQueFalhaNaoTiraOQueFoiGravado) {
    m_rGravador.listaItens = {Item()};
    m_rGravador.mapDados["EnviaJson"] = Resposta(400, eXVSMiddleware_Sucesso);
    m_rGravador.mapParametros["Posterior"].iResultado = static_cast<std::int32_t>(0x800705B4U);
    REG_XVDMC regDmc;
    EXPECT_EQ(Troca(eXVSMiddleware_Inclusao, &regDmc), XVHResult(0x800705B4U));
    EXPECT_EQ(XVLe(*m_pLoja, regDmc).reg.uiChaveIntegracaoSistemaTerceiro, 401U);
}

TEST_F(CXVTrocaTeste, ChaveDeOutroSistemaNaoEEntregue) {
    REG_XVDMC regDmc = Grava(*m_pLoja, CXVIntegracaoTeste(71, OfficialBank, eXVSMiddleware_Sucesso));
    m_rGravador.listaItens = {Item()};
    m_rGravador.mapDados["ExcluiDados"].bMuda = false;
    ASSERT_EQ(Troca(eXVSMiddleware_Exclusao, &regDmc), S_OK);
    ASSERT_EQ(Chamadas("ExcluiDados"), 1U);
    EXPECT_NE(m_rGravador.listaChamadas[2].find(" chave=0 "), std::string::npos);
}

TEST_F(CXVTrocaTeste, RespostaSemChaveMantemAChaveConhecidaOuEGravadaComoErro) {
    const struct {
        XVUInt64 uiConhecida;
        XVUInt eRespondido, eGravado;
        XVUInt64 uiGravada;
    } aCasos[] = {{71, eXVSMiddleware_Sucesso, eXVSMiddleware_Sucesso, 71},
                  {71, eXVSMiddleware_Enviado, eXVSMiddleware_Enviado, 71},
                  {71, eXVSMiddleware_Erro, eXVSMiddleware_Erro, 0},
                  {71, eXVSMiddleware_Pendente, eXVSMiddleware_Pendente, 0},
                  {71, eXVSMiddleware_Cancelado, eXVSMiddleware_Cancelado, 0},
                  {0, eXVSMiddleware_Sucesso, eXVSMiddleware_Erro, 0},
                  {0, eXVSMiddleware_Enviado, eXVSMiddleware_Erro, 0}};
    m_rGravador.listaItens = {Item()};
    for (const auto& rCaso : aCasos) {
        SCOPED_TRACE(testing::Message() << rCaso.uiConhecida << " " << rCaso.eRespondido);
        REG_XVDMC regDmc = GravaAnterior(rCaso.uiConhecida, eXVSMiddleware_Pendente);
        m_rGravador.mapDados["BuscaDados"] = Resposta(400, rCaso.eRespondido);
        m_rGravador.mapDados["BuscaDados"].reg.uiChaveIntegracaoSistemaTerceiro = 0;
        ASSERT_EQ(Troca(eXVSMiddleware_Alteracao, &regDmc), S_OK);
        const SIntegracaoLida lida = XVLe(*m_pLoja, regDmc);
        EXPECT_EQ(lida.reg.uiChaveIntegracaoSistemaTerceiro, rCaso.uiGravada);
        EXPECT_EQ(lida.reg.eStatusIntegracao, rCaso.eGravado);
        EXPECT_EQ(lida.sRetorno, "retorno 400") << "the answer itself stays as it came";
        const std::string sAviso = "O sistema externo respondeu a situação " +
                                   std::to_string(rCaso.eRespondido) + " sem informar a chave. ";
        EXPECT_EQ(lida.sMensagem, (rCaso.eGravado == rCaso.eRespondido ? "" : sAviso) + "mensagem 400");
    }
}

TEST_F(CXVTrocaTeste, LeituraConsultaOSistemaESoFechaComOsDoisPedidos) {
    const REG_XVDMC regDmc = GravaAnterior(71, eXVSMiddleware_Sucesso);
    const std::string sGravada = Le(*m_pLoja, regDmc);
    m_rGravador.mapDados["BuscaDados"] = Resposta(200, eXVSMiddleware_Enviado);
    m_rGravador.mapDados["Anterior"] = Resposta(400, eXVSMiddleware_Erro);
    for (const XVUInt64 ullFlags : {XVUInt64{7}, XVUInt64{7 | 16}}) {
        EXPECT_EQ(Le(*m_pLoja, regDmc, ullFlags), sGravada);
        EXPECT_EQ(m_rGravador.listaChamadas, TLinhas());
    }
    const std::string sQuem = "dmc=90221-1-1 origens=90209-18-2/89634-5-2 datas=90221+28800/0+0";
    const std::string sComuns = " tipo=9 sistema=16 transacao=1 auxiliar=0/0 chaveRegistro=";
    const std::string sLida =
        sQuem + sComuns + "402 base=403 filial=404" + Respondido(400, eXVSMiddleware_Erro) + " usuarios=33/0";
    TLinhas listaEsperada{"BuscaDados MATRIZ/7/99 " + sQuem + sComuns +
                              "0 base=0 filial=0 chave=71 status=3 " +
                              "reconsultar=0 textos=[json velho][mensagem velha][retorno velho]",
                          "Anterior MATRIZ/7/99 " + sQuem + sComuns + "202 base=203 filial=204" +
                              Respondido(200, eXVSMiddleware_Enviado)};
    EXPECT_EQ(Le(*m_pLoja, regDmc, 7 | 8), sLida);
    EXPECT_EQ(m_rGravador.listaChamadas, listaEsperada);

    // The closing operation of a reading is not told the key of the record, nor the auxiliary.
    listaEsperada.push_back("Posterior MATRIZ/7/99 dmc=90221-1-1 origem=89634-5-2" + sComuns +
                            "0 base=403 filial=404");
    m_rGravador.listaChamadas.clear();
    EXPECT_EQ(Le(*m_pLoja, regDmc, 7 | 8 | 16), sLida);
    EXPECT_EQ(m_rGravador.listaChamadas, listaEsperada);
    EXPECT_EQ(Le(*m_pLoja, regDmc), sGravada) << "nothing was recorded";
}

TEST_F(CXVTrocaTeste, LeituraDeListaConsultaCadaIntegracaoEmOrdem) {
    const auto porOperacao = [](TLinhas lista) {  // a list asks for all before it goes on
        std::ranges::stable_sort(lista, {}, [](const std::string& s) { return s.substr(0, s.find(' ')); });
        return lista;
    };
    REG_XVDMC aDmc[] = {GravaAnterior(71, eXVSMiddleware_Sucesso), GravaAnterior(72, eXVSMiddleware_Enviado)};
    m_rGravador.mapDados["BuscaDados"] = Resposta(200, eXVSMiddleware_Erro);
    for (const XVUInt64 ullFlags : {XVUInt64{7}, XVUInt64{7 | 16}, XVUInt64{7 | 8}, XVUInt64{7 | 8 | 16}}) {
        SCOPED_TRACE(ullFlags);
        TLinhas listaEsperada;  // each as it reads alone, in calls and answers
        m_rGravador.listaChamadas.clear();
        for (const REG_XVDMC regDmc : aDmc) listaEsperada.push_back(Le(*m_pLoja, regDmc, ullFlags));
        const TLinhas listaChamadas = std::exchange(m_rGravador.listaChamadas, {});
        XVUInt ulQuantidade = 0;
        tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pRegs = nullptr;
        ASSERT_EQ(m_pLoja->LeIntegracoes({2, 0, aDmc, 0}, &ulQuantidade, &pRegs, ullFlags), S_OK);
        TLinhas listaLida;
        for (unsigned i = 0; i < ulQuantidade; ++i) listaLida.push_back(Descreve(XVToma(pRegs[i])));
        XVAmbienteSO::LiberaSaida(pRegs);
        EXPECT_EQ(listaLida, listaEsperada);
        EXPECT_EQ(porOperacao(m_rGravador.listaChamadas), porOperacao(listaChamadas));
    }
}

}  // namespace
