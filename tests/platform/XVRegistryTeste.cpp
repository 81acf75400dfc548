#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/XVRegistryArquivo.h"
#include "platform/XVRegistryTexto.h"
#include "tests/harness/XVDiretorioTemporario.h"

namespace {

constexpr std::string_view k_sChaveDF = "SOFTWARE\\Wow6432Node\\Velmora\\DF";

// setenv and _putenv_s are no standard C++; the text handed to putenv must outlive the variable.
void SetVariavel(const std::string& sValor) {
    static std::string s_sAtribuicao;
    s_sAtribuicao = "XV_REGISTRO=" + sValor;
    putenv(s_sAtribuicao.data());
}

}  // namespace

TEST(CXVRegistryTextoTeste, LeTextosENumerosDeSuaChave) {
    CXVRegistryTexto texto;
    texto.Carrega(
        "# comentario\r\n"
        "[SOFTWARE\\Wow6432Node\\Velmora\\DF]\r\n"
        "\"Path\" = \"C:\\dados da suite\\x\" ; fica\r\n"
        "  Liga=1   # um\n"
        "\"Texto Numero\" = \"42\"\n"
        "Liga = 2\n"
        "[ software\\wow6432node\\velmora ]\n"
        "Path = \"outro\"");
    EXPECT_EQ(texto.LeTexto(k_sChaveDF, "path"), "C:\\dados da suite\\x");
    EXPECT_EQ(texto.LeTexto("software\\WOW6432NODE\\velmora", "PATH"), "outro");
    EXPECT_EQ(texto.LeNumero(k_sChaveDF, "Liga"), 2U);
    EXPECT_EQ(texto.LeNumero(k_sChaveDF, "Texto Numero"), 42U);
    EXPECT_EQ(texto.LeTexto(k_sChaveDF, "Liga"), std::nullopt);
    EXPECT_EQ(texto.LeNumero(k_sChaveDF, "Path"), std::nullopt);
    EXPECT_EQ(texto.LeTexto(k_sChaveDF, "Nada"), std::nullopt);
}

TEST(CXVRegistryTextoTeste, SaltaLinhasMalformadas) {
    CXVRegistryTexto texto;
    texto.Carrega(
        "Antes = 1\n[K]\nsem igual\n= 1\n\"aberta = 1\nA = \"aberta\nB = \"x\" y\nC = 12x\nD = -1\n"
        "E = 4294967296\nF =\n\"G\"\nH = 4294967295\n[quebrada\nI = 1\n");
    for (const char* pszNome : {"Antes", "", "A", "B", "C", "D", "E", "F", "G", "I", "aberta"}) {
        EXPECT_EQ(texto.LeTexto("K", pszNome), std::nullopt) << pszNome;
        EXPECT_EQ(texto.LeNumero("K", pszNome), std::nullopt) << pszNome;
    }
    EXPECT_EQ(texto.LeNumero("K", "H"), 4294967295U);
}

TEST(CXVRegistryArquivoTeste, SegueOArquivoQueAVariavelNomeia) {
    const CXVDiretorioTeste diretorio;
    CXVRegistryArquivo registry;
    SetVariavel(diretorio.Junta("registro"));
    EXPECT_TRUE(CXVRegistryArquivo::EstaConfigurado());
    EXPECT_EQ(registry.LeNumero("K", "V"), std::nullopt);
    diretorio.CriaArquivo("registro", "[K]\nV = 1\n");
    EXPECT_EQ(registry.LeNumero("K", "V"), 1U);
    diretorio.CriaArquivo("registro", "[K]\nV = 22\n");
    EXPECT_EQ(registry.LeNumero("K", "V"), 22U);
    diretorio.CriaArquivo("outro", "[K]\nV = 33\n");
    SetVariavel(diretorio.Junta("outro"));
    EXPECT_EQ(registry.LeNumero("K", "V"), 33U);
    SetVariavel(diretorio.GetCaminho());
    EXPECT_EQ(registry.LeNumero("K", "V"), std::nullopt) << "a directory holds no values";
}
