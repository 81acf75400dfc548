// Several processes and threads append to one log, and several threads ask for all that a record needs.
#include <gtest/gtest.h>

#include <set>

#include "platform/XVPlataforma.h"
#include "support/trace/XVCheck.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVEmThreads.h"
#include "tests/harness/XVProcessoFilho.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/support/XVBancadaTrace.h"

namespace {

constexpr int k_iThreads = 8;
constexpr int k_iLinhas = 25;

}  // namespace

TEST(Concorrencia, NenhumaLinhaCortadaNenhumaPerdidaUmCabecalho) {
    constexpr int k_iProcessos = 4;
    const CXVDiretorioTeste diretorio;
    std::vector<std::unique_ptr<CXVProcessoFilho>> listaProcessos;
    for (int i = 0; i < k_iProcessos; ++i)
        listaProcessos.push_back(std::make_unique<CXVProcessoFilho>(
            XVProgramaVizinho("XV_Escreve_Trace"),
            std::vector{diretorio.GetCaminho(), "p" + std::to_string(i), std::to_string(k_iThreads),
                        std::to_string(k_iLinhas)}));
    for (const auto& pProcesso : listaProcessos) {
        EXPECT_EQ(pProcesso->LeLinha(), "0") << "records were lost";
        EXPECT_EQ(pProcesso->EsperaFim(), 0);
    }
    // A test that runs across the end of a month finds two logs.
    std::vector<std::string> listaLogs;
    ASSERT_TRUE(XVPlataforma::SistemaArquivosNativo()
                    .Lista(diretorio.GetCaminho(), "XVProfilerErros_Pgms_*.log", listaLogs)
                    .Ok());
    std::size_t uiLinhas = 0;
    std::set<std::string> expressoes;
    for (const std::string& sLog : listaLogs) {
        const TLinhas linhas = CXVBancadaTrace::SeparaColunas(*diretorio.LeConteudo(sLog));
        ASSERT_FALSE(linhas.empty());
        EXPECT_EQ(linhas[0][0], "Data");
        for (std::size_t i = 1; i < linhas.size(); ++i) {
            ASSERT_EQ(linhas[i].size(), 39U);
            EXPECT_NE(linhas[i][0], "Data");
            EXPECT_TRUE(linhas[i][2].starts_with("xv_escreve_trace")) << "the program in small letters";
            EXPECT_EQ(linhas[i][16], "tests/support/XVEscreveTrace.cpp");
            expressoes.insert(linhas[i][29]);
        }
        uiLinhas += linhas.size() - 1;
    }
    EXPECT_EQ(uiLinhas, std::size_t{k_iProcessos * k_iThreads * k_iLinhas});
    EXPECT_EQ(expressoes.size(), uiLinhas) << "each record stands once";
}

namespace {

// The thread that has just done something with a file lets the others try.
struct SCedeDepois {
    SCedeDepois() = default;
    ~SCedeDepois() {
        for (int i = 0; i < 20; ++i) std::this_thread::yield();
    }
    SCedeDepois(const SCedeDepois&) = delete;
    SCedeDepois& operator=(const SCedeDepois&) = delete;
};

}  // namespace

// The thread sanitizer watches this one. Threads of one process wait for each other: each record opens its
// file once, and none is lost.
TEST(Concorrencia, ThreadsDeUmProcessoNaoSeExcluemDoArquivo) {
    CXVBancadaTrace bancada;
    TXVSistemaArquivosEnvolto<TXVVigiaGuarda<SCedeDepois>> lento(bancada.m_sistema);
    CXVSistemaArquivosFalhas contador(lento);
    contador.SetFiltro([](const std::string& s) { return s.ends_with(".log"); });
    const CXVGuardaSistemaArquivos guarda(contador);
    const XVUInt64 uiPerdidos = XVProfiler::GetLinhasPerdidas();
    XVEmThreads(k_iThreads, [&](unsigned iThread) {
        for (int i = 0; i < k_iLinhas; ++i) {
            CheckHr(XVHResult(0x81080000U + static_cast<XVUInt>(i)), "x", "F", "f", 1, nullptr);
            if (iThread == 0) XVProfiler::RecarregaConfiguracao();
        }
    });
    EXPECT_EQ(bancada.LeLog(k_pszLogPgms).size(), std::size_t{k_iThreads * k_iLinhas + 1});
    EXPECT_EQ(contador.GetQuantidade(EOperacaoArquivo::eAbre), std::size_t{k_iThreads * k_iLinhas});
    EXPECT_EQ(XVProfiler::GetLinhasPerdidas(), uiPerdidos);
}
