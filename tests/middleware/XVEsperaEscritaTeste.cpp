// A write beside readers in a loop waits for the reads that are under way, not for those that come after it.
//
// Counted in reads and not in time, and judged by a quantile: a machine that gives the writer no processor
// for a while spoils many writes; readers that pass a writer pass every one. The reads are long, so that most
// of their time is spent under a lock.
#include <algorithm>
#include <atomic>
#include <thread>

#include "tests/middleware/XVCenarioLoja.h"

namespace {

constexpr std::size_t k_uiLeitores = 4;
constexpr int k_iGravacoes = 60;
// Reads at the most, of each reader and of all: readers that starve the writer let the test end.
constexpr XVUInt64 k_uiMaximoLeituras = 20000;
constexpr XVUInt64 k_uiMaximo = k_uiLeitores * k_uiMaximoLeituras;

class CXVEsperaEscritaTest : public CXVCenarioLoja {
  protected:
    using TLeitura = std::function<bool(XVUInt64 uiVez)>;

    // Reads that all readers together completed while one write lasted, for each of the writes, ascending.
    std::vector<XVUInt64> LeiturasPorGravacao(CBaseMiddleware& rLoja, const TLeitura& fnLeitura) {
        std::atomic<bool> bFim = false;
        std::atomic<XVUInt64> uiLeituras = 0;
        std::atomic<XVUInt64> uiErros = 0;
        std::atomic<std::size_t> uiLendo = 0;
        std::vector<std::thread> lista;
        for (std::size_t i = 0; i < k_uiLeitores; ++i)
            lista.emplace_back([&, i] {
                for (XVUInt64 n = 0; n < k_uiMaximoLeituras && !bFim; ++n) {
                    if (!fnLeitura(n + i)) ++uiErros;
                    ++uiLeituras;
                    if (n == 0) ++uiLendo;
                }
            });
        while (uiLendo < k_uiLeitores) std::this_thread::yield();
        std::vector<XVUInt64> listaEspera;
        for (int i = 0; i < k_iGravacoes; ++i) {
            // Readers in full swing: a run of writes would slip through one gap between them.
            const XVUInt64 uiInicio = uiLeituras + 2 * k_uiLeitores + static_cast<XVUInt64>(i % 3);
            while (uiLeituras < std::min(uiInicio, k_uiMaximo)) std::this_thread::yield();
            const XVUInt64 uiAntes = uiLeituras;
            Grava(rLoja, CXVIntegracaoTeste(static_cast<XVUInt64>(1000 + i)).Textos("{}", "m", "{}"));
            listaEspera.push_back(uiLeituras - uiAntes);
        }
        EXPECT_LT(uiLeituras, k_uiMaximo) << "the readers were done before the writer";
        bFim = true;
        for (std::thread& rThread : lista) rThread.join();
        EXPECT_EQ(uiErros, 0U);
        std::sort(listaEspera.begin(), listaEspera.end());
        return listaEspera;
    }
};

TEST_F(CXVEsperaEscritaTest, Buscas) {
    CXVBytes bytes;
    for (unsigned n = 1; n <= 150000; ++n)
        bytes.U64(n).U64(XVChaveDmc(XVDma(2024, 3, 1), n)).U32(Mercos).U32(eXVSMiddleware_Sucesso);
    m_Arquivos.CriaArquivo(
        PastaDados("CRINDEXINTEG.dat"),
        XVArquivoDoTeste({.sNome = "CRINDEXINTEG.dat", .uiVersaoArquivo = 5}, bytes.Str()));
    m_Arquivos.CriaArquivo(PastaDados("CRMIDDLEWAREVS.dat"),
                           XVArquivoDoTeste({.sNome = "CRMIDDLEWAREVS.dat", .uiVersaoArquivo = 1},
                                            CXVBytes().U16(5).Zeros(14).Str()));
    const TLoja pLoja = Abre();
    ASSERT_NE(pLoja, nullptr);
    const auto lista = LeiturasPorGravacao(
        *pLoja, [&](XVUInt64) { return XVBusca(*pLoja, {.status = {eXVSMiddleware_Cancelado}}).empty(); });
    EXPECT_LE(lista[lista.size() / 4], 2 * k_uiLeitores) << "searches pass the writer that waits";
}

TEST_F(CXVEsperaEscritaTest, LeiturasDeVariosDias) {
    const TLoja pLoja = Abre();
    const std::string sDocumento(1U << 20, 'd');
    std::vector<REG_XVDMC> listaDmc;
    for (unsigned uiDia = 11; uiDia <= 15; ++uiDia) {
        SetDia(uiDia);
        listaDmc.push_back(Grava(*pLoja, CXVIntegracaoTeste(uiDia).Textos(sDocumento, "m", "{}")));
    }
    const auto lista = LeiturasPorGravacao(
        *pLoja, [&](XVUInt64 n) { return SUCCEEDED(XVLe(*pLoja, listaDmc[n % listaDmc.size()]).hr); });
    // A write takes the locks of four groups one after the other and copies its texts between them.
    EXPECT_LE(lista[lista.size() / 4], 3 * k_uiLeitores) << "reads of other days pass the writer that waits";
}

}  // namespace
