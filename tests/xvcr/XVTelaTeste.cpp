#include <gtest/gtest.h>

#include <deque>

#include "tools/xvcr/output/XVTabela.h"
#include "tools/xvcr/text/XVLeitorLinhas.h"
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

TEST(TextoTela, LarguraDoQueSeVe) {
    EXPECT_EQ(XVTextoTela::GetLargura("ação"), 4U);
    EXPECT_EQ(XVTextoTela::GetLargura("a\xCC\x81"), 1U);
    EXPECT_EQ(XVTextoTela::GetLargura("日本"), 4U);
    EXPECT_EQ(XVTextoTela::GetLargura("\xF0\x9F\x98\x80"), 2U);
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

TEST(Tabela, AlinhaPelaLarguraVista) {
    CXVTabela tabela({{"Nome"}, {"Nº", CXVTabela::EAlinhamento::eDireita}, {"Fim"}});
    tabela.Inclui({"ação", "7", "x"});
    tabela.Inclui({"日本", "12345", "y\n"});
    EXPECT_EQ(tabela.Monta(),
              "Nome     Nº  Fim\n"
              "----  -----  -----\n"
              "ação      7  x\n"
              "日本  12345  y\\x0A\n");
}

// Gives its pieces one at a time, then nothing.
class CFontePedacos : public IXVFonteBytes {
  public:
    explicit CFontePedacos(std::deque<std::string> listaPedacos) : m_listaPedacos(std::move(listaPedacos)) {}
    void Inclui(std::string sPedaco) { m_listaPedacos.push_back(std::move(sPedaco)); }
    std::size_t Le(char* pDados, std::size_t uiTamanho) override {
        if (m_listaPedacos.empty()) return 0;
        std::string& rPedaco = m_listaPedacos.front();
        const std::size_t uiLidos = rPedaco.copy(pDados, uiTamanho);
        rPedaco.erase(0, uiLidos);
        if (rPedaco.empty()) m_listaPedacos.pop_front();
        return uiLidos;
    }

  private:
    std::deque<std::string> m_listaPedacos;
};

using EResultado = CXVLeitorLinhas::EResultado;

std::vector<std::string> LeTodas(CXVLeitorLinhas& rLeitor) {
    std::vector<std::string> listaLinhas;
    std::string sLinha;
    for (EResultado e = rLeitor.Proxima(&sLinha); e != EResultado::eFim; e = rLeitor.Proxima(&sLinha))
        listaLinhas.push_back(e == EResultado::eLonga ? "<longa>" : sLinha);
    return listaLinhas;
}

TEST(LeitorLinhas, JuntaPedacosEAceitaFimSemQuebra) {
    CFontePedacos fonte({"um\ndo", "is\r\n\ntr", "ês"});
    CXVLeitorLinhas leitor(fonte, 100);
    EXPECT_EQ(LeTodas(leitor), (std::vector<std::string>{"um", "dois", "", "três"}));
    EXPECT_EQ(leitor.GetNumero(), 4U);
}

TEST(LeitorLinhas, LinhaLongaEPuladaEAsOutrasFicam) {
    CFontePedacos fonte({"12345\n", "123", "456", "789\nabc\n" + std::string(200000, 'x') + "\nfim"});
    CXVLeitorLinhas leitor(fonte, 5);
    EXPECT_EQ(LeTodas(leitor), (std::vector<std::string>{"12345", "<longa>", "abc", "<longa>", "fim"}));
    EXPECT_EQ(leitor.GetNumero(), 5U);
}

TEST(LeitorLinhas, ArquivoQueCresceSoDaLinhasInteiras) {
    CFontePedacos fonte({"um\nmei"});
    CXVLeitorLinhas leitor(fonte, 100, true);
    EXPECT_EQ(LeTodas(leitor), (std::vector<std::string>{"um"}));
    fonte.Inclui("a\n");
    EXPECT_EQ(LeTodas(leitor), (std::vector<std::string>{"meia"}));
}

}  // namespace
