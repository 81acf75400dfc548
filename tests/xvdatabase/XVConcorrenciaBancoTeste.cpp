// Which locks a write holds. That readers take theirs beside writers, the thread sanitizer sees in the
// threads of the model (scripts/sanitize thread).
#include <shared_mutex>

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
    EXPECT_EQ(sTravas, "xxx") << "the new key prepared, the old one and its place while memory changes";
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

}  // namespace
