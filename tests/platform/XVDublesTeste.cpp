// The test doubles themselves: a double that did not fail when told to would let every test pass.
#include <gtest/gtest.h>

#include <set>

#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/harness/XVSistemaArquivosMemoria.h"
#include "tests/harness/XVSistemaArquivosMorte.h"
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

class CXVDublesTeste : public testing::Test {
  protected:
    CXVSistemaArquivosMemoria m_memoria;
};

}  // namespace

TEST_F(CXVDublesTeste, EnesimaOperacaoFalhaUmaVezOuSempreEODiscoCheioTomaOQueCabe) {
    CXVSistemaArquivosFalhas falhas(m_memoria);
    EXPECT_TRUE(GravaAbcd(falhas, "/a").Ok());
    EXPECT_EQ(falhas.GetQuantidadeTotal(), 3U);
    EXPECT_EQ(falhas.GetQuantidade(EOperacaoArquivo::eGrava), 1U);
    for (const bool bPermanente : {false, true}) {
        falhas.Programa({.eOperacao = EOperacaoArquivo::eGrava,
                         .uiNumero = 2,
                         .bPermanente = bPermanente,
                         .eCausa = ECausaArquivo::eErroFisico,
                         .bGravaMetade = true});
        EXPECT_TRUE(GravaAbcd(falhas, "/b").Ok());
        EXPECT_EQ(GravaAbcd(falhas, "/c").GetCausa(), ECausaArquivo::eErroFisico);
        EXPECT_EQ(m_memoria.LeConteudo("/c")->substr(0, 2), "ab");
        EXPECT_EQ(GravaAbcd(falhas, "/c").Ok(), !bPermanente);
        EXPECT_EQ(falhas.GetFalhasOcorridas(), bPermanente ? 2U : 1U);
    }
    for (XVUInt64 uiNumero = 1; uiNumero <= 4; ++uiNumero) {
        falhas.Programa({.uiNumero = uiNumero});
        EXPECT_EQ(GravaAbcd(falhas, "/a").Ok(), uiNumero > 3) << uiNumero;
    }
    m_memoria.LimitaEspaco(15);
    EXPECT_EQ(GravaAbcd(m_memoria, "/d").GetCausa(), ECausaArquivo::eDiscoCheio);
    EXPECT_EQ(m_memoria.LeConteudo("/d"), "abc");
}

TEST_F(CXVDublesTeste, ProcessoMortoNadaMaisMudaNemSegura) {
    CXVSistemaArquivosMorte morte(m_memoria, EContagem::eAlteracoes);
    EXPECT_FALSE(morte.Executa([&] { EXPECT_TRUE(GravaAbcd(morte, "/a").Ok()); }));
    EXPECT_EQ(morte.GetQuantidade(), 2U) << "the opening that creates, and the write";
    std::unique_ptr<IXVArquivo> pSobrevivente;
    std::unique_ptr<IXVMarcaDiretorio> pMarca;
    morte.Nasce(5, true);
    EXPECT_TRUE(morte.Executa([&] {
        EXPECT_TRUE(morte.MarcaDiretorio("/", "M", pMarca).Ok());
        EXPECT_TRUE(morte.Abre("/a", k_escrita, pSobrevivente).Ok());
        EXPECT_TRUE(pSobrevivente->Grava(0, "xy", 2).Ok());
        GravaAbcd(morte, "/b").Ignora();
        ADD_FAILURE() << "outlived its death";
    }));
    EXPECT_EQ(m_memoria.GetQuantidadeAberta(), 0U);
    EXPECT_EQ(m_memoria.LeConteudo("/b"), "ab") << "half of the write that it died at";
    EXPECT_FALSE(pSobrevivente->Grava(2, "zw", 2).Ok());
    EXPECT_FALSE(morte.Apaga("/a").Ok());
    EXPECT_EQ(m_memoria.LeConteudo("/a"), "xycd");
}

TEST_F(CXVDublesTeste, ODispositivoSemEnergiaTemOQueFoiSincronizadoEDoRestoQualquerParte) {
    m_memoria.CriaArquivo("/d/antigo", std::string(700, 'v'));
    CXVSistemaArquivosQueda dispositivo(m_memoria);
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
