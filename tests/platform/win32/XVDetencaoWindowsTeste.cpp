// A process that reports a fault changes no file any more.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>

#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVProcessoFilho.h"

namespace {

using TConteudos = std::map<std::string, std::string>;

TConteudos Conteudos(const CXVDiretorioTeste& rDiretorio) {
    TConteudos conteudos;
    for (const auto& rEntrada : std::filesystem::directory_iterator(rDiretorio.GetCaminho())) {
        const std::string sNome = rEntrada.path().filename().string();
        conteudos[sNome] = rDiretorio.LeConteudo(sNome).value_or("(nenhum)");
    }
    return conteudos;
}

}  // namespace

TEST(CXVDetencaoTeste, DetidoNadaMudaArquivoSalvoQuemEstaIsento) {
    for (const bool bDetem : {false, true}) {
        SCOPED_TRACE(bDetem);
        const CXVDiretorioTeste diretorio;
        for (const char* pszNome : {"grava", "encurta", "mapeado", "fecha", "apaga", "origem", "destino"})
            diretorio.CriaArquivo(pszNome, std::string("conteudo de ") + pszNome);
        TConteudos esperados = Conteudos(diretorio);
        CXVProcessoFilho filho(XVProgramaVizinho("xv_filho_detido"),
                               {diretorio.GetCaminho(), bDetem ? "1" : "0"});
        const std::string sFeitas = filho.LeLinha();
        filho.EsperaFim();
        TConteudos depois = Conteudos(diretorio);
        EXPECT_EQ(depois["log"], "linha");
        esperados["log"] = "linha";
        if (bDetem) {
            EXPECT_EQ(sFeitas, "");
            EXPECT_EQ(depois, esperados);
        } else {
            EXPECT_EQ(std::count(sFeitas.begin(), sFeitas.end(), ' '), 11) << sFeitas;
            EXPECT_EQ(sFeitas.find('!'), std::string::npos) << sFeitas;
        }
    }
}
