// Rights, links, descriptors and what else only POSIX systems have: pipes, devices, the limit on the length
// of files.
#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <fstream>

#include "platform/posix/XVDescritorPosix.h"
#include "tests/harness/XVProcessoFilho.h"
#include "tests/harness/posix/XVUsuarioSemDireitos.h"
#include "tests/platform/XVCenarioArquivos.h"

namespace {

constexpr SAberturaArquivo k_leituraCriacao{EAcessoArquivo::eLeitura, ECompartilhamentoArquivo::eNegaNada,
                                            ECriacaoArquivo::eCriaSeAusente};

class CXVAcessoTeste : public CXVCenarioArquivos {
  protected:
    void Modo(const std::string& sNome, mode_t modo) const {
        ASSERT_EQ(chmod(Caminho(sNome).c_str(), modo), 0);
    }
    mode_t LeModo(const std::string& sNome) const {
        struct stat estado {};
        return stat(Caminho(sNome).c_str(), &estado) == 0 ? estado.st_mode & 07777U : 0;
    }
    void Elo(const std::string& sAlvo, const std::string& sNome) const {
        ASSERT_EQ(symlink(sAlvo.c_str(), Caminho(sNome).c_str()), 0);
    }
};

}  // namespace

// A foreign program's flock on a file of the store, or on a log, is answered in the end and not waited for.
TEST_F(CXVAcessoTeste, TravaDeOutroProgramaNaoPrendeQuemAbre) {
    Cria("A.dat", "x");
    const auto abre = [&] {
        std::unique_ptr<IXVArquivo> pArquivo;
        return XVPlataforma::SistemaArquivos().Abre(Caminho("A.dat"), {}, pArquivo).GetCausa();
    };
    {
        const CXVDescritor alheio = XVAbreDescritor(Caminho("A.dat"), O_RDONLY, 0);
        ASSERT_EQ(flock(alheio.Get(), LOCK_EX), 0);
        EXPECT_EQ(abre(), ECausa::eViolacaoCompartilhamento);
        EXPECT_EQ(XVPlataforma::SistemaArquivos().Apaga(Caminho("A.dat")).GetCausa(),
                  ECausa::eViolacaoCompartilhamento);
    }
    EXPECT_EQ(abre(), ECausa::eNenhuma);
}

TEST_F(CXVAcessoTeste, DiretorioFechadoSoDizOQueMostra) {
    ASSERT_EQ(CriaDiretorio("fechado"), ECausa::eNenhuma);
    Cria("fechado/A.dat", "x");
    Cria("fora.dat", "y");
    Modo("", 0755);
    Modo("fechado/A.dat", 0000);
    constexpr ECausa k_negado = ECausa::eAcessoNegado;
    const struct {
        mode_t modo;
        const char* pszNome;
        EExistencia eExistencia;
        ECausa eNomeReal;
        ECausa eLeitura;
    } aCasos[] = {
        // A name that cannot be seen is neither absent nor present.
        {0000, "fechado/A.dat", EExistencia::eSemAcesso, k_negado, k_negado},
        {0000, "fechado/nada.dat", EExistencia::eSemAcesso, k_negado, k_negado},
        // The names can be seen, and whether they are files, or still there, cannot.
        {0444, "fechado/A.dat", EExistencia::eSemAcesso, k_negado, k_negado},
        {0444, "fechado/nada.dat", EExistencia::eSemAcesso, k_negado, k_negado},
        // What is asked for by its exact name can be seen, another spelling cannot.
        {0111, "fechado/A.dat", EExistencia::eArquivo, ECausa::eNenhuma, k_negado},
        {0111, "fechado/a.dat", EExistencia::eAusente, k_negado, ECausa::eArquivoNaoEncontrado},
    };
    for (const auto& [modo, pszNome, eExistencia, eNomeReal, eLeitura] : aCasos) {
        SCOPED_TRACE(std::string(pszNome) + ' ' + std::to_string(modo));
        Modo("fechado", modo);
        {
            const CXVUsuarioSemDireitos usuario;
            EXPECT_EQ(Existe(pszNome), eExistencia);
            EXPECT_EQ(BuscaNomeReal(pszNome), eNomeReal);
            EXPECT_EQ(Abre(pszNome, k_leitura), eLeitura);
            EXPECT_EQ(Abre(pszNome, k_criacao), k_negado);
            EXPECT_EQ(Substitui("fora.dat", pszNome), k_negado);
            EXPECT_EQ(Existe("fechado"), EExistencia::eDiretorio);
            EXPECT_EQ(CriaDiretorio("fechado/sub"), k_negado);
            if (modo == 0000) {
                EXPECT_EQ(Apaga(pszNome), k_negado);
                EXPECT_EQ(Lista("fechado"), k_negado);
                EXPECT_EQ(m_rSistema.SincronizaDiretorio(Caminho("fechado")).GetCausa(), k_negado);
            }
        }
        Modo("fechado", 0700);
    }
    Modo("fechado/A.dat", 0600);
    EXPECT_EQ(Conteudo("fechado/A.dat") + Conteudo("fora.dat"), "xy");
}

TEST_F(CXVAcessoTeste, OQueSeCriaEDoDonoEDoGrupo) {
    const mode_t anterior = umask(0);
    EXPECT_EQ(CriaDiretorio("x/y"), ECausa::eNenhuma);
    EXPECT_EQ(Abre("x/a.dat", k_criacao), ECausa::eNenhuma);
    EXPECT_EQ(Abre("log", k_anexacao), ECausa::eNenhuma);
    EXPECT_EQ(Marca("M"), ECausa::eNenhuma);
    umask(anterior);
    for (const char* pszDiretorio : {"x", "x/y"}) EXPECT_EQ(LeModo(pszDiretorio), 0770U);
    for (const char* pszArquivo : {"x/a.dat", "log", "M"}) EXPECT_EQ(LeModo(pszArquivo), 0660U);
    Modo("log", 0060);
    EXPECT_FALSE(m_rSistema.EhSomenteLeitura(Caminho("log"))) << "somebody may write";
}

TEST_F(CXVAcessoTeste, EloSimbolicoSoServeParaLer) {
    Cria("alvo", "alvo");
    Cria("novo", "novo");
    Elo("alvo", "elo");
    Elo("nasceria", "pendente");
    Elo("circulo", "circulo");
    for (const std::string sNome : {"elo", "pendente", "circulo"}) {
        EXPECT_EQ(Existe(sNome), EExistencia::eArquivo) << "the name is taken";
        EXPECT_EQ(BuscaNomeReal(sNome), ECausa::eNenhuma);
        for (const SAberturaArquivo& rAbertura : {k_escrita, k_criacao, k_leituraCriacao, k_anexacao})
            EXPECT_EQ(Abre(sNome, rAbertura), ECausa::eAcessoNegado) << sNome;
        EXPECT_EQ(Apaga(sNome), ECausa::eAcessoNegado) << sNome;
        EXPECT_EQ(Substitui("novo", sNome), ECausa::eAcessoNegado) << sNome;
        EXPECT_EQ(Substitui(sNome, "outro"), ECausa::eAcessoNegado) << sNome;
        EXPECT_EQ(Marca(sNome), ECausa::eAcessoNegado) << sNome;
    }
    EXPECT_EQ(Conteudo("alvo") + Conteudo("novo"), "alvonovo");
    EXPECT_EQ(Existe("nasceria"), EExistencia::eAusente);
    EXPECT_EQ(Abre("pendente", k_leitura), ECausa::eArquivoNaoEncontrado);
    EXPECT_EQ(Abre("circulo", k_leitura), ECausa::eAcessoNegado);
    EXPECT_EQ(Existe("circulo/a.dat"), EExistencia::eSemAcesso);
    EXPECT_EQ(Abre("circulo/a.dat", k_criacao), ECausa::eCaminhoInvalido);
    ASSERT_EQ(Abre("elo", k_leitura), ECausa::eNenhuma);
    EXPECT_EQ(Le(0, 4), ECausa::eNenhuma);
    EXPECT_EQ(m_sLido, "alvo");
}

TEST_F(CXVAcessoTeste, EloParaDiretorioEDiretorioEPassaAcimaDoArquivo) {
    ASSERT_EQ(CriaDiretorio("longe"), ECausa::eNenhuma);
    Elo("longe", "dados");
    EXPECT_EQ(Existe("dados"), EExistencia::eDiretorio);
    EXPECT_EQ(Lista(""), ECausa::eNenhuma);
    EXPECT_TRUE(m_listaNomes.empty()) << "directories are no files, by whatever way";
    EXPECT_EQ(CriaDiretorio("dados"), ECausa::eNenhuma);
    EXPECT_EQ(Abre("dados/a.dat", k_criacao), ECausa::eNenhuma);
    m_pArquivo.reset();
    EXPECT_EQ(Substitui("dados/a.dat", "dados/b.dat"), ECausa::eNenhuma);
    EXPECT_EQ(Conteudo("longe/b.dat"), "");
    EXPECT_EQ(Apaga("dados/b.dat"), ECausa::eNenhuma);
}

TEST_F(CXVAcessoTeste, NomesQueSoDiferemNaCaixaSaoDoisArquivos) {
    Cria("A.dat", "maiuscula");
    Cria("a.dat", "minuscula");
    for (const std::string sNome : {"A.dat", "a.dat"}) {
        EXPECT_EQ(BuscaNomeReal(sNome), ECausa::eNenhuma);
        EXPECT_EQ(m_sNomeReal, sNome) << "an exact match goes first";
    }
    EXPECT_EQ(BuscaNomeReal("a.DAT"), ECausa::eNenhuma);
    EXPECT_TRUE(m_sNomeReal == "A.dat" || m_sNomeReal == "a.dat");
    EXPECT_EQ(BuscaNomeReal("b.dat"), ECausa::eArquivoNaoEncontrado);
    EXPECT_EQ(BuscaNomeReal("nao/a.dat"), ECausa::eCaminhoInvalido);
}

// A process without standard streams whose data files took their numbers would print into them.
TEST_F(CXVAcessoTeste, ArquivoNuncaTomaONumeroDeUmFluxoPadrao) {
    Cria("a.dat", "dados");
    const pid_t iFilho = fork();
    if (iFilho == 0) {
        for (const int iFluxo : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) close(iFluxo);
        std::unique_ptr<IXVArquivo> pLeitor;
        const bool bAbertos = Abre("a.dat", k_escrita) == ECausa::eNenhuma &&
                              m_rSistema.Abre(Caminho("a.dat"), k_leitura, pLeitor).Ok() &&
                              Marca("M") == ECausa::eNenhuma;
        // The share marks and the lock moved along with the descriptor, and no child gets it.
        std::unique_ptr<IXVMarcaDiretorio> pOutra;
        bool bCerto = bAbertos && Apaga("a.dat") == ECausa::eViolacaoCompartilhamento &&
                      Marca("M", pOutra) == ECausa::eViolacaoCompartilhamento;
        for (int i = 0; i < 16; ++i) {
            const int iOpcoes = fcntl(i, F_GETFD);
            const bool bNosso = std::filesystem::exists("/proc/self/fd/" + std::to_string(i)) &&
                                std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(i))
                                    .string()
                                    .starts_with(m_diretorio.GetCaminho());
            bCerto = bCerto && (i > STDERR_FILENO ? !bNosso || iOpcoes == FD_CLOEXEC : iOpcoes == -1);
        }
        _exit(bCerto ? 0 : 1);
    }
    int iEstado = -1;
    ASSERT_EQ(waitpid(iFilho, &iEstado, 0), iFilho);
    EXPECT_TRUE(WIFEXITED(iEstado) && WEXITSTATUS(iEstado) == 0) << iEstado;
}

TEST_F(CXVAcessoTeste, ProcessoFilhoNaoHerdaNada) {
    Cria("a.dat", std::string(4096, 'x'));
    ASSERT_EQ(Abre("a.dat", k_escrita), ECausa::eNenhuma);
    std::unique_ptr<IXVJanela> pJanela;
    ASSERT_TRUE(m_pArquivo->AbreJanela(4096, pJanela).Ok());
    ASSERT_EQ(Marca("M"), ECausa::eNenhuma);
    CXVProcessoFilho filho("/bin/sh", {"-c", "ls -l /proc/$$/fd; echo fim; read nada"});
    for (std::string sLinha; sLinha != "fim"; sLinha = filho.LeLinha())
        EXPECT_EQ(sLinha.find(m_diretorio.GetCaminho()), std::string::npos) << sLinha;
    pJanela.reset();
    m_pArquivo.reset();
    m_pMarca.reset();
    EXPECT_EQ(Apaga("a.dat"), ECausa::eNenhuma) << "while the child lives";
    EXPECT_EQ(Marca("M"), ECausa::eNenhuma);
}

// On a device in memory, which has what a mapping needs, the window is one; over bytes without blocks, whose
// writing could end the process, and over none it is not.
TEST_F(CXVAcessoTeste, JanelaPassaPelaMemoriaOndeECertoQueNaoDerrubaOProcesso) {
    const std::string sCaminho =
        "/dev/shm/" + std::filesystem::path(m_diretorio.GetCaminho()).filename().string();
    const auto fnMapeado = [&] {
        std::ifstream mapas("/proc/self/maps");
        const std::string sMapas(std::istreambuf_iterator<char>(mapas), {});
        return sMapas.find(sCaminho) != std::string::npos;
    };
    // Half of the file has blocks; how much of which half is mapped.
    constexpr std::size_t k_uiMetade = 1 << 15;
    const struct {
        XVUInt64 uiOffsetDados;
        XVUInt64 uiJanela;
        bool bMapeado;
    } aCasos[] = {{0, k_uiMetade, true}, {0, 2 * k_uiMetade, false}, {k_uiMetade, k_uiMetade, false}};
    for (const auto& [uiOffsetDados, uiJanela, bMapeado] : aCasos) {
        ASSERT_TRUE(m_rSistema.Abre(sCaminho, k_criacao, m_pArquivo).Ok());
        ASSERT_TRUE(m_pArquivo->SetTamanho(2 * k_uiMetade).Ok());
        ASSERT_EQ(Grava(0, "x"), ECausa::eNenhuma);  // a hole need not be at the beginning
        ASSERT_EQ(Grava(uiOffsetDados, std::string(k_uiMetade, 'x')), ECausa::eNenhuma);
        std::unique_ptr<IXVJanela> pJanela;
        EXPECT_TRUE(m_pArquivo->AbreJanela(uiJanela, pJanela).Ok());
        EXPECT_EQ(fnMapeado(), bMapeado) << uiOffsetDados << ' ' << uiJanela;
        pJanela.reset();
        EXPECT_FALSE(fnMapeado());
        m_pArquivo.reset();
        EXPECT_TRUE(m_rSistema.Apaga(sCaminho).Ok());
    }
}

TEST_F(CXVAcessoTeste, CanosEDispositivosSaoRecusadosSemEspera) {
    ASSERT_EQ(mkfifo(Caminho("cano").c_str(), 0600), 0);
    for (const SAberturaArquivo& rAbertura : {k_leitura, k_escrita}) {
        EXPECT_EQ(Abre("cano", rAbertura), ECausa::eArquivoInvalido);
        EXPECT_EQ(m_rSistema.Abre("/dev/null", rAbertura, m_pArquivo).GetCausa(), ECausa::eArquivoInvalido);
    }
    EXPECT_EQ(Apaga("cano"), ECausa::eArquivoInvalido);
    EXPECT_EQ(Marca("cano"), ECausa::eArquivoInvalido);
    Cria("DFXXMARCA1", "sobra");
    EXPECT_EQ(Marca("DFXXMARCA1"), ECausa::eNenhuma) << "the mark of a dead process is taken over";
}

TEST_F(CXVAcessoTeste, LimiteDoProcessoEDiscoCheio) {
    ASSERT_EQ(Abre("a.dat", k_criacao), ECausa::eNenhuma);
    rlimit anterior{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &anterior), 0);
    const auto pfnAnterior = signal(SIGXFSZ, SIG_IGN);
    const rlimit apertado{1000, anterior.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &apertado), 0);
    const ECausa eGrava = Grava(0, std::string(2000, 'x'));
    const ECausa eTamanho = m_pArquivo->SetTamanho(2000).GetCausa();
    setrlimit(RLIMIT_FSIZE, &anterior);
    signal(SIGXFSZ, pfnAnterior);
    EXPECT_EQ(eGrava, ECausa::eDiscoCheio);
    EXPECT_EQ(eTamanho, ECausa::eDiscoCheio);
    EXPECT_EQ(m_pArquivo->SetTamanho(XVUInt64{1} << 62).GetCausa(), ECausa::ePosicionamentoInvalido);
}
