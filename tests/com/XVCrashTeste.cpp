// The crash handler, in processes that crash: a minidump, or the report with registers and stack.
#include <gtest/gtest.h>

#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVExecucao.h"
#include "tests/harness/XVProcessoFilho.h"

TEST(TratamentoCrash, CadaFimDeixaUmArquivoQueOExplica) {
    namespace fs = std::filesystem;
    struct SCaso {
        std::vector<std::string> listaModo;  // the directory is put behind the first word
        unsigned ulCodigo;
        const char* pszExtensao;
        std::vector<std::string> listaTextos;
    };
    const SCaso aCasos[] = {
        {{"crash", "1"}, 0xC0000005U, ".dmp", {"MDMP"}},
        {{"crash", "0"}, 0xC0000005U, ".txt", {"Exceção 0xC0000005", "rip ", "#03 ", "xv_teste_com.exe+0x"}},
        {{"termina"}, 0xE0585641U, ".txt", {}},
    };
    for (const SCaso& rCaso : aCasos) {
        const CXVDiretorioTeste diretorio;
        std::vector<std::string> listaArgumentos = rCaso.listaModo;
        listaArgumentos.insert(listaArgumentos.begin(), "--filho");
        listaArgumentos.insert(listaArgumentos.begin() + 2, diretorio.GetCaminho());
        const SExecucao execucao = XVExecuta(XVProgramaVizinho("xv_teste_com"), listaArgumentos);
        EXPECT_EQ(static_cast<unsigned>(execucao.iSaida), rCaso.ulCodigo) << execucao.sErro;
        const std::vector<fs::path> lista{fs::directory_iterator(diretorio.GetCaminho()), {}};
        ASSERT_EQ(lista.size(), 1U);
        EXPECT_EQ(lista[0].extension(), rCaso.pszExtensao);
        const std::string sRelatorio = diretorio.LeConteudo(lista[0].filename().string()).value_or("");
        for (const std::string& sTexto : rCaso.listaTextos)
            EXPECT_NE(sRelatorio.find(sTexto), std::string::npos) << sTexto;
    }
}
