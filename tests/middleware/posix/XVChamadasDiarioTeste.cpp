// What the operation journal asks of the operating system for each recording: nothing where nothing is
// flushed, one flush before the first file where it is.
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <map>
#include <optional>
#include <set>

#include "core/xvdatabase/XVDiarioFormato.h"
#include "platform/XVPlataforma.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/middleware/XVMaquinaMorte.h"
#include "tests/platform/posix/XVChamadas.h"

namespace {

// A store on a real disk with the files of the day in place.
class CXVChamadasDiario : public testing::Test {
  protected:
    static constexpr std::size_t k_uiArquivos = 5;  // index, record and three texts: payload and header each

    TLoja Abre(XVUInt ulDurabilidade) {
        m_maquina.emplace(m_diretorio.GetCaminho(), ulDurabilidade);
        auto pLoja = std::make_unique<CBaseMiddleware>();
        EXPECT_EQ(pLoja->Inicializa(&m_dono), S_OK);
        Grava(*pLoja, 1);
        struct stat estado {};
        EXPECT_EQ(stat(m_diretorio.Junta(std::string("MATRIZ/DF/") + k_pszNomeDiario).c_str(), &estado), 0);
        m_uiDiario = estado.st_ino;
        return pLoja;
    }

    static void Grava(CBaseMiddleware& rLoja, std::size_t uiVezes) {
        CXVIntegracaoTeste integracao(77, Mercos, eXVSMiddleware_Enviado);
        integracao.Textos(std::string(1500, 'j'), std::string(80, 'm'), std::string(600, 'r'));
        for (std::size_t i = 0; i < uiVezes; ++i) {
            REG_XVDMC regDmc;
            ASSERT_EQ(rLoja.GravaIntegracao(&regDmc, integracao.Ptr()), S_OK);
        }
    }

    CXVDiretorioTeste m_diretorio;
    std::optional<CXVMaquinaMorte> m_maquina;
    CXVDonoFixo m_dono{"MATRIZ"};
    ino_t m_uiDiario = 0;
};

}  // namespace

TEST_F(CXVChamadasDiario, SemDescargaODiarioNaoFazChamadaNenhuma) {
    const TLoja pLoja = Abre(0);
    Grava(*pLoja, 200);                     // every header is written through its window by now
    constexpr std::size_t k_uiVezes = 300;  // more than the ring holds
    CXVChamadas chamadas;
    Grava(*pLoja, k_uiVezes);
    EXPECT_EQ(chamadas.Conta(EChamada::ePwrite), k_uiVezes * k_uiArquivos) << "the payloads";
    EXPECT_EQ(chamadas.Conta(EChamada::eWrite), k_uiVezes) << "the general log";
    EXPECT_EQ(chamadas.Filtra({EChamada::eOpen, EChamada::ePread, EChamada::eFtruncate, EChamada::eDescarrega,
                               EChamada::eFlock, EChamada::eRename, EChamada::eReaddir, EChamada::eClose,
                               EChamada::eNanosleep}),
              std::vector<SChamada>{});
    for (const SChamada& rChamada : chamadas.Filtra({EChamada::ePwrite}))
        ASSERT_NE(rChamada.uiArquivo, m_uiDiario);
}

// A file with a window on its header is made shorter like any other, and its header follows.
TEST_F(CXVChamadasDiario, DiscoCheioDevolveOComprimentoTambemAoArquivoComJanela) {
    const TLoja pLoja = Abre(0);
    Grava(*pLoja, 200);
    const auto tamanhos = [this] {
        std::map<std::string, std::uintmax_t> mapa;
        for (const auto& r : std::filesystem::directory_iterator(m_diretorio.Junta("MATRIZ/DF")))
            if (r.path().extension() == ".dat") mapa[r.path().filename().string()] = r.file_size();
        return mapa;
    };
    const auto antes = tamanhos();
    CXVIntegracaoTeste integracao(77, Mercos, eXVSMiddleware_Enviado);
    integracao.Textos("j", "m", std::string(400000, 'r'));
    REG_XVDMC regDmc;
    rlimit anterior{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &anterior), 0);
    const auto pfnAnterior = signal(SIGXFSZ, SIG_IGN);
    const rlimit apertado{400000, anterior.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &apertado), 0);
    const HRESULT hr = pLoja->GravaIntegracao(&regDmc, integracao.Ptr());
    setrlimit(RLIMIT_FSIZE, &anterior);
    signal(SIGXFSZ, pfnAnterior);
    EXPECT_EQ(hr, eDiskFull);
    EXPECT_EQ(tamanhos(), antes);
    EXPECT_EQ(pLoja->GravaIntegracao(&regDmc, integracao.Ptr()), S_OK);
    EXPECT_EQ(regDmc.GetPonteiro(), 202U) << "nothing is left of the one that failed";
}

// For each: entry, flush, number in progress, five files, number of the last one. Once the ring is full the
// files are flushed, all of them and once, before the place of their entries is used again.
TEST_F(CXVChamadasDiario, ComDescargaODiarioChegaAoDispositivoAntesDosArquivosEElesAntesDeSeuLugarNoAnel) {
    const TLoja pLoja = Abre(1);
    const std::string sEsperada = "jSj" + std::string(k_uiArquivos * 2, 'a') + "j";
    std::size_t uiVolta = 0;
    for (std::size_t i = 0; i < 500 && uiVolta == 0; ++i) {
        CXVChamadas chamadas;
        Grava(*pLoja, 1);
        std::string sFeita;
        std::set<ino_t> descarregados;
        for (const SChamada& rChamada : chamadas.Filtra({EChamada::ePwrite, EChamada::eDescarrega})) {
            const bool bDiario = rChamada.uiArquivo == m_uiDiario;
            const bool bDescarga = rChamada.eChamada == EChamada::eDescarrega;
            sFeita += bDiario ? (bDescarga ? 'S' : 'j') : (bDescarga ? 's' : 'a');
            if (bDescarga) descarregados.insert(rChamada.uiArquivo);
        }
        if (sFeita == sEsperada) continue;
        uiVolta = i;
        // Five files and their directory, then how far back entries are needed, then the entry.
        const auto uiPrimeira = sFeita.find('s');
        EXPECT_EQ(sFeita.substr(std::min(uiPrimeira, sFeita.size())),
                  std::string(k_uiArquivos + 1, 's') + "jS" + sEsperada);
        EXPECT_EQ(descarregados.size(), k_uiArquivos + 2) << "the journal, too";
    }
    EXPECT_GT(uiVolta, 100U) << "the ring holds some two hundred";
}
