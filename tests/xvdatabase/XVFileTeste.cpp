// Record files: positions, ranges, what reaches the disk, and at what cost.
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

class RegistrosFixos : public CXVCenarioBanco {
  protected:
    static std::vector<REG_TESTE> Lista(XVUInt ulQuantidade, XVUInt ulValor = 0) {
        std::vector<REG_TESTE> lista;
        for (XVUInt i = 1; i <= ulQuantidade; ++i) lista.push_back({i, i % 3, ulValor});
        return lista;
    }
};

TEST_F(RegistrosFixos, ForaDosLimitesHaUmCodigoParaCadaCaso) {
    REG_TESTE reg{};
    std::vector<REG_TESTE> lista{{9, 9, 9}};
    XVUInt uiPosicao = 4;
    TXVBanco<CXVFileTeste> banco("A.dat");
    ASSERT_EQ(Abre(banco), S_OK);
    EXPECT_EQ(banco->Le(0, &reg), E_XVCR_TENTATIVA_LER_POSICAO_ZERO);
    EXPECT_EQ(banco->Le(1, &reg), E_XVCR_ARQUIVO_NAO_EXISTE);
    EXPECT_EQ(banco->Grava(uiPosicao, reg), E_XVCR_POSICAO_GRAVACAO_SUPERIOR_QUANTIDADE_ARQUIVO);
    EXPECT_FALSE(Existe("A.dat"));
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
    Cria("A.dat", ArquivoComCabecalho("A.dat", Bytes(Lista(3))));
    ASSERT_EQ(Abre(banco), S_OK);
    EXPECT_EQ(banco->Grava(uiPosicao, reg), E_XVCR_POSICAO_GRAVACAO_SUPERIOR_QUANTIDADE_ARQUIVO);
    EXPECT_EQ(banco->LeColecao(3, 0, lista), E_XVCR_INCONSISTENCIA_CHAVE_QUANTIDADE);
    EXPECT_EQ(banco->LeColecao(0, 3, lista), E_XVCR_INCONSISTENCIA_CHAVE_QUANTIDADE);
    for (const auto& [uiDe, uiQtd] : {std::pair{4U, XVUInt64{1}}, {2U, XVUInt64{3}}, {2U, ~XVUInt64{0}}})
        EXPECT_EQ(banco->LeColecao(uiDe, uiQtd, lista), E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO);
    const CXVCapturaTrace captura;
    EXPECT_EQ(banco->Le(5, &reg), E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO);
    EXPECT_TRUE(captura.GetFalhas().at(0).sMensagem.ends_with(
        "\tArquivo = A.dat\tPosição = 5\tRegistro = 16\tQtd. Registros = 3"))
        << captura.GetFalhas()[0].sMensagem;
    EXPECT_EQ(banco->LeColecao(2, 2, lista), S_OK);
    EXPECT_EQ(lista, (std::vector<REG_TESTE>{{9, 9, 9}, {2, 2, 0}, {3, 0, 0}})) << "appended";
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
}

TEST_F(RegistrosFixos, GravarCustaUmaGravacaoDeDadosEUmaDeCabecalho) {
    Cria("A.dat", ArquivoComCabecalho("A.dat", Bytes(Lista(3))));
    TXVBanco<CXVFileTeste> banco("A.dat");
    ASSERT_EQ(Abre(banco), S_OK);
    for (XVUInt uiInicial : {0U, 2U}) {
        SCOPED_TRACE(uiInicial);
        m_Falhas.Limpa();
        XVUInt uiPosicao = uiInicial;
        ASSERT_EQ(banco->GravaColecao(uiPosicao, Lista(2, 77)), S_OK);
        EXPECT_EQ(Conta(EOperacaoArquivo::eGrava), 2U);
        EXPECT_EQ(m_Falhas.GetQuantidadeTotal(), 2U) << "no reopening, no reading";
        EXPECT_EQ(Conta(EOperacaoArquivo::eConsulta), 0U);
        ASSERT_EQ(banco->GravaColecao(uiPosicao, Lista(2, 77)), S_OK);
        EXPECT_EQ(m_Falhas.GetQuantidadeTotal(), 2U) << "what does not differ is not written";
    }
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
}

TEST_F(RegistrosFixos, CrescimentoAtravessaOsBlocosDaMemoria) {
    Cria("A.dat", ArquivoComCabecalho("A.dat", Bytes(Lista(3))));
    TXVBanco<CXVFileTeste> banco("A.dat");
    ASSERT_EQ(Abre(banco), S_OK);
    std::vector<REG_TESTE> aEsperados = Lista(3);
    for (const XVUInt ulQuantidade : {1U, 1020U, 2048U, 5U}) {
        const std::vector<REG_TESTE> aNovos = Lista(ulQuantidade, ulQuantidade);
        XVUInt uiPosicao = 0;
        ASSERT_EQ(banco->GravaColecao(uiPosicao, aNovos), S_OK);
        EXPECT_EQ(uiPosicao, aEsperados.size() + 1);
        aEsperados.insert(aEsperados.end(), aNovos.begin(), aNovos.end());
    }
    std::vector<REG_TESTE> aLidos;
    EXPECT_EQ(banco->LeColecao(1, aEsperados.size(), aLidos), S_OK);
    EXPECT_EQ(aLidos, aEsperados);
    aLidos.clear();
    EXPECT_EQ(banco->LeColecao(1020, 1100, aLidos), S_OK);
    EXPECT_EQ(aLidos, std::vector(aEsperados.begin() + 1019, aEsperados.begin() + 2119));
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
    EXPECT_EQ(LeRegistros("A.dat"), aEsperados);
}

TEST_F(RegistrosFixos, PrimeiraGravacaoEncontraRegistrosQueApareceramDepois) {
    TXVBanco<CXVFileTeste> banco("A.dat");
    const SChavesTeste chaves;
    ASSERT_EQ(banco->IncluiIndex(&chaves, 0), S_OK);
    ASSERT_EQ(Abre(banco), S_OK);
    Cria("A.dat", ArquivoComCabecalho("A.dat", Bytes(Lista(2))));
    XVUInt uiPosicao = 0;
    EXPECT_EQ(banco->Grava(uiPosicao, {2, 0, 0}), E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA) << "their keys count";
    EXPECT_EQ(banco->Grava(uiPosicao, {7, 0, 0}), S_OK);
    EXPECT_EQ(uiPosicao, 3U);
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
    EXPECT_EQ(LeRegistros("A.dat").size(), 3U);
}

}  // namespace
