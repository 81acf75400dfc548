#include <gtest/gtest.h>

#include "tools/xvcr/output/XVTabela.h"
#include "tools/xvcr/text/XVTextoTela.h"

namespace {

TEST(TextoTela, ReconheceUtf8) {
    for (const char* pszTexto : {"", "ação", "日本", "\xF0\x9F\x98\x80", "\xF4\x8F\xBF\xBF"})
        EXPECT_TRUE(XVTextoTela::EhUtf8(pszTexto)) << pszTexto;
    // Overlong, surrogate, beyond Unicode, cut off, lone continuation, Latin-1.
    for (const char* pszTexto : {"\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE6\x97",
                                 "\x80", "a\xE7\xE3o", "\xF0\x80\x80\x80", "\xFF"})
        EXPECT_FALSE(XVTextoTela::EhUtf8(pszTexto)) << XVTextoTela::Escapa(pszTexto, false);
}

TEST(TextoTela, BytesGuardadosNaoComandamOTerminal) {
    EXPECT_EQ(XVTextoTela::Escapa("a\x1b[2Jb\x7f\xC2\x9B", false), "a\\x1B[2Jb\\x7F\\xC2\\x9B");
    EXPECT_EQ(XVTextoTela::Escapa("ç\xe7\n", false), "ç\\xE7\\x0A");
    EXPECT_EQ(XVTextoTela::Escapa("a\n\tb\r", true), "a\n\tb\\x0D");
    EXPECT_EQ(XVTextoTela::Escapa("\xE2\x80\xAE"
                                  "abc",
                                  false),
              "\\xE2\\x80\\xAE"
              "abc");
}

TEST(Tabela, AlinhaPelaLarguraVistaDasLinhasAteAi) {
    CXVTabela tabela({{"Nome"}, {"Nº", CXVTabela::EAlinhamento::eDireita}, {"Fim"}});
    tabela.Inclui({"a\xCC\x81ção", "7", "x"});
    tabela.Inclui({"日\xF0\x9F\x98\x80", "12345", "y\n"});
    EXPECT_EQ(tabela.Monta(),
              "Nome     Nº  Fim\n"
              "----  -----  -----\n"
              "a\xCC\x81ção      7  x\n"
              "日\xF0\x9F\x98\x80  12345  y\\x0A\n");
    EXPECT_EQ(tabela.Monta(), "");
    tabela.Inclui({"cinco", "8", "z"});
    EXPECT_EQ(tabela.Monta(), "cinco      8  z\n");
    tabela.Inclui({"a", "9", ""});
    EXPECT_EQ(tabela.Monta(), "a          9  \n");
}

// As many columns as find room, those that may be shortened, and colours around nothing but the cell.
TEST(Tabela, CabeNoTerminal) {
    const auto monta = [](std::size_t uiLargura) {
        const auto cor = [](std::string_view s) { return s == "Erro" ? std::string_view("31") : ""; };
        CXVTabela tabela({{"DMC"},
                          {"Tipo", CXVTabela::EAlinhamento::eEsquerda, 1, 6},
                          {"Status", CXVTabela::EAlinhamento::eEsquerda, 2, 0, cor},
                          {"Movimento", CXVTabela::EAlinhamento::eEsquerda, 3}},
                         uiLargura, true);
        tabela.Inclui({"20261121-1-1", "CadastroPreço", "Erro", "20261103-217-2"});
        std::string sTudo = tabela.Monta();
        tabela.Inclui({"20261121-2-1", "CadastroProduto", "Enviado", ""});
        return sTudo + tabela.Monta();
    };
    EXPECT_EQ(monta(0),
              "DMC           Tipo           Status  Movimento\n"
              "------------  -------------  ------  --------------\n"
              "20261121-1-1  CadastroPreço  \x1b[31mErro\x1b[0m    20261103-217-2\n"
              "20261121-2-1  CadastroProduto  Enviado  \n");
    EXPECT_EQ(monta(30),
              "DMC           Tipo      Status\n"
              "------------  --------  ------\n"
              "20261121-1-1  Cadastr…  \x1b[31mErro\x1b[0m\n"
              "20261121-2-1  Cadastr…  Enviado\n");
    EXPECT_EQ(monta(21),
              "DMC           Tipo\n------------  -------\n"
              "20261121-1-1  Cadast…\n20261121-2-1  Cadast…\n");
    EXPECT_EQ(monta(5), "DMC\n------------\n20261121-1-1\n20261121-2-1\n");
}

}  // namespace
