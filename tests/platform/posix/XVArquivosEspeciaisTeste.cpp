// What only exists on POSIX systems: pipes, devices, links, the limit on the length of files.
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/platform/posix/XVCenarioPosix.h"

using CXVArquivosEspeciaisTeste = CXVCenarioPosix;

TEST_F(CXVArquivosEspeciaisTeste, CanosEDispositivosSaoRecusadosSemEspera) {
    ASSERT_EQ(mkfifo(Caminho("cano").c_str(), 0600), 0);
    for (const SAberturaArquivo& rAbertura : {k_leitura, k_escrita}) {
        EXPECT_EQ(Abre("cano", rAbertura), ECausaArquivo::eArquivoInvalido);
        EXPECT_EQ(m_rSistema.Abre("/dev/null", rAbertura, m_pArquivo).GetCausa(),
                  ECausaArquivo::eArquivoInvalido);
    }
    EXPECT_EQ(Apaga("cano"), ECausaArquivo::eArquivoInvalido);
    EXPECT_EQ(Marca("cano"), ECausaArquivo::eArquivoInvalido);
}

TEST_F(CXVArquivosEspeciaisTeste, MarcaDeProcessoMortoEAssumida) {
    m_diretorio.CriaArquivo("DFXXMARCA1", "sobra");
    EXPECT_EQ(Marca("DFXXMARCA1"), ECausaArquivo::eNenhuma);
}

TEST_F(CXVArquivosEspeciaisTeste, LimiteDoProcessoEDiscoCheio) {
    m_diretorio.CriaArquivo("a.dat", "");
    ASSERT_EQ(Abre("a.dat", k_escrita), ECausaArquivo::eNenhuma);
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
