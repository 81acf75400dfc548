// The same operations leave the same bytes on every operating system: one committed list for all.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVProcessoFilho.h"
#include "tests/middleware/XVRoteiro.h"

namespace {

TEST(CXVRoteiroTeste, ArquivosSaoOsMesmosNativamenteENoWindows) {
    const auto caminho =
        std::filesystem::path(XVProgramaVizinho("x")).parent_path() / "XVRoteiroEsperado.txt";
    std::ifstream arquivo(caminho, std::ios::binary);
    std::ostringstream esperado;
    esperado << arquivo.rdbuf();
    ASSERT_FALSE(esperado.str().empty()) << caminho;
    const CXVDiretorioTeste diretorio;
    EXPECT_EQ(XVExecutaRoteiro(diretorio.GetCaminho()), esperado.str());
}

}  // namespace
