// Windows on open files: the same bytes as the calls, by whatever means.
#include <algorithm>

#include "tests/platform/XVCenarioSistemaArquivos.h"

namespace {

constexpr std::size_t k_uiTamanho = 3 * 4096 + 16;  // the last page is not full

std::unique_ptr<IXVJanela> AbreJanela(IXVArquivo& rArquivo, XVUInt64 uiTamanho) {
    std::unique_ptr<IXVJanela> pJanela;
    EXPECT_TRUE(rArquivo.AbreJanela(uiTamanho, pJanela).Ok());
    return pJanela;
}

template <class TFonte>
std::string Le(TFonte& rFonte, XVUInt64 uiOffset, std::size_t uiTamanho) {
    std::string sLido(uiTamanho, '?');
    EXPECT_TRUE(rFonte.Le(uiOffset, sLido.data(), uiTamanho).Ok());
    return sLido;
}

std::string Padrao() {
    std::string sPadrao(k_uiTamanho, '\0');
    for (std::size_t i = 0; i < sPadrao.size(); ++i) {
        sPadrao[i] = static_cast<char>('a' + i % 23);
    }
    return sPadrao;
}

}  // namespace

TEST_P(CXVSistemaArquivosTeste, JanelaEChamadasGravamNosMesmosBytes) {
    std::string sEsperado = Padrao();
    Cria("v.srk", sEsperado);
    {
        const std::unique_ptr<IXVArquivo> pArquivo = AbreBem("v.srk", k_aberturaEscrita);
        const std::unique_ptr<IXVArquivo> pLeitor = AbreBem("v.srk", k_aberturaLeitura);
        const std::unique_ptr<IXVJanela> pJanela = AbreJanela(*pArquivo, k_uiTamanho);
        const auto fnConfere = [&](const std::string& sQuando) {
            EXPECT_TRUE(Le(*pArquivo, 0, k_uiTamanho) == sEsperado) << sQuando;
            EXPECT_TRUE(Le(*pLeitor, 0, k_uiTamanho) == sEsperado) << sQuando;
        };
        fnConfere("found");
        ASSERT_TRUE(pJanela->Grava(4094, "WXYZ", 4).Ok());  // over the edge of a page
        sEsperado.replace(4094, 4, "WXYZ");
        fnConfere("written through the window");
        ASSERT_TRUE(pArquivo->Grava(k_uiTamanho - 3, "123", 3).Ok());
        sEsperado.replace(k_uiTamanho - 3, 3, "123");
        fnConfere("written by a call");
        constexpr XVUInt64 k_uiPalavra = 0x0123456789ABCDEF;
        ASSERT_TRUE(pJanela->GravaPalavra(8, k_uiPalavra).Ok());
        sEsperado.replace(8, 8, reinterpret_cast<const char*>(&k_uiPalavra), 8);
        fnConfere("a word");
        EXPECT_TRUE(pArquivo->Sincroniza().Ok());
    }
    EXPECT_TRUE(Conteudo("v.srk") == sEsperado);
}

TEST_P(CXVSistemaArquivosTeste, JanelaRecusaOQueFicaForaDela) {
    Cria("v.srk", Padrao());
    const std::unique_ptr<IXVArquivo> pArquivo = AbreBem("v.srk", k_aberturaEscrita);
    const std::unique_ptr<IXVJanela> pJanela = AbreJanela(*pArquivo, 64);  // the file goes on behind it
    char cByte = 0;
    EXPECT_TRUE(pJanela->Grava(64, &cByte, 0).Ok());
    for (const XVUInt64 uiOffset : {XVUInt64{64}, XVUInt64{65}, ~XVUInt64{0}}) {
        EXPECT_EQ(pJanela->Grava(uiOffset, &cByte, 1).GetCausa(), ECausaArquivo::ePosicionamentoInvalido);
    }
    std::string sBytes(65, 'x');
    EXPECT_EQ(pJanela->Grava(0, sBytes.data(), 65).GetCausa(), ECausaArquivo::ePosicionamentoInvalido);
    EXPECT_EQ(pJanela->Grava(60, sBytes.data(), ~std::size_t{0}).GetCausa(),
              ECausaArquivo::ePosicionamentoInvalido);
    // A word that would not be whole, in the window or in the processor.
    for (const XVUInt64 uiOffset : {XVUInt64{64}, XVUInt64{57}, XVUInt64{4}, ~XVUInt64{7}}) {
        EXPECT_EQ(pJanela->GravaPalavra(uiOffset, 0).GetCausa(), ECausaArquivo::ePosicionamentoInvalido);
    }
    EXPECT_TRUE(Le(*pArquivo, 0, k_uiTamanho) == Padrao()) << "a refusal writes nothing";
}

// Whatever the means, a file that is shorter than its window ends in a result and never in a signal.
TEST_P(CXVSistemaArquivosTeste, ArquivoMenorQueSuaJanelaNaoDerrubaNinguem) {
    Cria("v.srk", Padrao());
    const std::unique_ptr<IXVArquivo> pArquivo = AbreBem("v.srk", k_aberturaEscrita);
    {
        const std::unique_ptr<IXVJanela> pJanela = AbreJanela(*pArquivo, k_uiTamanho);
        const CXVErroArquivo erro = pArquivo->SetTamanho(16);
        if (!erro.Ok()) {
            EXPECT_EQ(erro.GetCausa(), ECausaArquivo::eViolacaoCompartilhamento);
            EXPECT_TRUE(Le(*pArquivo, 0, k_uiTamanho) == Padrao());
        }
        EXPECT_TRUE(pJanela->Grava(k_uiTamanho - 1, "z", 1).Ok());
        EXPECT_TRUE(pArquivo->SetTamanho(k_uiTamanho + 100).Ok()) << "it may grow";
    }
    EXPECT_TRUE(pArquivo->SetTamanho(16).Ok()) << "the window is gone";
    const std::unique_ptr<IXVJanela> pJanela = AbreJanela(*pArquivo, k_uiTamanho);
    EXPECT_TRUE(pJanela->Grava(k_uiTamanho - 1, "z", 1).Ok());
    EXPECT_EQ(Le(*pArquivo, 0, 16), Padrao().substr(0, 16));
    EXPECT_EQ(Le(*pArquivo, k_uiTamanho - 1, 1), "z");
}
