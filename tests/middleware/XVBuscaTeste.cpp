// Searching and reading.
#include <functional>
#include <random>

#include "middleware/XVOrdenacaoParalela.h"
#include "platform/XVAmbienteSO.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/middleware/XVCenarioLoja.h"

namespace {

class CXVBuscaTest : public CXVCenarioLoja {
  protected:
    CXVBuscaTest() : m_pLoja(Abre()) {}

    // Three days, two integrations each, recorded in mixed order of days: keys 10, 20, 30 ...
    void Povoa() {
        for (const unsigned uiDia : {20U, 18U, 19U}) {
            SetDia(uiDia, 9);
            Inclui(uiDia * 10, Mercos, eXVSMiddleware_Pendente, eXVSMiddleware_CadastroProduto,
                   eXVSMiddleware_Inclusao);
            SetDia(uiDia, 11);
            Inclui(uiDia * 10 + 1, OfficialBank, eXVSMiddleware_Sucesso,
                   eXVSMiddleware_MovimentoContasReceberBoleto, eXVSMiddleware_Alteracao);
        }
    }
    void Inclui(XVUInt64 uiChave, XVUInt eSistema, XVUInt eStatus, XVUInt eTipo, XVUInt eTransacao) {
        CXVIntegracaoTeste integracao(uiChave, eSistema, eStatus);
        integracao.reg.eTipoIntegracao = eTipo;
        integracao.reg.eTipoTransacao = eTransacao;
        integracao.reg.regDataHoraAlteracaoStatus = REG_XVDMAHMSUTC::Agora();
        Grava(*m_pLoja, integracao);
    }
    static XVUInt64 Dmc(unsigned uiDia, unsigned uiPonteiro) {
        return XVChaveDmc(XVDma(2024, 3, uiDia), uiPonteiro);
    }
    static REG_XVDMAHMSUTC Hora(unsigned uiDia, unsigned uiHora) {
        return {XVDataHora(XVDma(2024, 3, uiDia), uiHora)};
    }
    TListaDmc Busca(SFiltroTeste filtro) { return XVBusca(*m_pLoja, std::move(filtro)); }

    TLoja m_pLoja;
};

const TListaDmc k_todas{XVChaveDmc(XVDma(2024, 3, 18), 1), XVChaveDmc(XVDma(2024, 3, 18), 2),
                        XVChaveDmc(XVDma(2024, 3, 19), 1), XVChaveDmc(XVDma(2024, 3, 19), 2),
                        XVChaveDmc(XVDma(2024, 3, 20), 1), XVChaveDmc(XVDma(2024, 3, 20), 2)};

TEST_F(CXVBuscaTest, EmptyStoreAnswersNothingToEveryQuestion) {
    EXPECT_EQ(Busca({}), TListaDmc{});
    EXPECT_EQ(Busca({.de = 5, .sistemas = {Mercos}}), TListaDmc{});
    EXPECT_EQ(Busca({.tipos = {1}}), TListaDmc{});
}

TEST_F(CXVBuscaTest, EmptyFilterReturnsAllGroupedByDateAndOpensNoMember) {
    Povoa();
    m_pLoja.reset();
    m_pLoja = Abre();
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(falhas);
    EXPECT_EQ(Busca({}), k_todas);
    EXPECT_EQ(Busca({.status = {eXVSMiddleware_Pendente}, .sistemas = {Mercos}}),
              (TListaDmc{Dmc(18, 1), Dmc(19, 1), Dmc(20, 1)}));
    EXPECT_EQ(falhas.GetQuantidadeTotal(), 0U) << "the index alone knows the answer";
    EXPECT_EQ(Busca({.tipos = {eXVSMiddleware_CadastroProduto}}).size(), 3U);
    EXPECT_GT(falhas.GetQuantidadeTotal(), 0U);
    falhas.Limpa();
    EXPECT_EQ(Busca({.tipos = {eXVSMiddleware_CadastroProduto}, .status = {eXVSMiddleware_Erro}}),
              TListaDmc{});
    EXPECT_EQ(falhas.GetQuantidade(EOperacaoArquivo::eAbre), 0U) << "nothing passes the first level";
}

TEST_F(CXVBuscaTest, EveryFieldNarrowsByItself) {
    Povoa();
    const TListaDmc mercos{Dmc(18, 1), Dmc(19, 1), Dmc(20, 1)};
    const TListaDmc banco{Dmc(18, 2), Dmc(19, 2), Dmc(20, 2)};
    EXPECT_EQ(Busca({.status = {eXVSMiddleware_Sucesso}}), banco);
    EXPECT_EQ(Busca({.sistemas = {OfficialBank, SimulacaoSistemaTerceiro}}), banco);
    EXPECT_EQ(Busca({.sistemas = {OfficialBank, Mercos}}), k_todas);
    EXPECT_EQ(Busca({.tipos = {eXVSMiddleware_CadastroProduto}}), mercos);
    EXPECT_EQ(Busca({.transacoes = {eXVSMiddleware_Alteracao, eXVSMiddleware_Exclusao}}), banco);
    EXPECT_EQ(Busca({.de = 191}), (TListaDmc{Dmc(19, 2), Dmc(20, 1), Dmc(20, 2)}));
    EXPECT_EQ(Busca({.ate = 181}), (TListaDmc{Dmc(18, 1), Dmc(18, 2)}));
    EXPECT_EQ(Busca({.de = 181, .ate = 190}), (TListaDmc{Dmc(18, 2), Dmc(19, 1)}));
    EXPECT_EQ(Busca({.tipos = {eXVSMiddleware_CadastroProduto}, .transacoes = {eXVSMiddleware_Alteracao}}),
              TListaDmc{});
    EXPECT_EQ(Busca({.status = {77}}), TListaDmc{}) << "a value that nobody has";
}

TEST_F(CXVBuscaTest, DateAndTimeOfDayAreBoundedApart) {
    Povoa();  // 09:00 and 11:00 of each day
    const TListaDmc as11{Dmc(18, 2), Dmc(19, 2), Dmc(20, 2)};
    const TListaDmc as9{Dmc(18, 1), Dmc(19, 1), Dmc(20, 1)};
    EXPECT_EQ(Busca({.incluidaDe = Hora(18, 10)}), as11) << "09:00 of a later day stays out";
    EXPECT_EQ(Busca({.incluidaDe = Hora(19, 0)}), (TListaDmc(k_todas.begin() + 2, k_todas.end())));
    EXPECT_EQ(Busca({.incluidaAte = Hora(20, 10)}), as9);
    EXPECT_EQ(Busca({.incluidaAte = Hora(18, 0)}), (TListaDmc(k_todas.begin(), k_todas.begin() + 2)))
        << "a bound without time of day takes the whole day";
    EXPECT_EQ(Busca({.incluidaDe = Hora(18, 11), .incluidaAte = Hora(19, 11)}),
              (TListaDmc{Dmc(18, 2), Dmc(19, 2)}))
        << "bounds are inclusive";
    EXPECT_EQ(Busca({.alteradaDe = Hora(19, 10)}), (TListaDmc{Dmc(19, 2), Dmc(20, 2)}));
    EXPECT_EQ(Busca({.alteradaAte = Hora(19, 10)}), (TListaDmc{Dmc(18, 1), Dmc(19, 1)}));
}

TEST_F(CXVBuscaTest, KeyWithSystemsIsLookedUpDirectlyAndExactly) {
    Povoa();
    Inclui(201, Mercos, eXVSMiddleware_Erro, eXVSMiddleware_BuscaPedidos, eXVSMiddleware_Exclusao);
    Inclui(201, Mercos, eXVSMiddleware_Enviado, eXVSMiddleware_BuscaPedidos, eXVSMiddleware_Inclusao);
    const SFiltroTeste filtro{.de = 201, .ate = 200, .sistemas = {Mercos, OfficialBank}};
    const TListaDmc esperada{Dmc(19, 3), Dmc(19, 4), Dmc(20, 2)};
    EXPECT_EQ(Busca(filtro), esperada) << "in the order of the systems; the upper bound is not asked";
    SFiltroTeste comNivel2 = filtro;
    comNivel2.transacoes = {eXVSMiddleware_Inclusao};
    EXPECT_EQ(Busca(comNivel2), (TListaDmc{Dmc(19, 4)}));
    SFiltroTeste somenteFinal{.ate = 180, .sistemas = {Mercos}};
    EXPECT_EQ(Busca(somenteFinal), (TListaDmc{Dmc(18, 1)})) << "an upper bound alone is no direct search";
    SFiltroTeste repetido{.de = 201, .sistemas = {OfficialBank, OfficialBank}};
    EXPECT_EQ(Busca(repetido), (TListaDmc{Dmc(20, 2)}));
}

TEST_F(CXVBuscaTest, FailingMemberEndsTheSearchAndNoPartOfTheListRemains) {
    Povoa();
    m_pLoja.reset();
    const std::string sArquivo = PastaDados("CRINTEGMID20240319.dat");
    m_Arquivos.CriaArquivo(sArquivo, m_Arquivos.LeConteudo(sArquivo)->substr(0, 300));
    m_pLoja = Abre();
    tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS filtro{};
    XVUInt eTipo = eXVSMiddleware_CadastroProduto;
    filtro.ulQuantidadeTipoIntegracao = 1;
    filtro.pListaTipoIntegracao = &eTipo;
    _REG_DF_LISTA_XVDMCPS lista{};
    EXPECT_EQ(m_pLoja->BuscaPonteiros(filtro, &lista), E_XVCR_TAMANHO_ARQUIVO_NAO_CONFERE);
    EXPECT_EQ(lista.pLista, nullptr);
    EXPECT_TRUE(
        m_Captura.Contem("ValidaFiltroNivel2(dadosFiltro, uiChaveArquivoUltimo, listaDmc, listaPonteiros)"));
    EXPECT_EQ(m_Captura.GetFalhas().back().sFuncao, "CBaseMiddleware::BuscaPonteiros");
    EXPECT_EQ(Busca({}), k_todas) << "the index still answers";
}

TEST_F(CXVBuscaTest, AnswersAreTheSameBeforeAndAfterARestart) {
    Povoa();
    Inclui(5, Mercos, eXVSMiddleware_Erro, 1, 1);
    Inclui(5, Mercos, eXVSMiddleware_Erro, 2, 1);
    Inclui(7, OfficialBank, eXVSMiddleware_Erro, 2, 1);
    Inclui(7, OfficialBank, eXVSMiddleware_Erro, 3, 1);  // takes the key over
    const std::vector<SFiltroTeste> perguntas{
        {}, {.tipos = {1, 2}}, {.de = 5, .sistemas = {Mercos}}, {.de = 7, .sistemas = {OfficialBank}}};
    std::vector<TListaDmc> respostas;
    for (const auto& pergunta : perguntas) respostas.push_back(Busca(pergunta));
    ASSERT_EQ(m_pLoja->Finaliza(), S_OK);
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
    m_pLoja = Abre();
    for (std::size_t i = 0; i < perguntas.size(); ++i) EXPECT_EQ(Busca(perguntas[i]), respostas[i]) << i;
}

TEST_F(CXVBuscaTest, ReadingLoadsTheTextsThatAreAskedForAndAList) {
    const REG_XVDMC regCheia = Grava(*m_pLoja, CXVIntegracaoTeste(1).Textos("{\"ç\":1}", "ok", "{\"r\":1}"));
    SetDia(18);
    const REG_XVDMC regVazia = Grava(*m_pLoja, CXVIntegracaoTeste(2));
    for (XVUInt64 ullFlags = 0; ullFlags < 8; ++ullFlags) {
        const SIntegracaoLida lida = XVLe(*m_pLoja, regCheia, ullFlags);
        ASSERT_EQ(lida.hr, S_OK);
        EXPECT_EQ(lida.sJSON, (ullFlags & 1) != 0 ? "{\"ç\":1}" : "");
        EXPECT_EQ(lida.sMensagem, (ullFlags & 2) != 0 ? "ok" : "");
        EXPECT_EQ(lida.sRetorno, (ullFlags & 4) != 0 ? "{\"r\":1}" : "");
        EXPECT_EQ(lida.reg.regDmc.uiValor, regCheia.uiValor);
    }
    std::vector<REG_XVDMC> dmcs{regVazia, regCheia, regVazia};
    const _REG_DF_LISTA_XVDMCPS lista{3, 0, dmcs.data(), 0};
    XVUInt ulQuantidade = 0;
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pRegs = nullptr;
    ASSERT_EQ(m_pLoja->LeIntegracoes(lista, &ulQuantidade, &pRegs, 7), S_OK);
    ASSERT_EQ(ulQuantidade, 3U);
    EXPECT_EQ(pRegs[0].uiChaveIntegracaoSistemaTerceiro, 2U);
    EXPECT_EQ(CXVStringPS::RegToString(pRegs[1].regRegistroJSON), "{\"ç\":1}");
    EXPECT_EQ(pRegs[2].regRegistroJSON.pTexto, nullptr);
    for (XVUInt i = 0; i < ulQuantidade; ++i) XVLiberaBuffers(&pRegs[i]);
    XVAmbienteSO::LiberaSaida(pRegs);

    dmcs[1] = {XVChaveDmc(k_uiHoje, 99)};
    EXPECT_EQ(m_pLoja->LeIntegracoes(lista, &ulQuantidade, &pRegs, 7), E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
    EXPECT_EQ(ulQuantidade, 0U);
    EXPECT_EQ(pRegs, nullptr);
}

TEST(XVOrdenacaoParalela, AnyNumberOfProcessorsSortsAlike) {
    std::mt19937_64 sorteio(7);
    std::vector<XVUInt64> lista(5 * k_uiMinimoPorThread + 7);
    for (XVUInt64& ui : lista) ui = sorteio();
    std::vector<XVUInt64> listaOrdenada = lista;
    std::sort(listaOrdenada.begin(), listaOrdenada.end());
    for (const std::size_t uiProcessadores : {1U, 4U, 6U, 10U}) {
        std::vector<XVUInt64> listaTeste = lista;
        XVOrdenaEmParalelo(listaTeste, std::less<>(), uiProcessadores);
        EXPECT_EQ(listaTeste, listaOrdenada) << uiProcessadores;
    }
}

}  // namespace
