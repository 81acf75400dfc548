#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>

#include "platform/XVRegistryArquivo.h"
#include "platform/XVRegistryTexto.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVEmThreads.h"

namespace {

constexpr std::string_view k_sChaveDF = "SOFTWARE\\Wow6432Node\\Velmora\\DF";

// setenv and _putenv_s are no standard C++; the text handed to putenv must outlive the variable.
void SetVariavel(const std::string& sValor) {
    static std::string s_sAtribuicao;
    s_sAtribuicao = "XV_REGISTRO=" + sValor;
    putenv(s_sAtribuicao.data());
}

}  // namespace

TEST(CXVRegistryTextoTeste, LeSuaChaveESaltaLinhasMalformadas) {
    CXVRegistryTexto texto;
    texto.Carrega(
        "Antes = 1\n# comentario\r\n"
        "[SOFTWARE\\Wow6432Node\\Velmora\\DF]\r\n"
        "\"Path\" = \"C:\\dados da suite\\x\" ; fica\r\n"
        "  Liga=1   # um\n"
        "\"Texto Numero\" = \"42\"\n"
        "Liga = 2 ; dois\n"
        "sem igual\n= 1\n\"aberta = 1\nA = \"aberta\nB = \"x\" y\nC = 12x\nD = -1\n"
        "E = 4294967296\nF =\n\"G\"\nH = 4294967295\n[quebrada\nI = 1\n"
        "[ software\\wow6432node\\velmora ]\n"
        "Path = \"outro\"");
    EXPECT_EQ(texto.LeTexto(k_sChaveDF, "path"), "C:\\dados da suite\\x");
    EXPECT_EQ(texto.LeTexto("software\\WOW6432NODE\\velmora", "PATH"), "outro");
    EXPECT_EQ(texto.LeNumero(k_sChaveDF, "Liga"), 2U);
    EXPECT_EQ(texto.LeNumero(k_sChaveDF, "Texto Numero"), 42U);
    EXPECT_EQ(texto.LeNumero(k_sChaveDF, "H"), 4294967295U);
    EXPECT_EQ(texto.LeTexto(k_sChaveDF, "Liga"), std::nullopt);
    EXPECT_EQ(texto.LeNumero(k_sChaveDF, "Path"), std::nullopt);
    for (const char* pszNome :
         {"Antes", "", "A", "B", "C", "D", "E", "F", "G", "I", "aberta", "quebrada", "Nada"}) {
        EXPECT_EQ(texto.LeTexto(k_sChaveDF, pszNome), std::nullopt) << pszNome;
        EXPECT_EQ(texto.LeNumero(k_sChaveDF, pszNome), std::nullopt) << pszNome;
    }
}

// A file counts as another one when its name, its length or its time is another.
TEST(CXVRegistryArquivoTeste, SegueOArquivoQueAVariavelNomeia) {
    const CXVDiretorioTeste diretorio;
    const auto instante = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
    const auto fnGrava = [&](const char* pszNome, const std::string& sConteudo, int iHoras = 0) {
        diretorio.CriaArquivo(pszNome, sConteudo);
        std::filesystem::last_write_time(diretorio.Junta(pszNome), instante - std::chrono::hours(iHoras));
    };
    CXVRegistryArquivo registry;
    SetVariavel(diretorio.Junta("registro"));
    EXPECT_TRUE(CXVRegistryArquivo::EstaConfigurado());
    EXPECT_EQ(registry.LeNumero("K", "V"), std::nullopt);
    fnGrava("registro", "[K]\nV = 1\nT = \"um\"\n");
    EXPECT_EQ(registry.LeTexto("K", "T"), "um");
    EXPECT_EQ(registry.LeNumero("K", "V"), 1U);
    fnGrava("registro", "[K]\nV = 22\n");
    EXPECT_EQ(registry.LeNumero("K", "V"), 22U) << "the same time, another length";
    fnGrava("registro", "[K]\nV = 33\n", 1);
    EXPECT_EQ(registry.LeNumero("K", "V"), 33U) << "the same length, another time";
    fnGrava("outro", "[K]\nV = 44\n", 1);
    SetVariavel(diretorio.Junta("outro"));
    EXPECT_EQ(registry.LeNumero("K", "V"), 44U) << "another file";
    SetVariavel(diretorio.GetCaminho());
    EXPECT_EQ(registry.LeNumero("K", "V"), std::nullopt) << "a directory holds no values";
    SetVariavel(diretorio.Junta("outro"));
    EXPECT_EQ(registry.LeNumero("K", "V"), 44U) << "the file is back";
    fnGrava("outro", "[K]\nV = 55\n" + std::string(1 << 20, '\n'));
    EXPECT_EQ(registry.LeNumero("K", "V"), std::nullopt) << "longer than any registry";
}

// The thread sanitizer watches this one: each question may be the one that reads the file.
TEST(CXVRegistryArquivoTeste, RespondeAVariosFios) {
    const CXVDiretorioTeste diretorio;
    diretorio.CriaArquivo("registro", "[K]\nV = 1\nT = \"um\"\n");
    SetVariavel(diretorio.Junta("registro"));
    CXVRegistryArquivo registry;
    XVEmThreads(2, [&](unsigned i) {
        if (i == 0)
            EXPECT_EQ(registry.LeTexto("K", "T"), "um");
        else
            EXPECT_EQ(registry.LeNumero("K", "V"), 1U);
    });
}
