// What only exists on POSIX systems: pipes, devices, links, the limit on the length of files.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/XVPlataforma.h"
#include "tests/harness/XVDiretorioTemporario.h"

namespace {

class CXVArquivosEspeciaisTeste : public testing::Test {
  protected:
    ECausaArquivo Abre(const std::string& sCaminho, EAcessoArquivo eAcesso) {
        return m_rSistema
            .Abre(sCaminho,
                  {eAcesso, ECompartilhamentoArquivo::eNegaNada, ECriacaoArquivo::eSomenteExistente},
                  m_pArquivo)
            .GetCausa();
    }

    IXVSistemaArquivos& m_rSistema = XVPlataforma::SistemaArquivosNativo();
    CXVDiretorioTeste m_diretorio;
    std::unique_ptr<IXVArquivo> m_pArquivo;
};

}  // namespace

TEST_F(CXVArquivosEspeciaisTeste, CanosEDispositivosSaoRecusadosSemEspera) {
    const std::string sCano = m_diretorio.Junta("cano");
    ASSERT_EQ(mkfifo(sCano.c_str(), 0600), 0);
    for (const EAcessoArquivo eAcesso : {EAcessoArquivo::eLeitura, EAcessoArquivo::eLeituraEscrita}) {
        EXPECT_EQ(Abre(sCano, eAcesso), ECausaArquivo::eArquivoInvalido);
        EXPECT_EQ(Abre("/dev/null", eAcesso), ECausaArquivo::eArquivoInvalido);
    }
    EXPECT_EQ(m_rSistema.Apaga(sCano).GetCausa(), ECausaArquivo::eArquivoInvalido);
    std::unique_ptr<IXVMarcaDiretorio> pMarca;
    EXPECT_EQ(m_rSistema.MarcaDiretorio(m_diretorio.GetCaminho(), "cano", pMarca).GetCausa(),
              ECausaArquivo::eArquivoInvalido);
}

TEST_F(CXVArquivosEspeciaisTeste, EloSemAlvoContaComoPreso) {
    ASSERT_EQ(symlink("nada", m_diretorio.Junta("elo").c_str()), 0);
    EXPECT_EQ(m_rSistema.Existe(m_diretorio.Junta("elo")), EExistencia::eArquivo);
    EXPECT_EQ(Abre(m_diretorio.Junta("elo"), EAcessoArquivo::eLeitura), ECausaArquivo::eArquivoNaoEncontrado);
}

TEST_F(CXVArquivosEspeciaisTeste, MarcaDeProcessoMortoEAssumida) {
    m_diretorio.CriaArquivo("DFXXMARCA1", "sobra");
    std::unique_ptr<IXVMarcaDiretorio> pMarca;
    EXPECT_TRUE(m_rSistema.MarcaDiretorio(m_diretorio.GetCaminho(), "DFXXMARCA1", pMarca).Ok());
}

TEST_F(CXVArquivosEspeciaisTeste, LimiteDoProcessoEDiscoCheio) {
    m_diretorio.CriaArquivo("a.dat", "");
    ASSERT_EQ(Abre(m_diretorio.Junta("a.dat"), EAcessoArquivo::eLeituraEscrita), ECausaArquivo::eNenhuma);
    rlimit anterior{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &anterior), 0);
    const auto pfnAnterior = signal(SIGXFSZ, SIG_IGN);
    const rlimit apertado{1000, anterior.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &apertado), 0);
    const std::string sDados(2000, 'x');
    const ECausaArquivo eGrava = m_pArquivo->Grava(0, sDados.data(), sDados.size()).GetCausa();
    const ECausaArquivo eTamanho = m_pArquivo->SetTamanho(2000).GetCausa();
    setrlimit(RLIMIT_FSIZE, &anterior);
    signal(SIGXFSZ, pfnAnterior);
    EXPECT_EQ(eGrava, ECausaArquivo::eDiscoCheio);
    EXPECT_EQ(eTamanho, ECausaArquivo::eDiscoCheio);
    EXPECT_EQ(m_pArquivo->SetTamanho(XVUInt64{1} << 62).GetCausa(), ECausaArquivo::ePosicionamentoInvalido);
}
