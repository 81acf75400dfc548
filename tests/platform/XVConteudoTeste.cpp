// Contents of open files: positional reading and writing, lengths, appending, windows.
#include "tests/platform/XVCenarioArquivos.h"

TEST_P(CXVSistemaArquivosTeste, LeEGravaEmQualquerPosicaoAteOFim) {
    ASSERT_EQ(Abre("a.dat", k_criacao), ECausa::eNenhuma);
    EXPECT_EQ(Grava(0, "abcdef"), ECausa::eNenhuma);
    EXPECT_EQ(Grava(2, "XY"), ECausa::eNenhuma);
    EXPECT_EQ(Grava(10, "z"), ECausa::eNenhuma);
    EXPECT_EQ(Le(0, 11), ECausa::eNenhuma);
    EXPECT_EQ(m_sLido, std::string("abXYef\0\0\0\0z", 11));
    EXPECT_EQ(Le(3, 2), ECausa::eNenhuma);
    EXPECT_EQ(m_sLido, "Ye");
    EXPECT_TRUE(m_pArquivo->SetTamanho(3).Ok());
    for (const XVUInt64 uiOffset : {1U, 3U, 1000000U})
        EXPECT_EQ(Le(uiOffset, 3), ECausa::eFimDeArquivo) << uiOffset;
    EXPECT_EQ(Le(3, 0), ECausa::eNenhuma);
    EXPECT_TRUE(m_pArquivo->SetTamanho(5).Ok());
    for (const XVUInt64 uiOffset : {~XVUInt64{0}, ~XVUInt64{0} - 1, XVUInt64{1} << 63}) {
        EXPECT_EQ(Le(uiOffset, 4), ECausa::ePosicionamentoInvalido);
        EXPECT_EQ(Grava(uiOffset, "x"), ECausa::ePosicionamentoInvalido);
        EXPECT_EQ(m_pArquivo->SetTamanho(uiOffset).GetCausa(), ECausa::ePosicionamentoInvalido);
    }
    m_pArquivo.reset();
    EXPECT_EQ(Conteudo("a.dat"), std::string("abX\0\0", 5));
}

TEST_P(CXVSistemaArquivosTeste, ArquivoAbertoSoFazOQueSeuAcessoPermite) {
    Cria("a.dat", "abc");
    ASSERT_EQ(Abre("a.dat", k_leitura), ECausa::eNenhuma);
    EXPECT_EQ(Grava(0, "x"), ECausa::eAcessoNegado);
    EXPECT_EQ(m_pArquivo->SetTamanho(0).GetCausa(), ECausa::eAcessoNegado);
    EXPECT_TRUE(m_pArquivo->Sincroniza().Ok());
    ASSERT_EQ(Abre("a.dat", k_anexacao), ECausa::eNenhuma);
    EXPECT_EQ(Le(0, 1), ECausa::eAcessoNegado);
    EXPECT_EQ(m_pArquivo->SetTamanho(0).GetCausa(), ECausa::eAcessoNegado);
    EXPECT_TRUE(m_pArquivo->Sincroniza().Ok());
    // Each opening would otherwise go on where it stopped itself.
    std::unique_ptr<IXVArquivo> pOutro;
    ASSERT_EQ(Abre("a.dat", k_anexacao, pOutro), ECausa::eNenhuma);
    EXPECT_EQ(Grava(0, "def"), ECausa::eNenhuma);
    EXPECT_TRUE(pOutro->Grava(0, "g", 1).Ok());
    EXPECT_EQ(Grava(0, "hi"), ECausa::eNenhuma);
    EXPECT_EQ(Conteudo("a.dat"), "abcdefghi");
}

namespace {

constexpr std::size_t k_uiTamanho = 3 * 4096 + 16;  // the last page is not full

std::string Padrao() {
    std::string sPadrao(k_uiTamanho, '\0');
    for (std::size_t i = 0; i < sPadrao.size(); ++i) sPadrao[i] = static_cast<char>('a' + i % 23);
    return sPadrao;
}

// Windows on open files: the same bytes as the calls, by whatever means.
class CXVJanelaTeste : public CXVSistemaArquivosTeste {
  protected:
    void SetUp() override {
        Cria("v.srk", Padrao());
        ASSERT_EQ(Abre("v.srk", k_criacao), ECausa::eNenhuma);
    }
    std::unique_ptr<IXVJanela> AbreJanela(XVUInt64 uiTamanho) {
        std::unique_ptr<IXVJanela> pJanela;
        EXPECT_TRUE(m_pArquivo->AbreJanela(uiTamanho, pJanela).Ok());
        return pJanela;
    }
    void ConfereConteudo(const std::string& sEsperado, const std::string& sQuando) {
        EXPECT_EQ(Le(0, sEsperado.size()), ECausa::eNenhuma);
        EXPECT_TRUE(m_sLido == sEsperado) << sQuando;
        EXPECT_TRUE(Conteudo("v.srk") == sEsperado) << sQuando;
    }
};

INSTANTIATE_TEST_SUITE_P(Cenarios, CXVJanelaTeste, testing::Bool(),
                         [](const auto& rInfo) { return rInfo.param ? "Memory" : "Native"; });

}  // namespace

TEST_P(CXVJanelaTeste, JanelaEChamadasGravamNosMesmosBytes) {
    std::string sEsperado = Padrao();
    const std::unique_ptr<IXVJanela> pJanela = AbreJanela(k_uiTamanho);
    ConfereConteudo(sEsperado, "found");
    ASSERT_TRUE(pJanela->Grava(4094, "WXYZ", 4).Ok());  // over the edge of a page
    sEsperado.replace(4094, 4, "WXYZ");
    ConfereConteudo(sEsperado, "written through the window");
    ASSERT_EQ(Grava(k_uiTamanho - 3, "123"), ECausa::eNenhuma);
    sEsperado.replace(k_uiTamanho - 3, 3, "123");
    ConfereConteudo(sEsperado, "written by a call");
    constexpr XVUInt64 k_uiPalavra = 0x0123456789ABCDEF;
    ASSERT_TRUE(pJanela->GravaPalavra(8, k_uiPalavra).Ok());
    sEsperado.replace(8, 8, reinterpret_cast<const char*>(&k_uiPalavra), 8);
    ConfereConteudo(sEsperado, "a word");
    EXPECT_TRUE(m_pArquivo->Sincroniza().Ok());
}

TEST_P(CXVJanelaTeste, JanelaRecusaOQueFicaForaDela) {
    const std::unique_ptr<IXVJanela> pJanela = AbreJanela(64);  // the file goes on behind it
    const std::string sBytes(65, 'x');
    EXPECT_TRUE(pJanela->Grava(64, sBytes.data(), 0).Ok());
    const struct {
        XVUInt64 uiOffset;
        std::size_t uiTamanho;
    } aCasos[] = {{64, 1}, {65, 1}, {~XVUInt64{0}, 1}, {0, 65}, {60, ~std::size_t{0}}};
    for (const auto& [uiOffset, uiTamanho] : aCasos)
        EXPECT_EQ(pJanela->Grava(uiOffset, sBytes.data(), uiTamanho).GetCausa(),
                  ECausa::ePosicionamentoInvalido);
    // A word that would not be whole, in the window or in the processor.
    for (const XVUInt64 uiOffset : {XVUInt64{64}, XVUInt64{57}, XVUInt64{4}, ~XVUInt64{7}})
        EXPECT_EQ(pJanela->GravaPalavra(uiOffset, 0).GetCausa(), ECausa::ePosicionamentoInvalido);
    ConfereConteudo(Padrao(), "a refusal writes nothing");
}

// Whatever the means, a file that is shorter than its window ends in a result and never in a signal.
TEST_P(CXVJanelaTeste, ArquivoMenorQueSuaJanelaNaoDerrubaNinguem) {
    std::unique_ptr<IXVJanela> pJanela = AbreJanela(k_uiTamanho);
    const CXVErroArquivo erro = m_pArquivo->SetTamanho(16);
    if (!erro.Ok()) {
        EXPECT_EQ(erro.GetCausa(), ECausa::eViolacaoCompartilhamento);
        ConfereConteudo(Padrao(), "refused");
    }
    EXPECT_TRUE(pJanela->Grava(k_uiTamanho - 1, "z", 1).Ok());
    EXPECT_TRUE(m_pArquivo->SetTamanho(k_uiTamanho).Ok()) << "it may stay";
    EXPECT_TRUE(m_pArquivo->SetTamanho(k_uiTamanho + 100).Ok()) << "it may grow";
    pJanela.reset();
    EXPECT_TRUE(m_pArquivo->SetTamanho(16).Ok()) << "the window is gone";
    pJanela = AbreJanela(k_uiTamanho);
    EXPECT_TRUE(pJanela->Grava(k_uiTamanho - 1, "z", 1).Ok());
    ConfereConteudo(Padrao().substr(0, 16) + std::string(k_uiTamanho - 17, '\0') + "z", "grown again");
}
