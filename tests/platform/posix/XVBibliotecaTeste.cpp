// Where libraries are looked for, seen from a program that lies in a directory of the test's.
#include "platform/XVAmbienteSO.h"
#include "tests/harness/XVProcessoFilho.h"
#include "tests/platform/XVCenarioArquivos.h"

namespace fs = std::filesystem;

namespace {

class CXVBibliotecaTeste : public CXVCenarioArquivos {
  protected:
    void SetUp() override {
        for (const char* pszDiretorio : {"programa", "corrente", "sistema"})
            fs::create_directory(Caminho(pszDiretorio));
        fs::copy_file(XVProgramaVizinho("xv_filho_plataforma"), Caminho("programa/filho"));
        fs::current_path(Caminho("corrente"));
    }
    void TearDown() override {
        fs::current_path(m_corrente);
        unsetenv("LD_LIBRARY_PATH");
    }
    void PoeBiblioteca(const std::string& sNome) const {
        fs::copy_file(XVAmbienteSO::GetDiretorioExecutavel() + "/xv_biblioteca_teste.so", Caminho(sNome));
    }
    std::string Carrega(const std::string& sNome, const std::string& sBusca = {}) {
        setenv("LD_LIBRARY_PATH", sBusca.c_str(), 1);
        return CXVProcessoFilho(Caminho("programa/filho"), {"carrega", sNome}).LeLinha();
    }

  private:
    const fs::path m_corrente = fs::current_path();
};

}  // namespace

TEST_F(CXVBibliotecaTeste, DoDiretorioDoProgramaComESemPrefixo) {
    PoeBiblioteca("programa/xv_a.so");
    PoeBiblioteca("programa/libxv_b.so");
    Cria("programa/xv_b.so", "no library");
    Cria("programa/xv_c.so", "no library");
    EXPECT_EQ(Carrega("xv_a.dll"), "serve");
    EXPECT_EQ(Carrega("XV_A.DLL"), "ausente") << "only the ending is translated";
    EXPECT_EQ(Carrega("xv_a.so"), "serve");
    EXPECT_EQ(Carrega("xv_b.dll"), "serve") << "the second name, with nothing said of the first";
    EXPECT_EQ(Carrega("xv_c.dll"), "recusada");
    EXPECT_EQ(Carrega("xv_d.dll"), "ausente");
}

// Whoever can write into the current directory must not choose what the program runs.
TEST_F(CXVBibliotecaTeste, DoDiretorioCorrenteNunca) {
    PoeBiblioteca("corrente/xv_e.so");
    PoeBiblioteca("sistema/xv_f.so");
    for (const char* pszBusca : {"", ".", ":/usr/lib", "/usr/lib:", "/usr/lib::/lib", "/usr/lib;../corrente"})
        EXPECT_EQ(Carrega("xv_e.dll", pszBusca), "ausente") << pszBusca;
    EXPECT_EQ(Carrega("../corrente/xv_e.dll"), "ausente");
    EXPECT_EQ(Carrega("xv_f.dll", Caminho("sistema")), "serve") << "what the administrator names";
}
