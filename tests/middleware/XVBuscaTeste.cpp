// Searching: what it costs, how it fails, and keys of one checksum. What it finds is compared with a model
// elsewhere.
#include <algorithm>
#include <random>

#include "contract/XVDadosCR.h"
#include "middleware/XVOrdenacaoDmc.h"
#include "middleware/XVSelecaoIndex.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/middleware/XVCenarioLoja.h"
#include "tests/middleware/XVOperacoesLoja.h"

namespace {

class CXVBuscaTeste : public CXVCenarioLoja {
  protected:
    CXVBuscaTeste() : m_pLoja(Abre()) {}

    TLoja m_pLoja;
};

TEST_F(CXVBuscaTeste, SoAbreMembroParaQuemPassaPeloIndiceENaoDaListaParcial) {
    ASSERT_TRUE(XVPovoaLoja(*m_pLoja, [&](unsigned uiDia) { SetDia(uiDia); }));
    const TListaDmc todas = XVBusca(*m_pLoja);
    ASSERT_EQ(todas.size(), 6U);
    m_pLoja.reset();
    const std::string sArquivo = "CRINTEGMID20240314.dat";
    m_Arquivos.CriaArquivo(PastaDados(sArquivo), Conteudo(sArquivo).substr(0, 300));
    m_pLoja = Abre();
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(falhas);
    EXPECT_EQ(XVBusca(*m_pLoja), todas);
    EXPECT_EQ(XVBusca(*m_pLoja, {.status = {eXVSMiddleware_Enviado}}), todas);
    EXPECT_EQ(XVBusca(*m_pLoja, {.tipos = {eXVSMiddleware_BuscaPedidos}, .status = {eXVSMiddleware_Erro}}),
              TListaDmc());
    EXPECT_EQ(falhas.GetQuantidadeTotal(), 0U) << "the index alone knows the answer";
    const SBuscaFeita feita = XVBuscaComCodigo(*m_pLoja, {.tipos = {eXVSMiddleware_BuscaPedidos}});
    EXPECT_EQ(feita.hr, E_XVCR_TAMANHO_ARQUIVO_NAO_CONFERE);
    EXPECT_EQ(feita.lista, TListaDmc());
    EXPECT_TRUE(
        m_Captura.Contem("ValidaFiltroNivel2(dadosFiltro, uiChaveArquivoUltimo, listaDmc, listaPonteiros)"));
    EXPECT_EQ(m_Captura.GetFalhas().back().sFuncao, "CBaseMiddleware::BuscaPonteiros");
}

// Keys of the indexes are checksums of fields, and these fields have the same one.
TEST_F(CXVBuscaTeste, ChavesDeMesmaSomaNaoSeConfundem) {
    constexpr XVUInt64 k_uiEntreSistemas = 0x62F598629BA778E9ULL;  // between keys of the systems 2 and 16
    const REG_XVDMC regOutra =
        Grava(*m_pLoja, CXVIntegracaoTeste(71 ^ k_uiEntreSistemas, SimulacaoSistemaTerceiro));
    const REG_XVDMC regDmc = Grava(*m_pLoja, CXVIntegracaoTeste(71, Mercos));
    EXPECT_EQ(XVBusca(*m_pLoja, {.de = 71, .sistemas = {Mercos, Mercos}}), TListaDmc{regDmc.uiValor});
    CXVIntegracaoTeste deOutroTipo(71, Mercos);
    deOutroTipo.reg.eTipoIntegracao = eXVSMiddleware_EnvioSaldoEstoque;
    Grava(*m_pLoja, deOutroTipo);
    EXPECT_EQ(
        XVBusca(*m_pLoja, {.de = 71, .tipos = {eXVSMiddleware_BuscaPedidos}, .sistemas = {Mercos, Mercos}}),
        TListaDmc{regDmc.uiValor})
        << "not twice in a row, whatever does not pass stands between";
    const CXVDadosCR_StatusIntegracaoMiddleware status{.uiChaveIntegracaoSistemaTerceiro = 71,
                                                       .eStatusIntegracao = eXVSMiddleware_Sucesso,
                                                       .eSistemaIntegracao = Mercos};
    EXPECT_EQ(m_pLoja->GravaStatusIntegracao(status.ComoRegistro()), S_OK);
    EXPECT_EQ(XVLe(*m_pLoja, regDmc).reg.eStatusIntegracao, eXVSMiddleware_Sucesso);
    EXPECT_EQ(XVLe(*m_pLoja, regOutra).reg.eStatusIntegracao, eXVSMiddleware_Pendente);

    constexpr XVUInt64 k_uiEntreRegistros =
        0xE1CF086DB20AA550ULL;                                // between databases of the records 1 and 2
    constexpr XVUInt64 k_uiEntreIds = 0xDABE95AFC7875F40ULL;  // and of the ids 100 and 101
    using TChave = CXVDadosCR_ChaveRegistroTelvoParaTerceiro;
    const auto registro = [](unsigned ui) { return REG_XVDMC{XVChaveDmc(0, ui, 2)}; };
    const TChave aChaves[] = {{100, registro(1), 7, 6, Mercos, regDmc},
                              {500, registro(2), 7 ^ k_uiEntreRegistros, 6, Mercos, regDmc},
                              {101, registro(3), 7 ^ k_uiEntreIds, 6, Mercos, regDmc}};
    for (const TChave& rChave : aChaves)
        EXPECT_EQ(m_pLoja->GravaChaveRegistroTelvoParaTerceiro(rChave.ComoRegistro()), S_OK);
    for (const TChave& rChave : aChaves)
        for (const bool bPorId : {false, true}) {
            TChave filtro = rChave;
            if (bPorId)
                filtro.regDmcRegistroTelvo = {};
            else
                filtro.uiChaveRegistroSistemaTerceiro = 0;
            tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS reg{};
            EXPECT_EQ(m_pLoja->BuscaChaveRegistroTelvoParaTerceiro(filtro.ComoFiltro(), &reg), S_OK);
            TChave achada;
            achada.CopiarDe(reg);
            EXPECT_TRUE(achada == rChave) << rChave.uiChaveRegistroSistemaTerceiro << bPorId;
        }
}

// What callers may ask: as many values as they like, also those that no enumeration has.
TEST(FiltroBusca, AdmiteCadaValorDaListaENenhumOutro) {
    const std::vector<XVUInt> lista = {0, 63, 64, 0xFFFFFFFF, 200, 200};
    const CXVValoresAdmitidos admitidos(lista);
    for (const XVUInt e : {0U, 1U, 62U, 63U, 64U, 65U, 127U, 199U, 200U, 0xFFFFFFFEU, 0xFFFFFFFFU})
        EXPECT_EQ(admitidos.Admite(e), std::count(lista.begin(), lista.end(), e) != 0) << e;
    EXPECT_TRUE(CXVValoresAdmitidos().Admite(7));
}

// Dates, positions and kinds as a store has them, and numbers of which every digit differs.
TEST(OrdenacaoDmc, ListasLongasECurtasFicamEmOrdem) {
    std::mt19937_64 sorteio(7);
    for (const XVUInt64 uiMascara : {~XVUInt64{0}, XVChaveDmc(XVDma(2024, 3, 31), 0xFFFF)})
        for (const std::size_t uiQuantidade : {3U, 1023U, 1024U, 70000U}) {
            std::vector<REG_XVDMC> lista(uiQuantidade);
            for (REG_XVDMC& reg : lista) reg.uiValor = sorteio() & uiMascara;
            std::vector<REG_XVDMC> listaOrdenada = lista;
            std::sort(listaOrdenada.begin(), listaOrdenada.end(),
                      [](REG_XVDMC reg1, REG_XVDMC reg2) { return reg1.uiValor < reg2.uiValor; });
            CXVListaAchadas achadas;
            std::copy(lista.begin(), lista.end(), achadas.Amplia(uiQuantidade));
            XVOrdenaDmcs(achadas);
            EXPECT_TRUE(std::ranges::equal(achadas.GetDmcs(), listaOrdenada)) << uiQuantidade;
        }
}

// Records as they are loaded, changed and appended, values of later programs among them.
TEST(SelecaoIndex, ComESemResumoAchaOMesmo) {
    using TReg = REG_CR_INDEX_INTEGRACAO_V1;
    constexpr XVUInt k_aeSistemas[] = {0, 2, 8, 16, 24, 0x80000000U, 0x40000000U};
    std::mt19937_64 sorteio(11);
    const auto sorteia = [&](XVUInt64 uiDmc) {
        return TReg{
            sorteio() % 50, {uiDmc}, k_aeSistemas[sorteio() % 7], static_cast<XVUInt>(sorteio() % 10)};
    };
    for (int i = 0; i < 200; ++i) {
        TXVArrayRegistros<TReg> aRegistros;
        std::generate_n(aRegistros.PreparaBase(1500), 1500,
                        [&, n = XVUInt64{0}]() mutable { return sorteia(++n); });
        TXVResumo<TReg> resumo;
        resumo.Carrega(aRegistros);
        EXPECT_TRUE(resumo.EmOrdem());
        resumo.Reserva(2100);
        for (std::size_t n = 0; n < 2100; ++n) {
            const bool bMuda = n % 3 == 0;
            const TReg reg = sorteia(bMuda ? n + 1 : aRegistros.size() + 1);
            resumo.Muda(aRegistros, bMuda ? n : aRegistros.size(), reg);
            if (bMuda)
                aRegistros[n] = reg;
            else
                aRegistros.Inclui(reg);
        }
        CXVDadosCR_FiltroIntegracaoMiddleware dados;
        for (int k = static_cast<int>(sorteio() % 4); k > 0; --k) {
            dados.listaStatusIntegracao.push_back(static_cast<XVUInt>(sorteio() % 10));
            if (i % 2 == 0) dados.listaSistemaIntegracao.push_back(k_aeSistemas[sorteio() % 7]);
        }
        if (i % 3 == 0) dados.uiChaveIntegracaoSistemaTerceiroFinal = 1 + sorteio() % 50;
        CXVFiltroBusca filtro;
        ASSERT_EQ(filtro.Interpreta(dados.ComoRegistro()), S_OK);
        CXVListaAchadas aAchadas[2];
        for (const bool bResumo : {false, true}) {
            CXVSelecaoIndex selecao(filtro, aAchadas[bResumo]);
            auto ve = [&, n = std::size_t{0}](std::span<const TReg> aParte) mutable {
                selecao.Ve(aParte, n, bResumo ? &resumo : nullptr);
                n += aParte.size();
            };
            aRegistros.Percorre(ve);
            EXPECT_TRUE(selecao.EmOrdem());
        }
        ASSERT_TRUE(std::ranges::equal(aAchadas[0].GetDmcs(), aAchadas[1].GetDmcs())) << i;
        const TReg reg{0, {i % 2 == 0 ? 1U : 5000U}, 0, 0};  // older than the one before, newer than the next
        resumo.Muda(aRegistros, 7, reg);
        EXPECT_FALSE(resumo.EmOrdem());
    }
}

}  // namespace
