// Readers beside a writer on one file.
#include <atomic>
#include <thread>

#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

class ConcorrenciaBanco : public CXVCenarioBanco {};

constexpr XVUInt k_ulGravacoes = 3000;

TEST_F(ConcorrenciaBanco, LeitoresVeemRegistrosInteirosAoLadoDeUmEscritor) {
    TXVBanco<CXVFileTeste> banco("A.dat");
    const SChavesTeste chaves;
    ASSERT_EQ(banco->IncluiIndex(&chaves, 0, false, true), S_OK);
    ASSERT_EQ(Abre(banco), S_OK);
    XVUInt uiPrimeira = 0;
    ASSERT_EQ(banco->Grava(uiPrimeira, {1, 1, 1}), S_OK);
    std::atomic<bool> bFim = false;
    std::atomic<XVUInt> ulErros = 0;
    const auto leitor = [&] {
        while (!bFim) {
            const XVUInt64 uiQtd = banco->GetQtdRegistros();
            REG_TESTE reg{};
            std::vector<REG_TESTE> lista;
            std::vector<XVUInt> listaPosicao;
            bool bOk = banco->Le(static_cast<XVUInt>(uiQtd), &reg) == S_OK;
            bOk = banco->LeColecao(1, uiQtd, lista) == S_OK && bOk;
            for (const REG_TESTE& r : lista) bOk = r.uiChave == r.ulGrupo && r.ulGrupo == r.ulValor && bOk;
            bOk = banco->ExisteIndex(XVUInt64{1}, listaPosicao, 0) == S_OK && bOk;
            bOk = std::is_sorted(listaPosicao.begin(), listaPosicao.end()) && bOk;
            if (!bOk || banco->GetTamanho() < 240) ++ulErros;
        }
    };
    std::thread um(leitor);
    std::thread dois(leitor);
    for (XVUInt i = 1; i <= k_ulGravacoes; ++i) {
        XVUInt uiPosicao = i % 3 == 0 ? 1 + i % 50 : 0;
        if (uiPosicao > banco->GetQtdRegistros()) uiPosicao = 0;
        EXPECT_EQ(banco->Grava(uiPosicao, {i % 7 + 1, i % 7 + 1, i % 7 + 1}), S_OK);
    }
    bFim = true;
    um.join();
    dois.join();
    EXPECT_EQ(ulErros, 0U);
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
}

TEST_F(ConcorrenciaBanco, TextosLidosAoLadoDeDoisEscritores) {
    TXVBanco<CXVTextFile> banco("T.dat");
    ASSERT_EQ(Abre(banco), S_OK);
    std::atomic<int> iEscritores = 2;
    std::atomic<XVUInt> ulErros = 0;
    const auto escritor = [&](char c) {
        for (XVUInt i = 0; i < k_ulGravacoes / 10; ++i) {
            XVUInt uiPosicao = 0;
            const std::vector<std::string> aRegistros{std::string(i % 40, c), std::string(1, c)};
            std::string sLido;
            if (banco->GravaColecao(uiPosicao, aRegistros) != S_OK || banco->Le(uiPosicao, sLido) != S_OK ||
                sLido != aRegistros[0] || banco->Le(uiPosicao + 1, sLido) != S_OK || sLido != aRegistros[1])
                ++ulErros;
        }
        --iEscritores;
    };
    std::thread um(escritor, 'a');
    std::thread dois(escritor, 'b');
    while (iEscritores > 0) {
        std::string sLido;
        const auto uiQtd = static_cast<XVUInt>(banco->GetQtdRegistros());
        if (uiQtd > 0 && (banco->Le(uiQtd, sLido) != S_OK || sLido.size() != 1)) ++ulErros;
    }
    um.join();
    dois.join();
    EXPECT_EQ(ulErros, 0U);
    EXPECT_EQ(banco->GetQtdRegistros(), k_ulGravacoes / 10 * 4);
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
    EXPECT_EQ(LeTextos("T.dat").size(), k_ulGravacoes / 10 * 4);
}

}  // namespace
