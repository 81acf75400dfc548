// Indexes: declaration, what a write may do to them, and the same answers whichever way they were built.
#include <map>
#include <random>

#include "core/xvdatabase/XVIndice.h"
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

class IndiceArquivo : public CXVCenarioBanco {
  protected:
    using L = std::vector<XVUInt>;
    SChavesTeste m_Chaves;
};

TEST_F(IndiceArquivo, ColunasSaoDeclaradasEmOrdem) {
    TXVBanco<CXVFileTeste> banco("A.dat");
    EXPECT_EQ(banco->IncluiIndex(&m_Chaves, 1), E_XVCR_COLUNA_INDEXACAO_INVALIDA);
    EXPECT_EQ(banco->IncluiIndex(&m_Chaves, 0), S_OK);
    EXPECT_EQ(banco->IncluiIndex(&m_Chaves, 0), E_XVCR_COLUNA_INDEXACAO_INVALIDA);
    L lista{1};
    XVUInt uiPosicao = 7;
    EXPECT_EQ(banco->ExisteIndex(XVUInt64{1}, lista, 1), E_XVCR_COLUNA_INDEXACAO_INVALIDA);
    EXPECT_EQ(lista, L{});
    EXPECT_EQ(banco->ExisteIndex(XVUInt64{1}, uiPosicao, 1), E_XVCR_COLUNA_INDEXACAO_INVALIDA);
    EXPECT_EQ(uiPosicao, 0U);
}

TEST_F(IndiceArquivo, RecusasNaoGravamNada) {
    TXVBanco<CXVFileTeste> banco("A.dat");
    ASSERT_EQ(banco->IncluiIndex(&m_Chaves, 0), S_OK);
    ASSERT_EQ(banco->IncluiIndex(&m_Chaves, 1, true, true), S_OK) << "with zero keys and repeats";
    ASSERT_EQ(Abre(banco), S_OK);
    XVUInt uiPosicao = 0;
    EXPECT_EQ(banco->Grava(uiPosicao, {0, 0, 0}), E_XVCR_INDEXACAO_COM_POSICAO_ZERO);
    EXPECT_FALSE(Existe("A.dat")) << "a refused first write creates no file";
    const std::vector<REG_TESTE> aRegistros{{1, 0, 0}, {2, 0, 0}, {3, 7, 0}, {4, 7, 0}, {5, 7, 0}, {6, 8, 0}};
    ASSERT_EQ(banco->GravaColecao(uiPosicao, aRegistros), S_OK);
    const std::string sAntes = Le("A.dat");
    const XVUInt64 uiDormidas = m_Relogio.GetQuantidadeDormidas();

    const auto recusa = [&](XVUInt uiInicial, const std::vector<REG_TESTE>& lista, HRESULT hr) {
        XVUInt uiAqui = uiInicial;
        const CXVArquivosRecusados recusados;
        EXPECT_EQ(banco->GravaColecao(uiAqui, lista), hr);
        EXPECT_EQ(recusados.GetPath(hr), "") << "the write is refused, not the file";
        EXPECT_EQ(uiAqui, uiInicial);
        EXPECT_EQ(Le("A.dat"), sAntes);
    };
    recusa(0, {{9, 0, 0}, {0, 0, 0}}, E_XVCR_INDEXACAO_COM_POSICAO_ZERO);
    recusa(0, {{3, 0, 0}}, E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA);
    recusa(0, {{9, 0, 0}, {1, 0, 0}}, E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA);
    recusa(0, {{9, 0, 0}, {8, 0, 0}, {9, 0, 0}}, E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA);
    recusa(6, {{5, 0, 0}}, E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA);
    recusa(5, {{6, 0, 0}, {5, 0, 0}}, E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA);
    EXPECT_EQ(m_Relogio.GetQuantidadeDormidas(), uiDormidas) << "a refusal is not tried again";
    uiPosicao = 5;
    EXPECT_EQ(banco->Grava(uiPosicao, {5, 8, 1}), S_OK) << "a record keeps its own key";
    const std::pair<XVUInt64, L> aGrupos[] = {{7, {3, 4}}, {8, {5, 6}}, {0, {}}};  // ascending; zero left out
    for (const auto& [uiGrupo, rEsperadas] : aGrupos) {
        L lista{99};
        EXPECT_EQ(banco->ExisteIndex(uiGrupo, lista, 1), S_OK);
        EXPECT_EQ(lista, rEsperadas) << uiGrupo;
    }
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
}

// The map alone, with many keys in few slots, against the standard one.
TEST(Indice, ComoUmMultimapaOrdenado) {
    std::mt19937_64 gerador(7);
    CXVIndice indice;
    std::multimap<XVUInt64, XVUInt> modelo;
    std::map<XVUInt, XVUInt64> mapaChaves;  // by position
    EXPECT_EQ(indice.GetPrimeira(1), 0U);
    indice.Remove(1, 1);
    for (int i = 0; i < 60'000; ++i) {
        const auto uiPosicao = static_cast<XVUInt>(1 + gerador() % 700);
        const XVUInt64 uiChave = (1 + gerador() % 90) << (gerador() % 3 * 20);
        if (const auto it = mapaChaves.find(uiPosicao); it != mapaChaves.end()) {
            indice.Remove(uiChave == it->second ? uiChave + 1 : uiChave, uiPosicao);  // not held: nothing
            indice.Remove(it->second, uiPosicao);
            auto [itDe, itAte] = modelo.equal_range(it->second);
            while (itDe->second != uiPosicao) ++itDe;
            modelo.erase(itDe);
            mapaChaves.erase(it);
        } else {
            indice.Reserva(1, uiPosicao);
            indice.Inclui(uiChave, uiPosicao);
            modelo.emplace(uiChave, uiPosicao);
            mapaChaves[uiPosicao] = uiChave;
        }
        const auto [itDe, itAte] = modelo.equal_range(uiChave);
        std::vector<XVUInt> aEsperadas;
        for (auto it = itDe; it != itAte; ++it) aEsperadas.push_back(it->second);
        std::sort(aEsperadas.begin(), aEsperadas.end());
        std::vector<XVUInt> aObtidas;
        for (XVUInt ui = indice.GetPrimeira(uiChave); ui != 0; ui = indice.GetProxima(ui))
            aObtidas.push_back(ui);
        ASSERT_EQ(aObtidas, aEsperadas) << "step " << i;
    }
}

}  // namespace
