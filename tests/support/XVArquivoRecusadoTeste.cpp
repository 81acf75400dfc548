// The note of the refused file: which file an operation's failure names, and how it reads.
#include <gtest/gtest.h>

#include <cstring>
#include <thread>

#include "support/codes/XVCodigos.h"
#include "support/messages/XVMensagens.h"
#include "support/trace/XVArquivoRecusado.h"
#include "support/trace/XVCapturaTrace.h"

namespace {

using XVArquivoRecusado::Anota;
using XVArquivoRecusado::Descreve;
using XVArquivoRecusado::Mensagem;
using XVArquivoRecusado::PathDaMensagem;

class ArquivoRecusado : public testing::Test {
  protected:
    ~ArquivoRecusado() override { EXPECT_EQ(CXVArquivosRecusados::GetAtual(), nullptr); }
    CXVCapturaTrace m_Captura;
};

TEST_F(ArquivoRecusado, DiaEODoNomeDeUmMembroENenhumOutro) {
    for (const char* pszComDia : {"/d/CRINTEGMID20240315.dat", "C:\\d\\CRINTEGMIDJSON20240315.tra",
                                  "20240315.dat", "/d/CRINTEGMID20240315.dat.srk", "/d.x/CRINTEGMID20240315"})
        EXPECT_EQ(Descreve(std::string_view(pszComDia)), std::string(pszComDia) + " (dia 15/03/2024)");
    EXPECT_EQ(Descreve(std::string_view("/d/A20240229.dat")), "/d/A20240229.dat (dia 29/02/2024)");
    for (const char* pszSemDia : {"/d/CRINDEXINTEG.dat", "/d/A20230229.dat", "/d/A00000007.dat",
                                  "/d/A2024031.dat", "/d/A20241315.dat", "/d/A+2024031.dat",
                                  "/d/A99999999.dat", "/d/A18470101.dat", "/d20240315/A.dat", "", "/d/"})
        EXPECT_EQ(Descreve(std::string_view(pszSemDia)), pszSemDia);
}

TEST_F(ArquivoRecusado, NotaDevolveOCodigoENaoSeFazDeUmSucesso) {
    const CXVArquivosRecusados recusados;
    EXPECT_EQ(Anota(S_OK, "/d/A.dat", nullptr), S_OK);
    EXPECT_EQ(Anota(S_FALSE, "/d/A.dat", nullptr), S_FALSE);
    EXPECT_EQ(recusados.GetPath(S_OK), "");
    EXPECT_TRUE(m_Captura.GetFalhas().empty());

    EXPECT_EQ(Anota(eDiskFull, "/d/A20240315.dat", nullptr), eDiskFull);
    EXPECT_EQ(recusados.GetPath(eDiskFull), "/d/A20240315.dat");
    EXPECT_EQ(recusados.GetPath(eHardIO), "") << "another failure is not this file's";
    ASSERT_EQ(m_Captura.GetFalhas().size(), 1U);
    EXPECT_EQ(m_Captura.GetFalhas()[0].sMensagem,
              "Arquivo recusado: /d/A20240315.dat (dia 15/03/2024)\thr = 0X80043F08");
}

TEST_F(ArquivoRecusado, SemOperacaoSoOLogDizEComElaOPrimeiroDeCadaCodigo) {
    EXPECT_EQ(Anota(eDiskFull, "/d/A.dat", nullptr), eDiskFull);
    EXPECT_EQ(m_Captura.GetFalhas().size(), 1U);
    EXPECT_EQ(Mensagem("Frase.", eDiskFull), "Frase.");
    EXPECT_EQ(PathDaMensagem("Frase."), "");
    const CXVArquivosRecusados recusados;
    XVIgnora(Anota(eDiskFull, "/d/controle", nullptr));
    XVIgnora(Anota(eDiskFull, "/d/depois", nullptr));
    XVIgnora(Anota(eHardIO, "/d/outro", nullptr));
    EXPECT_EQ(Descreve(eDiskFull), "/d/controle");
    EXPECT_EQ(Descreve(eHardIO), "/d/outro");
}

TEST_F(ArquivoRecusado, OperacaoNovaEsqueceADeAntesEADeDentroPassaADeFora) {
    const CXVArquivosRecusados fora;
    {
        const CXVArquivosRecusados dentro;
        XVIgnora(Anota(eDiskFull, "/d/A.dat", nullptr));
        EXPECT_EQ(fora.GetPath(eDiskFull), "");
    }
    EXPECT_EQ(Descreve(eDiskFull), "/d/A.dat");
    {
        const CXVArquivosRecusados dentro;
        EXPECT_EQ(Descreve(eDiskFull), "") << "a failure without a file must not get the one before";
        XVIgnora(Anota(eHardIO, "/d/B.dat", nullptr));
    }
    EXPECT_EQ(Descreve(eDiskFull), "/d/A.dat");
    EXPECT_EQ(Descreve(eHardIO), "/d/B.dat");
}

TEST_F(ArquivoRecusado, NotaEDaThread) {
    const CXVArquivosRecusados recusados;
    std::thread([] {
        const CXVCapturaTrace captura;
        EXPECT_EQ(CXVArquivosRecusados::GetAtual(), nullptr);
        XVIgnora(Anota(eDiskFull, "/d/A.dat", nullptr));
    }).join();
    EXPECT_EQ(recusados.GetPath(eDiskFull), "");
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
    // The longest and the shortest of the sentences that name a file.
    for (const HRESULT hr : {E_XVCR_ARQUIVO_TRA_ENCONTRADO, eDiskFull}) {
        const std::string_view sFrase = XVBuscaMensagem(hr)->sDescricao;
        for (std::size_t uiDiretorio = 0; uiDiretorio <= sDiretorio.size(); uiDiretorio += 3) {
            const CXVArquivosRecusados recusados;
            XVIgnora(Anota(hr, sDiretorio.substr(0, uiDiretorio) + "/" + sNome, nullptr));
            const std::string sTexto = Mensagem(sFrase, hr, 247);
            ASSERT_LE(sTexto.size(), 247U);
            ASSERT_TRUE(sTexto.starts_with(std::string(sFrase) + " Arquivo: ")) << sTexto;
            ASSERT_TRUE(sTexto.ends_with(sNome + " (dia 15/03/2024)")) << sTexto;
            ASSERT_TRUE(PathDaMensagem(sTexto).ends_with(sNome)) << sTexto;
            const std::size_t uiCorte = sTexto.find("...");
            if (uiCorte != std::string::npos)
                ASSERT_NE(static_cast<unsigned char>(sTexto[uiCorte + 3]) & 0xC0U, 0x80U)
                    << "half a character";
            else
                ASSERT_NE(sTexto.find(sDiretorio.substr(0, uiDiretorio) + "/" + sNome), std::string::npos);
        }
    }
}

}  // namespace
