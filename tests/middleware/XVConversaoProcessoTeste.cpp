// A real process killed in the middle of converting a real directory, again and again.
#include <gtest/gtest.h>

#include "platform/XVPlataforma.h"
#include "tests/harness/XVDiretorioTeste.h"
#include "tests/harness/XVProcessoFilho.h"
#include "tests/middleware/XVFabricaBases.h"

namespace {

constexpr unsigned k_uiMembros = 20;
constexpr unsigned k_uiRegistros = 300;

TEST(CXVConversaoProcessoTest, KilledAgainAndAgainItStillEndsRight) {
    const CXVDiretorioTeste diretorio;
    ASSERT_TRUE(XVPlataforma::SistemaArquivosNativo().CriaDiretorio(diretorio.Junta("MATRIZ/DF")).Ok());
    const CXVFabricaBases fabrica(0, true);
    for (const auto& [sNome, sBytes] : fabrica.Cria(k_uiMembros, k_uiRegistros))
        diretorio.CriaArquivo("MATRIZ/DF/" + sNome, sBytes);
    const std::string sFilho = XVProgramaVizinho("xv_converte_filho");
    // Killed after so many lines: between two files, while copies take their places, between two steps.
    for (const int iLinhas : {3, 21, 22, 23, 1, 8, 30, 22, 2, 5, 40}) {
        CXVProcessoFilho filho(sFilho, {diretorio.GetCaminho()});
        std::string sLinha = "inicio";
        for (int i = 0; i < iLinhas && !sLinha.empty(); ++i) sLinha = filho.LeLinha();
        filho.Mata();
        if (sLinha.empty() || sLinha.starts_with("fim")) break;
    }
    CXVProcessoFilho ultimo(sFilho, {diretorio.GetCaminho()});
    std::string sUltima;
    for (std::string sLinha = ultimo.LeLinha(); !sLinha.empty(); sLinha = ultimo.LeLinha()) sUltima = sLinha;
    EXPECT_EQ(sUltima, "fim 00000000");
    EXPECT_EQ(ultimo.EsperaFim(), 0);
    for (const auto& [sNome, sDados] : fabrica.DadosConvertidos(k_uiMembros, k_uiRegistros)) {
        const auto sConteudo = diretorio.LeConteudo("MATRIZ/DF/" + sNome);
        ASSERT_TRUE(sConteudo.has_value()) << sNome;
        EXPECT_EQ(sConteudo->substr(240), sDados) << sNome;
    }
    std::vector<std::string> restos;
    for (const char* pszMascara : {"*.tra", "*.srk"}) {
        ASSERT_TRUE(XVPlataforma::SistemaArquivosNativo()
                        .Lista(diretorio.Junta("MATRIZ/DF"), pszMascara, restos)
                        .Ok());
        EXPECT_TRUE(restos.empty()) << restos.front();
    }
}

}  // namespace
