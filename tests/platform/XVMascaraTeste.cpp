#include <gtest/gtest.h>

#include <string>

#include "platform/XVCaminho.h"
#include "platform/XVMascara.h"

TEST(CXVMascaraTeste, CasaONomeInteiroSemOlharACaixa) {
    std::string sHostil;  // must cost no more than the product of the lengths
    for (int i = 0; i < 200; ++i) sHostil += "*a";
    const struct {
        std::string sMascara;
        std::string sNome;
        bool bCasa;
    } aCasos[] = {
        {"*.dat", "A.DAT", true},
        {"crinteg????????.dat", "CRINTEG20240101.dat", true},
        {"a*b*c", "aXbYbZc", true},
        {"*", "", true},
        {"", "", true},
        {"**a**", "a", true},
        {"?.dat", "\xC3\xA7.dat", true},  // one character of two bytes
        {"*\xA7", "\xC3\xA7", false},     // half of a character
        {"*.dat", "a.datx", false},
        {"*.dat", "adat", false},
        {"?", "", false},
        {"a?c", "ac", false},
        {"", "a", false},
        {"*a", "ab", false},
        {sHostil + "b", std::string(5000, 'a'), false},
    };
    for (const auto& [sMascara, sNome, bCasa] : aCasos)
        EXPECT_EQ(XVMascara::Confere(sMascara, sNome), bCasa) << sMascara << ' ' << sNome;
}

TEST(CXVCaminhoTeste, SeparaCaminhosGuardandoRaizes) {
    const std::pair<const char*, const char*> aCasos[] = {{"a.dat", ".|a.dat"},
                                                          {"/a.dat", "/|a.dat"},
                                                          {"C:\\a.dat", "C:\\|a.dat"},
                                                          {"d//e/a.dat", "d//e|a.dat"},
                                                          {"d\\\\a.dat", "d|a.dat"}};
    for (const auto& [pszCaminho, pszEsperado] : aCasos) {
        const XVCaminho::SPartes partes = XVCaminho::Separa(pszCaminho, "/\\");
        EXPECT_EQ(partes.sDiretorio + "|" + partes.sNome, pszEsperado);
    }
}
