#include <gtest/gtest.h>

#include <string>

#include "platform/XVCaminho.h"
#include "platform/XVMascara.h"

TEST(CXVMascaraTeste, CasaONomeInteiroSemOlharACaixa) {
    const auto fn = XVMascara::Confere;
    EXPECT_TRUE(fn("*.dat", "A.DAT"));
    EXPECT_TRUE(fn("crinteg????????.dat", "CRINTEG20240101.dat"));
    EXPECT_TRUE(fn("a*b*c", "aXbYbZc"));
    EXPECT_TRUE(fn("*", ""));
    EXPECT_TRUE(fn("", ""));
    EXPECT_TRUE(fn("**a**", "a"));
    EXPECT_TRUE(fn("?.dat", "\xC3\xA7.dat")) << "one character of two bytes";
    EXPECT_FALSE(fn("*\xA7", "\xC3\xA7")) << "half of a character";
    EXPECT_FALSE(fn("*.dat", "a.datx"));
    EXPECT_FALSE(fn("*.dat", "adat"));
    EXPECT_FALSE(fn("?", ""));
    EXPECT_FALSE(fn("??", "a"));
    EXPECT_FALSE(fn("a?c", "ac"));
    EXPECT_FALSE(fn("", "a"));
    EXPECT_FALSE(fn("*a", "ab"));
}

TEST(CXVMascaraTeste, MascaraHostilNaoCustaMaisQueOProdutoDosComprimentos) {
    std::string sMascara;
    for (int i = 0; i < 200; ++i) {
        sMascara += "*a";
    }
    EXPECT_FALSE(XVMascara::Confere(sMascara + "b", std::string(5000, 'a')));
}

TEST(CXVCaminhoTeste, SeparaCaminhosGuardandoRaizes) {
    const auto fn = [](const char* pszCaminho) {
        const XVCaminho::SPartes partes = XVCaminho::Separa(pszCaminho, "/\\");
        return partes.sDiretorio + "|" + partes.sNome;
    };
    EXPECT_EQ(fn("a.dat"), ".|a.dat");
    EXPECT_EQ(fn("/a.dat"), "/|a.dat");
    EXPECT_EQ(fn("C:\\a.dat"), "C:\\|a.dat");
    EXPECT_EQ(fn("d//e/a.dat"), "d//e|a.dat");
    EXPECT_EQ(fn("d\\\\a.dat"), "d|a.dat");
}
