// The device without power itself: what it never loses no test would miss. Doubles that do not fail or die
// when told to are seen wherever they are used.
#include <gtest/gtest.h>

#include <set>

#include "tests/harness/XVSistemaArquivosMemoria.h"
#include "tests/harness/XVSistemaArquivosQueda.h"

namespace {

constexpr SAberturaArquivo k_escrita{EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaEscrita,
                                     ECriacaoArquivo::eCriaSeAusente};

// Three operations: opens, writes "abcd", synchronises. The first failure ends it.
CXVErroArquivo GravaAbcd(IXVSistemaArquivos& rSistema, const std::string& sCaminho) {
    std::unique_ptr<IXVArquivo> pArquivo;
    CXVErroArquivo erro = rSistema.Abre(sCaminho, k_escrita, pArquivo);
    if (erro.Ok()) erro = pArquivo->Grava(0, "abcd", 4);
    return erro.Ok() ? pArquivo->Sincroniza() : erro;
}

// All that a hundred power failures leave of a file: its contents, and "<ausente>" where its name was lost.
std::set<std::string> Sobras(const CXVSistemaArquivosQueda& rDispositivo, const std::string& sCaminho) {
    std::set<std::string> sobras;
    for (XVUInt64 uiSemente = 1; uiSemente <= 100; ++uiSemente) {
        const auto retrato = rDispositivo.Corta(uiSemente);
        const auto it = retrato.find(sCaminho);
        sobras.insert(it == retrato.end() ? "<ausente>" : it->second.sConteudo);
    }
    return sobras;
}

}  // namespace

TEST(CXVDublesTeste, ODispositivoSemEnergiaTemOQueFoiSincronizadoEDoRestoQualquerParte) {
    CXVSistemaArquivosMemoria memoria;
    memoria.CriaArquivo("/d/antigo", std::string(700, 'v'));
    CXVSistemaArquivosQueda dispositivo(memoria);
    ASSERT_TRUE(GravaAbcd(dispositivo, "/d/a").Ok());
    EXPECT_EQ(Sobras(dispositivo, "/d/a"), (std::set<std::string>{"abcd", "<ausente>"}));
    ASSERT_TRUE(dispositivo.SincronizaDiretorio("/d").Ok());
    EXPECT_EQ(Sobras(dispositivo, "/d/a"), std::set<std::string>{"abcd"});
    ASSERT_TRUE(dispositivo.Apaga("/d/a").Ok());
    EXPECT_EQ(Sobras(dispositivo, "/d/a"), (std::set<std::string>{"abcd", "<ausente>"}));
    ASSERT_TRUE(GravaAbcd(dispositivo, "/d/novo").Ok());
    ASSERT_TRUE(dispositivo.Substitui("/d/novo", "/d/movido").Ok());
    EXPECT_EQ(Sobras(dispositivo, "/d/movido"), std::set<std::string>{"abcd"}) << "a move is durable";
    EXPECT_EQ(Sobras(dispositivo, "/d/novo"), std::set<std::string>{"<ausente>"});

    std::unique_ptr<IXVArquivo> pArquivo;
    ASSERT_TRUE(dispositivo.Abre("/d/antigo", k_escrita, pArquivo).Ok());
    ASSERT_TRUE(pArquivo->Grava(100, std::string(1000, 'n').data(), 1000).Ok());
    const std::set<std::string> sobras = Sobras(dispositivo, "/d/antigo");
    const auto sobra = [](std::size_t uiNovos1, std::size_t uiNovos2, std::size_t uiTamanho) {
        std::string s = std::string(700, 'v') + std::string(400, '\0');
        s.replace(100, uiNovos1, uiNovos1, 'n');
        s.replace(512, uiNovos2, uiNovos2, 'n');
        s.resize(uiTamanho);
        return s;
    };
    EXPECT_TRUE(sobras.contains(sobra(0, 0, 700))) << "nothing of it";
    EXPECT_TRUE(sobras.contains(sobra(412, 588, 1100))) << "all of it";
    EXPECT_TRUE(sobras.contains(sobra(412, 512, 1024))) << "cut short";
    EXPECT_TRUE(sobras.contains(sobra(0, 0, 1100))) << "the length without the bytes";
    EXPECT_TRUE(sobras.contains(sobra(412, 188, 700))) << "the bytes without the length";
    for (const std::string& sSobra : sobras) {
        EXPECT_EQ(sSobra.substr(0, 100), std::string(100, 'v'));
        EXPECT_EQ(sSobra.substr(100, 412), std::string(412, sSobra[100])) << "a sector is whole";
    }
}
