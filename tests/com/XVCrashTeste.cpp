// The crash handler, in processes that crash: a minidump, or the report with registers and stack.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/com/XVAmbienteCom.h"
#include "tests/com/XVProcesso.h"

namespace {

namespace fs = std::filesystem;

// The files that a crashing child leaves in a fresh directory.
std::vector<fs::path> Quebra(const std::wstring& sModo, const char* pszPasta, const std::wstring& sResto,
                             DWORD ulCodigoEsperado) {
    const fs::path pasta = fs::path(XVAmbienteCom::DiretorioModulo()) / pszPasta;
    fs::create_directories(pasta);
    const CXVProcesso filho = XVProcessos::Filho(sModo + L" \"" + pasta.wstring() + L"\" " + sResto);
    EXPECT_EQ(filho.GetCodigo(), ulCodigoEsperado);
    return {fs::directory_iterator(pasta), {}};
}

std::string Le(const fs::path& caminho) {
    std::ifstream arquivo{caminho, std::ios::binary};
    return {std::istreambuf_iterator<char>(arquivo), {}};
}

}  // namespace

TEST(TratamentoCrash, MinidumpAoLadoDosLogs) {
    const auto lista = Quebra(L"crash", "crash dump", L"1", 0xC0000005U);
    ASSERT_EQ(lista.size(), 1U);
    EXPECT_EQ(lista[0].extension(), ".dmp");
    EXPECT_EQ(Le(lista[0]).substr(0, 4), "MDMP");
}

TEST(TratamentoCrash, SemMinidumpRelatorioComRegistradoresEPilha) {
    const auto lista = Quebra(L"crash", "crash texto", L"0", 0xC0000005U);
    ASSERT_EQ(lista.size(), 1U);
    const std::string sRelatorio = Le(lista[0]);
    EXPECT_NE(sRelatorio.find("Exceção 0xC0000005"), std::string::npos) << sRelatorio;
    EXPECT_NE(sRelatorio.find("rip "), std::string::npos);
    EXPECT_NE(sRelatorio.find("#03 "), std::string::npos) << sRelatorio;
    EXPECT_NE(sRelatorio.find("xv_teste_com.exe+0x"), std::string::npos);
}

TEST(TratamentoCrash, ExcecaoQueNinguemTrataTambemDeixaRelatorio) {
    const auto lista = Quebra(L"termina", "crash termino", L"", 0xE0585641U);
    ASSERT_EQ(lista.size(), 1U);
    EXPECT_EQ(lista[0].extension(), ".txt");
}
