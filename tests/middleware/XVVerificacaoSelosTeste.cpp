// Seals: what they accuse, and how they come about.
#include "middleware/verificacao/XVMiddlewareComSelos.h"
#include "tests/middleware/XVCenarioVerificacao.h"

namespace {

using namespace XVDanos;

// With the first integration of a day the days before are sealed, those that are sound; a later seal never
// covers what an earlier one shows.
TEST_F(Verificacao, DiasQuePassaramSaoSeladosSemQueSePeca) {
    const auto comecaDia = [this](unsigned uiDia) {
        CXVMiddlewareComSelos loja;
        ASSERT_EQ(XVInicializa(loja), S_OK);
        SetDia(uiDia);
        Grava(loja, CXVIntegracaoTeste(uiDia).Textos("{}", "m", "r"));
        Grava(loja, CXVIntegracaoTeste(uiDia + 100));
        EXPECT_EQ(loja.Finaliza(), S_OK);
    };
    const auto selados = [this] {
        TSelos selos;
        EXPECT_EQ(XVSelos::Le(PastaDados(), &selos), S_OK);
        return selos;
    };
    Poe(k_pszJSON, 4 + 712 + 3, '\x7f')(*this);
    Poe("CRINTEGMID20240313.dat", 88 + 48, 1)(*this);  // another's text: only the motives tell it
    comecaDia(16);
    const TSelos primeiros = selados();
    EXPECT_EQ(primeiros.size(), 4U) << "the 14th; the 13th and the 15th are damaged, the 16th goes on";
    EXPECT_TRUE(primeiros.contains("crintegmidjsonret20240314.dat"));
    Vira("CRINTEGMIDJSON20240314.dat", 300)(*this);
    comecaDia(17);
    EXPECT_EQ(selados().size(), 8U);
    EXPECT_EQ(selados().at("crintegmidjson20240314.dat"), primeiros.at("crintegmidjson20240314.dat"));
    EXPECT_NE(Verifica().find("blocoAlterado CRINTEGMIDJSON20240314.dat; alterada 20240314:1"),
              std::string::npos)
        << Verifica();
}

// A bit that nobody wrote is seen by the seal alone; what operations do is none.
TEST_F(Verificacao, SeloAcusaOQueNenhumaOperacaoMudou) {
    // Of the third text on the 14th the length begins in the first block and ends in the second.
    const char* pszLongos = "CRINTEGMIDJSON20240314.dat";
    const std::size_t uiUm = CXVLeituraLoja::k_uiBloco + 234 - Conteudo(pszLongos).size();
    SetDia(14);
    for (const std::size_t ui : {uiUm, std::size_t{2}})
        Grava(*Abre(), CXVIntegracaoTeste(ui).Textos(std::string(ui, 'j'), "", ""));
    EXPECT_EQ(Sela(), S_OK);
    SetDia(15);
    {
        const TLoja pLoja = Abre();
        Grava(*pLoja, CXVIntegracaoTeste(9).Textos("{}", "nova", "{}"));
        EXPECT_EQ(pLoja->GravaStatusIntegracao(
                      XVStatusPS({XVChaveDmc(k_uiHoje, 1)}, 0, eXVSMiddleware_Erro, "s", "")),
                  S_OK);
    }
    SVerificacao verificacao;
    EXPECT_EQ(Verifica(&verificacao), "");
    EXPECT_EQ(verificacao.uiSelados, 15U);
    const auto antes = m_Arquivos.Retrata();
    for (const auto& [pszNome, uiOnde, pszAchados] :
         {std::tuple("CRINTEGMIDJSON20240313.dat", 300,
                     "blocoAlterado CRINTEGMIDJSON20240313.dat; alterada 20240313:1-2"),
          std::tuple(k_pszJSON, 300, "blocoAlterado CRINTEGMIDJSON20240315.dat; alterada 20240315:1-4"),
          std::tuple(pszLongos, 300, "blocoAlterado CRINTEGMIDJSON20240314.dat; alterada 20240314:1-3"),
          std::tuple("CRINTEGMID20240314.dat", 240 + 72,
                     "blocoAlterado CRINTEGMID20240314.dat; alterada 20240314:1-3"),
          std::tuple("CRDTHRINTEG.dat", 241, "blocoAlterado CRDTHRINTEG.dat")}) {
        m_Arquivos.Restaura(antes);
        Vira(pszNome, static_cast<std::size_t>(uiOnde))(*this);
        EXPECT_EQ(Verifica(), pszAchados);
        EXPECT_EQ(Sela(), S_FALSE) << "a seal over damage would hide it";
    }
    const auto antigo = [](std::string& rs) {
        rs = XVArquivoDoTeste({.sNome = "CRDTHRINTEG.dat"}, rs.substr(240));
    };
    const auto semCabecalho = [](std::string& rs) { rs.erase(0, 240); };
    for (const auto& [fn, pszAchados] :
         {std::pair(TMuda([](std::string& rs) { rs.clear(); }), "blocoAlterado CRDTHRINTEG.dat"),
          std::pair(TMuda(semCabecalho), "semCabecalho CRDTHRINTEG.dat; blocoAlterado CRDTHRINTEG.dat"),
          std::pair(TMuda(antigo), "blocoAlterado CRDTHRINTEG.dat")}) {
        m_Arquivos.Restaura(antes);
        Muda("CRDTHRINTEG.dat", fn);
        EXPECT_EQ(Verifica(), pszAchados);
    }
}

TEST_F(Verificacao, SelosDoIndiceEOsPropriosSelos) {
    EXPECT_EQ(Sela(), S_OK);
    const auto antes = m_Arquivos.Retrata();
    Vira(k_pszIndice, 240)(*this);
    EXPECT_EQ(Verifica(),
              "blocoAlterado CRINDEXINTEG.dat; alterada 20240313:1-2; alterada 20240314:1; "
              "alterada 20240315:1-3");
    m_Arquivos.Restaura(antes);
    Vira(k_pszArquivoSelos, 40)(*this);
    EXPECT_EQ(Verifica(), "selosInvalidos XVDATABASE_SELOS.srk");
}

}  // namespace
