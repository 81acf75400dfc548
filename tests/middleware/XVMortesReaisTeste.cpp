// A real process that runs a random script on a store on a real directory is killed at moments that nobody
// chose, again and again. After each death the store opens by itself and shows what the script had done when
// it last told, or that and the operation after it, whole.
//
// XV_MORTES: number of kills (50); XV_MORTES_SEMENTE: seed of the run (3). The seed fixes what the writers
// do and about when they are killed; the very instant is the machine's.
#include <atomic>
#include <set>

#include "platform/XVPlataforma.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVProcessoFilho.h"
#include "tests/middleware/XVMaquinaMorte.h"

namespace {

namespace fs = std::filesystem;

// One store and the writers that die on it.
class CVidas {
  public:
    CVidas(XVUInt64 uiSemente, XVUInt ulDurabilidade)
        : m_sorteio(uiSemente), m_ulDurabilidade(ulDurabilidade) {}

    void MataUm() {
        const XVUInt64 uiRoteiro = m_sorteio();
        const auto disco = Disco();
        const unsigned uiDitos = MataDepoisDe(m_sorteio() % 24, {std::to_string(uiRoteiro)});
        Preve(disco, uiRoteiro, uiDitos);
        if (uiDitos != 0 && m_sorteio() % 4 == 0) Confere(true);
        // Dies while it opens, or while it closes what it has just opened.
        for (auto i = m_sorteio() % 3; i > 0; --i) MataDepoisDe(0, {std::to_string(uiRoteiro), "0"});
        Confere(false);
    }
    // Of those killed: how many had told a step or the opening, and had more to do.
    unsigned GetNoMeio() const { return m_uiNoMeio; }

  private:
    fs::path Pasta() const { return fs::path(m_diretorio.Junta("MATRIZ")) / "DF"; }
    std::map<std::string, std::string> Disco() const {
        std::map<std::string, std::string> disco;
        if (!fs::exists(Pasta())) return disco;
        for (const auto& rEntrada : fs::directory_iterator(Pasta())) {
            const std::string sNome = rEntrada.path().filename().string();
            disco[sNome] = m_diretorio.LeConteudo("MATRIZ/DF/" + sNome).value_or("");
        }
        return disco;
    }

    // How many lines the writer had told when it died.
    unsigned MataDepoisDe(std::size_t uiLinhas, const std::vector<std::string>& rRoteiro) {
        std::vector<std::string> argumentos{m_diretorio.GetCaminho(), std::to_string(m_ulDurabilidade)};
        argumentos.insert(argumentos.end(), rRoteiro.begin(), rRoteiro.end());
        CXVProcessoFilho filho(XVProgramaVizinho("xv_grava_ate_morrer"), argumentos);
        unsigned uiDitos = 0;
        std::string sLinha = "inicio";
        const auto le = [&] {
            sLinha = filho.LeLinha();
            EXPECT_NE(sLinha, "falha") << "without any death";
            if (sLinha == "aberta" || sLinha == "feito") ++uiDitos;
        };
        for (std::size_t i = 0; i < uiLinhas && !sLinha.empty(); ++i) le();
        Demora();
        filho.Mata();
        while (!sLinha.empty()) le();  // what it had said before it died
        return uiDitos;
    }

    // A short time that differs from kill to kill: between nothing and some milliseconds of one processor.
    void Demora() {
        std::atomic<XVUInt64> uiVoltas = 0;
        for (const XVUInt64 uiFim = m_sorteio() >> (44 + m_sorteio() % 12); uiVoltas < uiFim;) ++uiVoltas;
    }

    // What the store may show: the same script on a copy in memory, up to the last step that was told of, and
    // one further.
    void Preve(const std::map<std::string, std::string>& rDisco, XVUInt64 uiRoteiro, unsigned uiDitos) {
        CXVSistemaArquivosMemoria arquivos;
        for (const auto& [sNome, sBytes] : rDisco) arquivos.CriaArquivo("/copia/MATRIZ/DF/" + sNome, sBytes);
        const CXVGuardaSistemaArquivos guarda(arquivos);
        CXVMaquinaMorte maquina("/copia");
        CXVRoteiroAleatorio roteiro = maquina.Roteiro(uiRoteiro);
        ASSERT_TRUE(roteiro.Abre());
        for (unsigned ui = 1; ui < uiDitos; ++ui) ASSERT_TRUE(roteiro.Passo());
        m_antes = m_depois = roteiro.Retrata();
        if (uiDitos == 0 || uiDitos > roteiro.GetQuantidade()) return;
        ASSERT_TRUE(roteiro.Passo());
        m_depois = roteiro.Retrata();
        ++m_uiNoMeio;
    }

    void Confere(bool bSomenteLeitura) {
        const CXVMaquinaMorte maquina(m_diretorio.GetCaminho(), m_ulDurabilidade);
        CBaseMiddleware loja;
        ASSERT_EQ(XVInicializa(loja, bSomenteLeitura), S_OK)
            << (bSomenteLeitura ? "a viewer" : "needs a person");
        const TRetratoLoja retrato = XVRetrataLoja(loja);
        EXPECT_TRUE(retrato == m_antes || retrato == m_depois)
            << (bSomenteLeitura ? "a viewer: " : "") << "neither before\n"
            << XVDiferenca(m_antes, retrato) << "nor after\n"
            << XVDiferenca(m_depois, retrato);
        ASSERT_EQ(loja.Finaliza(), S_OK);
        if (bSomenteLeitura) return;
        for (const auto& [sNome, sBytes] : Disco())
            EXPECT_TRUE(sNome.ends_with(".dat") || sNome.ends_with(".log")) << sNome << " was left behind";
    }

    const CXVDiretorioTeste m_diretorio;
    std::mt19937_64 m_sorteio;
    XVUInt m_ulDurabilidade;
    TRetratoLoja m_antes, m_depois;
    unsigned m_uiNoMeio = 0;
};

TEST(MortesReais, SoOVelhoOuONovoEOQueFoiConfirmadoEsta) {
    constexpr XVUInt64 k_uiPorLoja = 12;
    const XVUInt64 uiMortes = XVDoAmbiente("XV_MORTES", 50);
    const XVUInt64 uiSemente = XVDoAmbiente("XV_MORTES_SEMENTE", 3);
    std::optional<CVidas> vidas;
    XVUInt64 uiNoMeio = 0;
    for (XVUInt64 i = 0; i < uiMortes; ++i) {
        const XVUInt64 uiLoja = i / k_uiPorLoja;
        if (i % k_uiPorLoja == 0)
            vidas.emplace(uiSemente * 1000003 + uiLoja, static_cast<XVUInt>(uiLoja % 2));
        const unsigned uiAntes = vidas->GetNoMeio();
        vidas->MataUm();
        uiNoMeio += vidas->GetNoMeio() - uiAntes;
        ASSERT_FALSE(HasFailure()) << "kill " << i << " of seed " << uiSemente;
    }
    RecordProperty("inside", static_cast<int>(uiNoMeio));
    EXPECT_TRUE(uiMortes < 20 || uiNoMeio > uiMortes / 10)
        << "every writer had done all, or nothing, before it died";
}

// A process that dies between placing a mark and lifting it may leave the mark's file; the next writer takes
// away each that nobody holds, and no other. A viewer changes nothing.
TEST(MortesReais, MarcasQueNinguemSeguraSaoRetiradasPeloProximoEscritor) {
    const CXVDiretorioTeste diretorio;
    const CXVMaquinaMorte maquina(diretorio.GetCaminho());
    const fs::path pasta = fs::path(diretorio.Junta("MATRIZ")) / "DF";
    const auto abreEFecha = [](bool bSomenteLeitura) {
        CBaseMiddleware loja;
        EXPECT_EQ(XVInicializa(loja, bSomenteLeitura), S_OK);
        EXPECT_EQ(loja.Finaliza(), S_OK);
    };
    const auto marcas = [&pasta] {
        std::set<std::string> nomes;
        for (const auto& rEntrada : fs::directory_iterator(pasta))
            if (rEntrada.path().extension() != ".dat") nomes.insert(rEntrada.path().filename().string());
        return nomes;
    };
    abreEFecha(false);
    const std::set<std::string> sobras{"DFXXMARCA1", "DFXXMARCA2", "loggeral"};
    for (const std::string& sNome : sobras) diretorio.CriaArquivo("MATRIZ/DF/" + sNome, "");
    abreEFecha(true);
    EXPECT_EQ(marcas(), sobras);
    std::unique_ptr<IXVMarcaDiretorio> pSegura;
    ASSERT_TRUE(XVPlataforma::SistemaArquivos().MarcaDiretorio(pasta.string(), "DFXXMARCA2", pSegura).Ok());
    abreEFecha(false);
    EXPECT_EQ(marcas(), std::set<std::string>{"DFXXMARCA2"});
    pSegura.reset();
    EXPECT_EQ(marcas(), std::set<std::string>{});
    diretorio.CriaArquivo("MATRIZ/DF/DFXXMARCA2", "");
    abreEFecha(false);
    EXPECT_EQ(marcas(), std::set<std::string>{}) << "this one, too, when nobody holds it";
}

}  // namespace
