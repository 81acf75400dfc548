// Contents of open files: positional reading and writing, lengths, appending.
#include <algorithm>

#include "tests/harness/XVEmThreads.h"
#include "tests/platform/XVCenarioSistemaArquivos.h"

namespace {

constexpr SAberturaArquivo k_aberturaAnexacao{EAcessoArquivo::eAnexacao, ECompartilhamentoArquivo::eNegaNada,
                                              ECriacaoArquivo::eCriaSeAusente};

ECausaArquivo Le(IXVArquivo& rArquivo, XVUInt64 uiOffset, std::size_t uiTamanho, std::string& sLido) {
    sLido.assign(uiTamanho, '?');
    return rArquivo.Le(uiOffset, sLido.data(), uiTamanho).GetCausa();
}

}  // namespace

TEST_P(CXVSistemaArquivosTeste, LeEGravaEmQualquerPosicao) {
    const std::unique_ptr<IXVArquivo> pArquivo = AbreBem("a.dat", k_aberturaEscrita);
    EXPECT_TRUE(pArquivo->Grava(0, "abcdef", 6).Ok());
    EXPECT_TRUE(pArquivo->Grava(2, "XY", 2).Ok());
    EXPECT_TRUE(pArquivo->Grava(10, "z", 1).Ok());
    std::string sLido;
    EXPECT_EQ(Le(*pArquivo, 0, 11, sLido), ECausaArquivo::eNenhuma);
    EXPECT_EQ(sLido, std::string("abXYef\0\0\0\0z", 11));
    EXPECT_EQ(Le(*pArquivo, 3, 2, sLido), ECausaArquivo::eNenhuma);
    EXPECT_EQ(sLido, "Ye");
    EXPECT_TRUE(pArquivo->Sincroniza().Ok());
}

TEST_P(CXVSistemaArquivosTeste, LerAlemDoFimEFimDeArquivo) {
    Cria("a.dat", "abc");
    const std::unique_ptr<IXVArquivo> pArquivo = AbreBem("a.dat", k_aberturaLeitura);
    std::string sLido;
    EXPECT_EQ(Le(*pArquivo, 1, 3, sLido), ECausaArquivo::eFimDeArquivo);
    EXPECT_EQ(Le(*pArquivo, 3, 1, sLido), ECausaArquivo::eFimDeArquivo);
    EXPECT_EQ(Le(*pArquivo, 1000000, 1, sLido), ECausaArquivo::eFimDeArquivo);
    EXPECT_EQ(Le(*pArquivo, 3, 0, sLido), ECausaArquivo::eNenhuma);
}

TEST_P(CXVSistemaArquivosTeste, PosicoesImpossiveisSaoRecusadasSemDano) {
    Cria("a.dat", "abc");
    const std::unique_ptr<IXVArquivo> pArquivo = AbreBem("a.dat", k_aberturaEscrita);
    std::string sLido;
    for (const XVUInt64 uiOffset : {~XVUInt64{0}, ~XVUInt64{0} - 1, XVUInt64{1} << 63}) {
        EXPECT_EQ(Le(*pArquivo, uiOffset, 4, sLido), ECausaArquivo::ePosicionamentoInvalido);
        EXPECT_EQ(pArquivo->Grava(uiOffset, "x", 1).GetCausa(), ECausaArquivo::ePosicionamentoInvalido);
        EXPECT_EQ(pArquivo->SetTamanho(uiOffset).GetCausa(), ECausaArquivo::ePosicionamentoInvalido);
    }
    EXPECT_EQ(Conteudo("a.dat"), "abc");
}

TEST_P(CXVSistemaArquivosTeste, ComprimentoECortadoEEstendidoComZeros) {
    const std::unique_ptr<IXVArquivo> pArquivo = AbreBem("a.dat", k_aberturaEscrita);
    ASSERT_TRUE(pArquivo->Grava(0, "abcdef", 6).Ok());
    ASSERT_TRUE(pArquivo->SetTamanho(3).Ok());
    XVUInt64 uiTamanho = 0;
    EXPECT_TRUE(pArquivo->GetTamanho(uiTamanho).Ok());
    EXPECT_EQ(uiTamanho, 3U);
    ASSERT_TRUE(pArquivo->SetTamanho(5).Ok());
    std::string sLido;
    EXPECT_EQ(Le(*pArquivo, 0, 5, sLido), ECausaArquivo::eNenhuma);
    EXPECT_EQ(sLido, std::string("abc\0\0", 5));
}

TEST_P(CXVSistemaArquivosTeste, ArquivoAbertoSoFazOQueSeuAcessoPermite) {
    Cria("a.dat", "abc");
    std::string sLido;
    {
        const std::unique_ptr<IXVArquivo> pLeitor = AbreBem("a.dat", k_aberturaLeitura);
        EXPECT_EQ(pLeitor->Grava(0, "x", 1).GetCausa(), ECausaArquivo::eAcessoNegado);
        EXPECT_EQ(pLeitor->SetTamanho(0).GetCausa(), ECausaArquivo::eAcessoNegado);
        EXPECT_TRUE(pLeitor->Sincroniza().Ok());
    }
    {
        const std::unique_ptr<IXVArquivo> pAnexador = AbreBem("a.dat", k_aberturaAnexacao);
        EXPECT_EQ(Le(*pAnexador, 0, 1, sLido), ECausaArquivo::eAcessoNegado);
        EXPECT_EQ(pAnexador->SetTamanho(0).GetCausa(), ECausaArquivo::eAcessoNegado);
        EXPECT_TRUE(pAnexador->Grava(0, "def", 3).Ok());
        EXPECT_TRUE(pAnexador->Sincroniza().Ok());
        XVUInt64 uiTamanho = 0;
        EXPECT_TRUE(pAnexador->GetTamanho(uiTamanho).Ok());
        EXPECT_EQ(uiTamanho, 6U);
    }
    EXPECT_EQ(Conteudo("a.dat"), "abcdef");
}

TEST_P(CXVSistemaArquivosTeste, AnexosDeMuitosFiosNaoSeSobrepoemNemSePartem) {
    constexpr int k_iThreads = 4;
    constexpr int k_iLinhas = 100;
    XVEmThreads(k_iThreads, [&](unsigned iThread) {
        const std::string sLinha = std::string(99, static_cast<char>('a' + iThread)) + '\n';
        const std::unique_ptr<IXVArquivo> pArquivo = AbreBem("log", k_aberturaAnexacao);
        for (int i = 0; i < k_iLinhas; ++i) {
            EXPECT_TRUE(pArquivo->Grava(0, sLinha.data(), sLinha.size()).Ok());
        }
    });
    const std::string sConteudo = Conteudo("log");
    ASSERT_EQ(sConteudo.size(), std::size_t{k_iThreads * k_iLinhas * 100});
    for (std::size_t uiInicio = 0; uiInicio < sConteudo.size(); uiInicio += 100) {
        const std::string sLinha = sConteudo.substr(uiInicio, 100);
        EXPECT_EQ(sLinha, std::string(99, sLinha[0]) + '\n');
    }
    for (int iThread = 0; iThread < k_iThreads; ++iThread) {
        EXPECT_EQ(std::count(sConteudo.begin(), sConteudo.end(), static_cast<char>('a' + iThread)),
                  k_iLinhas * 99);
    }
}

TEST_P(CXVSistemaArquivosTeste, VariosFiosLeemUmArquivoAberto) {
    std::string sConteudo;
    for (int i = 0; i < 4096; ++i) {
        sConteudo += static_cast<char>(i % 251);
    }
    Cria("a.dat", sConteudo);
    const std::unique_ptr<IXVArquivo> pArquivo = AbreBem("a.dat", k_aberturaLeitura);
    XVEmThreads(4, [&](std::size_t uiThread) {
        std::string sLido;
        for (std::size_t i = 0; i < 200; ++i) {
            const std::size_t uiOffset = (uiThread * 977 + i * 13) % 4000;
            EXPECT_EQ(Le(*pArquivo, uiOffset, 64, sLido), ECausaArquivo::eNenhuma);
            EXPECT_EQ(sLido, sConteudo.substr(uiOffset, 64));
        }
    });
}
