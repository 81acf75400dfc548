// Rights, links and descriptors, as only POSIX systems have them.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include "platform/posix/XVDescritorPosix.h"
#include "tests/harness/XVProcessoFilho.h"
#include "tests/harness/posix/XVUsuarioSemDireitos.h"
#include "tests/platform/posix/XVCenarioPosix.h"

namespace {

constexpr SAberturaArquivo k_leituraCriacao{EAcessoArquivo::eLeitura, ECompartilhamentoArquivo::eNegaNada,
                                            ECriacaoArquivo::eCriaSeAusente};

class CXVAcessoTeste : public CXVCenarioPosix {
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

// A directory with one file, which is what it was however the directory was closed.
class CXVDiretorioFechadoTeste : public CXVAcessoTeste {
  protected:
    void SetUp() override {
        ASSERT_TRUE(m_rSistema.CriaDiretorio(Caminho("fechado")).Ok());
        m_diretorio.CriaArquivo("fechado/A.dat", "x");
        m_diretorio.CriaArquivo("fora.dat", "y");
        Modo("", 0755);
    }
    void TearDown() override {
        Modo("fechado", 0700);
        Modo("fechado/A.dat", 0600);
        EXPECT_EQ(Conteudo("fechado/A.dat"), "x");
        EXPECT_EQ(Conteudo("fora.dat"), "y");
    }
};

}  // namespace

TEST_F(CXVDiretorioFechadoTeste, ONomeQueNaoSePodeVerNaoEstaNemAusenteNemPresente) {
    Modo("fechado", 0000);
    const CXVUsuarioSemDireitos usuario;
    for (const std::string sNome : {"fechado/A.dat", "fechado/nada.dat"}) {
        EXPECT_EQ(m_rSistema.Existe(Caminho(sNome)), EExistencia::eSemAcesso) << sNome;
        EXPECT_EQ(BuscaNomeReal(sNome), ECausaArquivo::eAcessoNegado) << sNome;
        EXPECT_EQ(Abre(sNome, k_leitura), ECausaArquivo::eAcessoNegado) << sNome;
        EXPECT_EQ(Abre(sNome, k_criacao), ECausaArquivo::eAcessoNegado) << sNome;
        EXPECT_EQ(Apaga(sNome), ECausaArquivo::eAcessoNegado) << sNome;
        EXPECT_EQ(Substitui("fora.dat", sNome), ECausaArquivo::eAcessoNegado) << sNome;
    }
    EXPECT_EQ(m_rSistema.Existe(Caminho("fechado")), EExistencia::eDiretorio);
    EXPECT_EQ(m_rSistema.CriaDiretorio(Caminho("fechado/sub")).GetCausa(), ECausaArquivo::eAcessoNegado);
    std::vector<std::string> listaNomes;
    EXPECT_EQ(m_rSistema.Lista(Caminho("fechado"), "*", listaNomes).GetCausa(), ECausaArquivo::eAcessoNegado);
    EXPECT_EQ(m_rSistema.SincronizaDiretorio(Caminho("fechado")).GetCausa(), ECausaArquivo::eAcessoNegado);
}

// The names can be seen, and whether they are files, or still there, cannot.
TEST_F(CXVDiretorioFechadoTeste, LidoMasNaoAtravessadoNaoDizOQueTem) {
    Modo("fechado", 0444);
    const CXVUsuarioSemDireitos usuario;
    for (const std::string sNome : {"fechado/A.dat", "fechado/nada.dat"}) {
        EXPECT_EQ(m_rSistema.Existe(Caminho(sNome)), EExistencia::eSemAcesso) << sNome;
        EXPECT_EQ(BuscaNomeReal(sNome), ECausaArquivo::eAcessoNegado) << sNome;
    }
}

// What is asked for by its exact name can be seen, another spelling cannot.
TEST_F(CXVDiretorioFechadoTeste, AtravessadoMasNaoLidoMostraONomeExato) {
    Modo("fechado/A.dat", 0000);
    Modo("fechado", 0111);
    const CXVUsuarioSemDireitos usuario;
    EXPECT_EQ(BuscaNomeReal("fechado/A.dat"), ECausaArquivo::eNenhuma);
    EXPECT_EQ(m_rSistema.Existe(Caminho("fechado/A.dat")), EExistencia::eArquivo);
    EXPECT_EQ(Abre("fechado/A.dat", k_leitura), ECausaArquivo::eAcessoNegado);
    EXPECT_EQ(m_rSistema.Existe(Caminho("fechado/a.dat")), EExistencia::eAusente);
    EXPECT_EQ(BuscaNomeReal("fechado/a.dat"), ECausaArquivo::eAcessoNegado);
}

TEST_F(CXVAcessoTeste, OQueSeCriaEDoDonoEDoGrupo) {
    const mode_t anterior = umask(0);
    EXPECT_TRUE(m_rSistema.CriaDiretorio(Caminho("x/y")).Ok());
    EXPECT_EQ(Abre("x/a.dat", k_criacao), ECausaArquivo::eNenhuma);
    EXPECT_EQ(Abre("log", k_anexacao), ECausaArquivo::eNenhuma);
    EXPECT_EQ(Marca("M"), ECausaArquivo::eNenhuma);
    umask(anterior);
    EXPECT_EQ(LeModo("x"), 0770U);
    EXPECT_EQ(LeModo("x/y"), 0770U);
    EXPECT_EQ(LeModo("x/a.dat"), 0660U);
    EXPECT_EQ(LeModo("log"), 0660U);
    EXPECT_EQ(LeModo("M"), 0660U);
    Modo("log", 0060);
    EXPECT_FALSE(m_rSistema.EhSomenteLeitura(Caminho("log"))) << "somebody may write";
}

TEST_F(CXVAcessoTeste, EloSimbolicoSoServeParaLer) {
    m_diretorio.CriaArquivo("alvo", "alvo");
    m_diretorio.CriaArquivo("novo", "novo");
    Elo("alvo", "elo");
    Elo("nasceria", "pendente");
    EXPECT_EQ(m_rSistema.Existe(Caminho("pendente")), EExistencia::eArquivo) << "the name is taken";
    EXPECT_EQ(Abre("pendente", k_leitura), ECausaArquivo::eArquivoNaoEncontrado);
    for (const std::string sNome : {"elo", "pendente"}) {
        for (const SAberturaArquivo& rAbertura : {k_escrita, k_criacao, k_leituraCriacao, k_anexacao}) {
            EXPECT_EQ(Abre(sNome, rAbertura), ECausaArquivo::eAcessoNegado) << sNome;
        }
        EXPECT_EQ(Apaga(sNome), ECausaArquivo::eAcessoNegado) << sNome;
        EXPECT_EQ(Substitui("novo", sNome), ECausaArquivo::eAcessoNegado) << sNome;
        EXPECT_EQ(Substitui(sNome, "outro"), ECausaArquivo::eAcessoNegado) << sNome;
        EXPECT_EQ(Marca(sNome), ECausaArquivo::eAcessoNegado) << sNome;
    }
    EXPECT_EQ(Conteudo("alvo"), "alvo");
    EXPECT_EQ(Conteudo("novo"), "novo");
    EXPECT_EQ(m_rSistema.Existe(Caminho("nasceria")), EExistencia::eAusente);
    ASSERT_EQ(Abre("elo", k_leitura), ECausaArquivo::eNenhuma);
    std::string sLido(4, '?');
    EXPECT_TRUE(m_pArquivo->Le(0, sLido.data(), sLido.size()).Ok());
    EXPECT_EQ(sLido, "alvo");
}

TEST_F(CXVAcessoTeste, EloParaDiretorioEDiretorioEPassaAcimaDoArquivo) {
    ASSERT_TRUE(m_rSistema.CriaDiretorio(Caminho("longe")).Ok());
    Elo("longe", "dados");
    EXPECT_EQ(m_rSistema.Existe(Caminho("dados")), EExistencia::eDiretorio);
    std::vector<std::string> listaNomes;
    EXPECT_TRUE(m_rSistema.Lista(m_diretorio.GetCaminho(), "*", listaNomes).Ok());
    EXPECT_TRUE(listaNomes.empty()) << "directories are no files, by whatever way";
    EXPECT_TRUE(m_rSistema.CriaDiretorio(Caminho("dados")).Ok());
    EXPECT_EQ(Abre("dados/a.dat", k_criacao), ECausaArquivo::eNenhuma);
    m_pArquivo.reset();
    EXPECT_EQ(Substitui("dados/a.dat", "dados/b.dat"), ECausaArquivo::eNenhuma);
    EXPECT_EQ(m_diretorio.LeConteudo("longe/b.dat"), "");
    EXPECT_EQ(Apaga("dados/b.dat"), ECausaArquivo::eNenhuma);
}

TEST_F(CXVAcessoTeste, EloEmCirculoEstaPresenteENaoLevaALugarNenhum) {
    Elo("circulo", "circulo");
    EXPECT_EQ(m_rSistema.Existe(Caminho("circulo")), EExistencia::eArquivo);
    EXPECT_EQ(m_rSistema.Existe(Caminho("circulo/a.dat")), EExistencia::eSemAcesso);
    EXPECT_EQ(BuscaNomeReal("circulo"), ECausaArquivo::eNenhuma);
    EXPECT_EQ(Abre("circulo", k_leitura), ECausaArquivo::eAcessoNegado);
    EXPECT_EQ(Abre("circulo/a.dat", k_criacao), ECausaArquivo::eCaminhoInvalido);
}

TEST_F(CXVAcessoTeste, NomesQueSoDiferemNaCaixaSaoDoisArquivos) {
    m_diretorio.CriaArquivo("A.dat", "maiuscula");
    m_diretorio.CriaArquivo("a.dat", "minuscula");
    for (const std::string sNome : {"A.dat", "a.dat"}) {
        EXPECT_EQ(BuscaNomeReal(sNome), ECausaArquivo::eNenhuma);
        EXPECT_EQ(m_sNomeReal, sNome) << "an exact match goes first";
    }
    EXPECT_EQ(BuscaNomeReal("a.DAT"), ECausaArquivo::eNenhuma);
    EXPECT_TRUE(m_sNomeReal == "A.dat" || m_sNomeReal == "a.dat");
    EXPECT_EQ(BuscaNomeReal("b.dat"), ECausaArquivo::eArquivoNaoEncontrado);
    EXPECT_EQ(m_sNomeReal, "");
    EXPECT_EQ(BuscaNomeReal("nao/a.dat"), ECausaArquivo::eCaminhoInvalido);
}

// A process without standard streams whose data files took their numbers would print into them.
TEST_F(CXVAcessoTeste, ArquivoNuncaTomaONumeroDeUmFluxoPadrao) {
    m_diretorio.CriaArquivo("a.dat", "dados");
    const pid_t iFilho = fork();
    if (iFilho == 0) {
        for (const int iFluxo : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            close(iFluxo);
        }
        std::unique_ptr<IXVArquivo> pLeitor;
        const bool bAbertos = Abre("a.dat", k_escrita) == ECausaArquivo::eNenhuma &&
                              m_rSistema.Abre(Caminho("a.dat"), k_leitura, pLeitor).Ok() &&
                              Marca("M") == ECausaArquivo::eNenhuma;
        bool bLivres = true;
        for (const int iFluxo : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            bLivres = bLivres && write(iFluxo, "erro", 4) == -1 && errno == EBADF;
        }
        // The share marks and the lock moved along with the descriptor.
        std::unique_ptr<IXVMarcaDiretorio> pOutra;
        const bool bMarcados = Apaga("a.dat") == ECausaArquivo::eViolacaoCompartilhamento &&
                               !m_rSistema.MarcaDiretorio(m_diretorio.GetCaminho(), "M", pOutra).Ok();
        bool bProprios = true;
        for (int iDescritor = STDERR_FILENO + 1; iDescritor < 64; ++iDescritor) {
            char szAlvo[4096];
            const std::string sEntrada = "/proc/self/fd/" + std::to_string(iDescritor);
            const ssize_t iTamanho = readlink(sEntrada.c_str(), szAlvo, sizeof(szAlvo));
            if (iTamanho > 0 && std::string_view(szAlvo, static_cast<std::size_t>(iTamanho))
                                    .starts_with(m_diretorio.GetCaminho())) {
                bProprios = bProprios && (fcntl(iDescritor, F_GETFD) & FD_CLOEXEC) != 0;
            }
        }
        _exit((bAbertos ? 0 : 1) + (bLivres ? 0 : 2) + (bMarcados ? 0 : 4) + (bProprios ? 0 : 8));
    }
    int iEstado = -1;
    ASSERT_EQ(waitpid(iFilho, &iEstado, 0), iFilho);
    EXPECT_TRUE(WIFEXITED(iEstado) && WEXITSTATUS(iEstado) == 0) << iEstado;
    EXPECT_EQ(m_diretorio.LeConteudo("a.dat"), "dados");
}

TEST_F(CXVAcessoTeste, ProcessoFilhoNaoHerdaNada) {
    m_diretorio.CriaArquivo("a.dat", std::string(4096, 'x'));
    ASSERT_EQ(Abre("a.dat", k_escrita), ECausaArquivo::eNenhuma);
    std::unique_ptr<IXVJanela> pJanela;
    ASSERT_TRUE(m_pArquivo->AbreJanela(4096, pJanela).Ok());
    ASSERT_EQ(Marca("M"), ECausaArquivo::eNenhuma);
    CXVProcessoFilho filho(XVProgramaVizinho("xv_filho_plataforma"), {"herda", m_diretorio.GetCaminho()});
    EXPECT_EQ(filho.LeLinha(), "0") << "descriptors in the directory";
    pJanela.reset();
    m_pArquivo.reset();
    m_pMarca.reset();
    EXPECT_EQ(Apaga("a.dat"), ECausaArquivo::eNenhuma) << "while the child lives";
    EXPECT_EQ(Marca("M"), ECausaArquivo::eNenhuma);
    filho.FechaEntrada();
    EXPECT_EQ(filho.EsperaFim(), 0);
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
    struct SCaso {
        XVUInt64 uiOffsetDados;
        XVUInt64 uiJanela;
        bool bMapeado;
    };
    constexpr std::size_t k_uiMetade = 1 << 15;
    for (const SCaso& rCaso : {SCaso{0, k_uiMetade, true}, SCaso{0, 2 * k_uiMetade, false},
                               SCaso{k_uiMetade, k_uiMetade, false}}) {
        ASSERT_TRUE(m_rSistema.Abre(sCaminho, k_criacao, m_pArquivo).Ok());
        ASSERT_TRUE(m_pArquivo->SetTamanho(2 * k_uiMetade).Ok());
        const std::string sBytes(k_uiMetade, 'x');
        ASSERT_TRUE(m_pArquivo->Grava(rCaso.uiOffsetDados, sBytes.data(), sBytes.size()).Ok());
        std::unique_ptr<IXVJanela> pJanela;
        EXPECT_TRUE(m_pArquivo->AbreJanela(rCaso.uiJanela, pJanela).Ok());
        EXPECT_EQ(fnMapeado(), rCaso.bMapeado) << rCaso.uiOffsetDados << ' ' << rCaso.uiJanela;
        pJanela.reset();
        EXPECT_FALSE(fnMapeado());
        m_pArquivo.reset();
        EXPECT_TRUE(m_rSistema.Apaga(sCaminho).Ok());
    }
}
