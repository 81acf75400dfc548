// Requests to end, which come while lines are recorded and while the next one is waited for.
#include <gmock/gmock.h>
#include <signal.h>

#include "tests/xvcr/XVPrograma.h"

namespace {

class ProgramaSinal : public XVPrograma {
  protected:
    static void Sinaliza(const CXVProcessoFilho& rFilho, int iSinal) {
        ::kill(static_cast<pid_t>(rFilho.GetNumero()), iSinal);
    }
};

// The answers fill the pipe, so the load is in the middle of its file whenever the request comes.
TEST_F(ProgramaSinal, CargaTerminaEntreDuasLinhasEORespondidoEOGravado) {
    constexpr int k_iLinhas = 20000;
    std::string sLinhas;
    for (int i = 0; i < k_iLinhas; ++i) sLinhas += "{\"eSistemaIntegracao\":16}\n";
    m_Diretorio.CriaArquivo("linhas.jsonl", sLinhas);
    CXVProcessoFilho filho = Carrega(m_Diretorio.Junta("linhas.jsonl"));
    int iRespondidas = 0;
    std::string sLinha = filho.LeLinha();
    Sinaliza(filho, SIGTERM);
    for (; sLinha.starts_with("linha " + std::to_string(iRespondidas + 1) + ": "); sLinha = filho.LeLinha())
        ++iRespondidas;
    EXPECT_LT(iRespondidas, k_iLinhas);
    const std::string sNumero = std::to_string(iRespondidas);
    const std::string sTotal = sNumero + " lidas, " + sNumero + " gravadas, 0 com erro";
    EXPECT_EQ(sLinha, sTotal);
    EXPECT_EQ(filho.EsperaFim(), -SIGTERM);
    EXPECT_EQ(m_Diretorio.LeConteudo("erro").value_or(""),
              "xvcr: carga interrompida depois da linha " + sNumero + ": " + sTotal + '\n');
    EXPECT_EQ(Xvcr("busca --conta").sSaida, sNumero + '\n');
}

// Half a line that came is none: its other half may never come.
TEST_F(ProgramaSinal, CargaQueEsperaTerminaSemALinhaPelaMetade) {
    for (const char* pszArquivo : {"-", "/dev/stdin"}) {
        CXVProcessoFilho filho = Carrega(pszArquivo);
        filho.Escreve("{}\n{\"eSistemaIntegracao\":16}");
        EXPECT_THAT(filho.LeLinha(), testing::EndsWith(" gravada"));
        Sinaliza(filho, SIGINT);
        EXPECT_EQ(filho.LeLinha(), "1 lidas, 1 gravadas, 0 com erro");
        EXPECT_EQ(filho.EsperaFim(), -SIGINT);
    }
    EXPECT_EQ(Xvcr("busca --conta").sSaida, "2\n");
}

}  // namespace
