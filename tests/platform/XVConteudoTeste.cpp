// Contents of open files: positional reading and writing, lengths, appending.
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

// Each opening would otherwise go on where it stopped itself.
TEST_P(CXVSistemaArquivosTeste, AnexosDeVariasAberturasSeguemUmAoOutro) {
    std::string sEsperado;
    const std::unique_ptr<IXVArquivo> apAnexadores[] = {AbreBem("log", k_aberturaAnexacao),
                                                        AbreBem("log", k_aberturaAnexacao),
                                                        AbreBem("log", k_aberturaAnexacao)};
    for (const char cLinha : {'a', 'b', 'c', 'd', 'e', 'f', 'g'}) {
        const std::string sLinha(1 + sEsperado.size(), cLinha);
        EXPECT_TRUE(apAnexadores[sEsperado.size() % 3]->Grava(0, sLinha.data(), sLinha.size()).Ok());
        sEsperado += sLinha;
    }
    EXPECT_EQ(Conteudo("log"), sEsperado);
}
