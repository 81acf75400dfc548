// The note of the refused file: which file an operation's failure names, and how it reads.
#include <gtest/gtest.h>

#include <thread>

#include "support/codes/XVCodigos.h"
#include "support/messages/XVMensagens.h"
#include "support/trace/XVArquivoRecusado.h"
#include "support/trace/XVCapturaTrace.h"

namespace {

using XVArquivoRecusado::Anota;
using XVArquivoRecusado::Descreve;
using XVArquivoRecusado::Mensagem;

class ArquivoRecusado : public testing::Test {
  protected:
    ~ArquivoRecusado() override { EXPECT_EQ(CXVArquivosRecusados::GetAtual(), nullptr); }
    CXVCapturaTrace m_Captura;
};

TEST_F(ArquivoRecusado, DiaEODoNomeDeUmMembroENenhumOutro) {
    for (const char* pszComDia : {"/d/CRINTEGMID20240315.dat", "C:\\d\\CRINTEGMIDJSON20240315.tra",
                                  "20240315.dat", "/d/CRINTEGMID20240315.dat.srk", "/d.x/CRINTEGMID20240315"})
        EXPECT_EQ(Descreve(std::string_view(pszComDia)), std::string(pszComDia) + " (dia 15/03/2024)");
    for (const char* pszSemDia : {"/d/CRINDEXINTEG.dat", "/d/A20230229.dat", "/d/A00000007.dat",
                                  "/d/A2024031.dat", "/d/A20241315.dat", "/d/A+2024031.dat",
                                  "/d/A99999999.dat", "/d/A18470101.dat", "/d20240315/A.dat", "", "/d/"})
        EXPECT_EQ(Descreve(std::string_view(pszSemDia)), pszSemDia);
}

TEST_F(ArquivoRecusado, OperacaoNovaEsqueceADeAntesEADeDentroPassaADeFora) {
    const CXVArquivosRecusados fora;
    {
        const CXVArquivosRecusados dentro;
        EXPECT_EQ(Anota(S_FALSE, "/d/sucesso", nullptr), S_FALSE);
        EXPECT_EQ(Anota(eDiskFull, "/d/A.dat", nullptr), eDiskFull);
        XVIgnora(Anota(eDiskFull, "/d/depois", nullptr));
    }
    EXPECT_EQ(fora.GetPath(S_FALSE), "");
    EXPECT_EQ(Descreve(eDiskFull), "/d/A.dat") << "the first file of a code";
    const CXVArquivosRecusados dentro;
    EXPECT_EQ(Descreve(eDiskFull), "") << "a failure without a file must not get the one before";
    std::thread([] { EXPECT_EQ(CXVArquivosRecusados::GetAtual(), nullptr); }).join();
}

TEST_F(ArquivoRecusado, OperacaoQueSeguePorCimaDasFalhasNaoAcumulaSemFim) {
    const CXVArquivosRecusados recusados;
    for (XVUInt i = 0; i < 100; ++i) XVIgnora(Anota(XVHResult(0x81080000U + i), "/d/A.dat", nullptr));
    EXPECT_EQ(recusados.GetPath(XVHResult(0x81080000U)), "/d/A.dat");
    EXPECT_EQ(recusados.GetPath(XVHResult(0x81080063U)), "");
}

// The field of a last error holds 247 bytes; sentence, name and day must be there whatever the directory.
TEST_F(ArquivoRecusado, MensagemCurtaPerdeOComecoDoCaminhoENuncaONome) {
    std::string sDiretorio;
    for (int i = 0; i < 100; ++i) sDiretorio += "/é";
    const std::string sNome = "CRINTEGMIDJSONRET20240315.dat";
    const std::string sInicio = std::string(XVBuscaMensagem(eDiskFull)->sDescricao) + " Arquivo: ";
    for (std::size_t uiDiretorio = 0; uiDiretorio <= sDiretorio.size(); uiDiretorio += 3) {
        const CXVArquivosRecusados recusados;
        const std::string sPath = sDiretorio.substr(0, uiDiretorio) + "/" + sNome + " (dia 15/03/2024)";
        XVIgnora(Anota(eDiskFull, sDiretorio.substr(0, uiDiretorio) + "/" + sNome, nullptr));
        const std::size_t uiMaximo = 247 - uiDiretorio / 3 % 3;  // the cut falls on every byte of a step
        const std::string sTexto = Mensagem(XVBuscaMensagem(eDiskFull)->sDescricao, eDiskFull, uiMaximo);
        if (sInicio.size() + sPath.size() <= uiMaximo) {
            ASSERT_EQ(sTexto, sInicio + sPath);
            continue;
        }
        ASSERT_TRUE(sTexto.starts_with(sInicio + "...")) << sTexto;
        const std::string sFim = sTexto.substr(sInicio.size() + 3);
        ASSERT_TRUE(sPath.ends_with(sFim) && sFim.size() > sNome.size()) << sTexto;
        ASSERT_NE(static_cast<unsigned char>(sFim[0]) & 0xC0U, 0x80U) << "half a character";
        ASSERT_TRUE(sTexto.size() == uiMaximo || sTexto.size() + 1 == uiMaximo) << "cut more than need be";
    }
}

}  // namespace
