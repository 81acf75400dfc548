// Searching: what it costs and how it fails. What it finds is compared with a model elsewhere.
#include <functional>
#include <random>

#include "middleware/XVOrdenacaoParalela.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/middleware/XVCenarioLoja.h"

namespace {

class CXVBuscaTeste : public CXVCenarioLoja {
  protected:
    CXVBuscaTeste() : m_pLoja(Abre()) {}

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
    TListaDmc Busca(SFiltroTeste filtro) { return XVBusca(*m_pLoja, std::move(filtro)); }

    TLoja m_pLoja;
};

const TListaDmc k_todas{XVChaveDmc(XVDma(2024, 3, 18), 1), XVChaveDmc(XVDma(2024, 3, 18), 2),
                        XVChaveDmc(XVDma(2024, 3, 19), 1), XVChaveDmc(XVDma(2024, 3, 19), 2),
                        XVChaveDmc(XVDma(2024, 3, 20), 1), XVChaveDmc(XVDma(2024, 3, 20), 2)};

TEST_F(CXVBuscaTeste, FiltroVazioDevolveTudoPorDataSemAbrirMembro) {
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

TEST_F(CXVBuscaTeste, MembroQueFalhaEncerraABuscaSemListaParcial) {
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

TEST(XVOrdenacaoParalela, QualquerNumeroDeProcessadoresOrdenaIgual) {
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
