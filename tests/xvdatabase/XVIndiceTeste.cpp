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
    L listaPedida;  // from here on the table is there, and follows the changes
    EXPECT_EQ(banco->ExisteIndex(XVUInt64{7}, listaPedida, 1), S_OK);
    EXPECT_EQ(listaPedida, (L{3, 4, 5}));
    for (const XVUInt ulGrupo : {8U, 7U, 8U})
        EXPECT_EQ(banco->Grava(uiPosicao, {5, ulGrupo, 1}), S_OK) << "a record keeps its own key";
    const std::pair<XVUInt64, L> aGrupos[] = {{7, {3, 4}}, {8, {5, 6}}, {0, {}}};  // ascending; zero left out
    for (const auto& [uiGrupo, rEsperadas] : aGrupos) {
        L lista{99};
        EXPECT_EQ(banco->ExisteIndex(uiGrupo, lista, 1), S_OK);
        EXPECT_EQ(lista, rEsperadas) << uiGrupo;
    }
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
}

// Repeats and zeros allowed: there is nothing to check before somebody asks.
TEST_F(IndiceArquivo, PedidoPelaPrimeiraVezEnquantoUmaGravacaoEspera) {
    TXVBanco<CXVFileTeste> banco("A.dat");
    ASSERT_EQ(banco->IncluiIndex(&m_Chaves, 0, true, true), S_OK);
    ASSERT_EQ(Abre(banco), S_OK);
    CXVOperacao operacao(&banco.xvDB);
    std::vector<REG_TESTE> aRegistros;
    for (XVUInt i = 1; i <= 1000; ++i) aRegistros.push_back({i, 0, 0});
    XVUInt uiPosicao = 0;
    ASSERT_EQ(banco->PreparaColecao(operacao, uiPosicao, aRegistros), S_OK);
    EXPECT_EQ(banco->ExisteIndex(XVUInt64{500}, uiPosicao, 0), S_OK);
    EXPECT_EQ(uiPosicao, 0U) << "what is prepared is not there yet";
    ASSERT_EQ(operacao.Executa(), S_OK);
    for (XVUInt i = 1; i <= 1000; ++i) {
        EXPECT_EQ(banco->ExisteIndex(XVUInt64{i}, uiPosicao, 0), S_OK);
        EXPECT_EQ(uiPosicao, i);
    }
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
}

// The map alone, with many keys in few slots, against the standard one.
TEST(Indice, ComoUmMultimapaOrdenado) {
    std::mt19937_64 gerador(7);
    CXVIndice indice(true);
    std::multimap<XVUInt64, XVUInt> modelo;
    std::vector<XVUInt64> aChaves(701);  // by position; 0: not in the map
    const auto chave = [&aChaves](XVUInt uiPosicao) { return aChaves[uiPosicao]; };
    EXPECT_EQ(indice.GetPrimeira(1, chave), 0U);
    indice.Remove(1, 1, chave);
    for (int i = 0; i < 60'000; ++i) {
        const auto uiPosicao = static_cast<XVUInt>(1 + gerador() % 700);
        const XVUInt64 uiChave = (1 + gerador() % 90) << (gerador() % 3 * 20);
        if (XVUInt64& rChave = aChaves[uiPosicao]; rChave != 0) {
            indice.Remove(uiChave == rChave ? uiChave + 1 : uiChave, uiPosicao, chave);  // not held: nothing
            indice.Remove(rChave, uiPosicao, chave);
            auto [itDe, itAte] = modelo.equal_range(rChave);
            while (itDe->second != uiPosicao) ++itDe;
            modelo.erase(itDe);
            rChave = 0;
        } else {
            indice.Reserva(1, uiPosicao, aChaves.size() - 1, chave);
            indice.Inclui(uiChave, uiPosicao, chave);
            modelo.emplace(uiChave, uiPosicao);
            rChave = uiChave;
        }
        if (i % 1000 == 999) {
            ASSERT_TRUE(indice.Constroi(std::span(aChaves).subspan(1)));
        }
        const auto [itDe, itAte] = modelo.equal_range(uiChave);
        std::vector<XVUInt> aEsperadas;
        for (auto it = itDe; it != itAte; ++it) aEsperadas.push_back(it->second);
        std::sort(aEsperadas.begin(), aEsperadas.end());
        std::vector<XVUInt> aObtidas;
        for (XVUInt ui = indice.GetPrimeira(uiChave, chave); ui != 0; ui = indice.GetProxima(ui))
            aObtidas.push_back(ui);
        ASSERT_EQ(aObtidas, aEsperadas) << "step " << i;
    }
}

}  // namespace
