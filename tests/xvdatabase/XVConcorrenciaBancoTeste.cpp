// Which locks a write holds, and readers beside writers on one file. That a reader takes its lock, and that
// texts reach memory under one, only the thread sanitizer is sure to see (scripts/sanitize thread).
#include <atomic>
#include <functional>
#include <mutex>
#include <shared_mutex>
#include <thread>

#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

class ConcorrenciaBanco : public CXVCenarioBanco {};

// A file whose locks can be asked about, by a thread that holds none of them.
template <class TArquivo>
class TXVFileVigiado : public TArquivo {
  public:
    using TArquivo::TArquivo;
    bool EstaTravado() {
        bool bTravado = false;
        std::thread([&] {
            const std::shared_lock leitura(this->GetLock(), std::try_to_lock);
            const std::unique_lock gravacao(this->GetMutexGravacao(), std::try_to_lock);
            bTravado = !leitura.owns_lock() && !gravacao.owns_lock();
        }).join();
        return bTravado;
    }
};

// Asked for the keys of a record, which a write does while it is prepared and while memory changes.
struct SChavesVigia {
    XVUInt64 GetChaveIndex(const REG_TESTE& reg, XVUInt) const {
        if (fnAoPerguntar) fnAoPerguntar();
        return reg.uiChave;
    }
    std::function<void()> fnAoPerguntar;
};

TEST_F(ConcorrenciaBanco, GravacaoPreparaEPublicaSozinha) {
    TXVBanco<TXVFileVigiado<CXVFileTeste>> banco("A.dat");
    SChavesVigia chaves;
    ASSERT_EQ(banco->IncluiIndex(&chaves, 0), S_OK);
    ASSERT_EQ(Abre(banco), S_OK);
    XVUInt uiPosicao = 0;
    ASSERT_EQ(banco->Grava(uiPosicao, {1, 2, 3}), S_OK);
    std::string sTravas;
    chaves.fnAoPerguntar = [&] { sTravas += banco->EstaTravado() ? 'x' : '-'; };
    ASSERT_EQ(banco->Grava(uiPosicao, {4, 5, 6}), S_OK);
    EXPECT_EQ(sTravas, "xx") << "the new key while it is prepared, the old one while memory changes";
    chaves.fnAoPerguntar = nullptr;
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);

    // The first text asks whether the file is there.
    TXVBanco<TXVFileVigiado<CXVTextFile>> textos("T.dat");
    ASSERT_EQ(Abre(textos), S_OK);
    sTravas.clear();
    m_Falhas.SetFiltro([&](const std::string& s) {
        if (sTravas.empty() && s.ends_with("T.dat")) sTravas += textos->EstaTravado() ? 'x' : '-';
        return false;
    });
    uiPosicao = 0;
    ASSERT_EQ(textos->Grava(uiPosicao, "t"), S_OK);
    EXPECT_EQ(sTravas, "x");
    m_Falhas.SetFiltro({});
    ASSERT_EQ(textos.xvDB.Finaliza(), S_OK);
}

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
