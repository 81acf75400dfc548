// What the store leaves on disk, byte for byte, and the keys of its indexes.
#include "tests/middleware/XVCenarioLoja.h"

namespace {

class CXVEsquemaTest : public CXVCenarioLoja {
  protected:
    CXVDataBase_CR_Middleware m_DataBase;
};

TEST_F(CXVEsquemaTest, RecordsTextsAndHeadersOfOneIntegrationStandWhereTheyBelong) {
    TLoja pLoja = Abre();
    ASSERT_NE(pLoja, nullptr);
    CXVIntegracaoTeste integracao(0x1122334455667788ULL, Mercos, eXVSMiddleware_Sucesso);
    integracao.Textos("{\"pão\":1}", "aceito", "{\"id\":9}");
    integracao.reg.regDmcIntegracaoOrigem = {XVChaveDmc(XVDma(2022, 12, 31), 3)};
    integracao.reg.regDataHoraAlteracaoStatus = {XVDataHora(XVDma(2024, 2, 29), 23, 59)};
    integracao.reg.uiBaseDadosTerceiro = 0x0102030405060708ULL;
    integracao.reg.ulPonteiroFilial = 11;
    integracao.reg.ulPonteiroUsuarioInclusao = 12;
    integracao.reg.ulPonteiroUsuarioCancelamento = 13;
    integracao.reg.cReconsultarIdTerceiros = 1;
    integracao.reg.ucTipoPonteiroAuxiliar = 5;
    integracao.reg.ulPonteiroAuxiliar = 0xA1B2C3D4;
    integracao.reg.uiChaveRegistroSistemaTerceiro = 999;  // stored nowhere
    const REG_XVDMC regDmc = Grava(*pLoja, integracao);
    EXPECT_EQ(regDmc.uiValor, XVChaveDmc(k_uiHoje, 1));

    const CXVBytes integ = CXVBytes()
                               .U64(XVChaveDmc(XVDma(2022, 12, 31), 3))
                               .U64(XVChaveDmc(XVDma(2023, 1, 2), 5, 2))
                               .U64(XVDataHora(k_uiHoje, 12))
                               .U64(XVDataHora(XVDma(2024, 2, 29), 23, 59))
                               .U64(0x0102030405060708ULL)
                               .U32(9)
                               .U32(1)
                               .U32(1)
                               .U32(1)
                               .U32(1)
                               .U32(11)
                               .U32(12)
                               .U32(13)
                               .U8(1)
                               .U8(5)
                               .U32(0xA1B2C3D4)
                               .Zeros(10);
    ASSERT_EQ(integ.Str().size(), 88U);
    const CXVBytes index = CXVBytes().U64(0x1122334455667788ULL).U64(XVChaveDmc(k_uiHoje, 1)).U32(16).U32(3);
    EXPECT_EQ(Conteudo("CRINTEGMID20240315.dat"),
              XVArquivoDoTeste({"CRINTEGMID20240315.dat", 1}, integ.Str()));
    EXPECT_EQ(Conteudo("CRINDEXINTEG.dat"), XVArquivoDoTeste({"CRINDEXINTEG.dat", 1}, index.Str()));
    EXPECT_EQ(Conteudo("CRINTEGMIDJSON20240315.dat"),
              XVArquivoDoTeste({"CRINTEGMIDJSON20240315.dat", 1}, CXVBytes().Texto("{\"pão\":1}").Str()));
    EXPECT_EQ(Conteudo("CRINTEGMIDMENS20240315.dat"),
              XVArquivoDoTeste({"CRINTEGMIDMENS20240315.dat", 1}, CXVBytes().Texto("aceito").Str()));
    EXPECT_EQ(Conteudo("CRINTEGMIDJSONRET20240315.dat"),
              XVArquivoDoTeste({"CRINTEGMIDJSONRET20240315.dat", 1}, CXVBytes().Texto("{\"id\":9}").Str()));
}

TEST_F(CXVEsquemaTest, KeyMapDateTimeAndVersionFilesHaveTheirLayouts) {
    TLoja pLoja = Abre();
    ASSERT_NE(pLoja, nullptr);
    ASSERT_EQ(pLoja->GravaChaveRegistroTelvoParaTerceiro({77, {XVChaveDmc(k_uiHoje, 4, 2)}, 3, 6, 16, {}}),
              S_OK);
    ASSERT_EQ(pLoja->GravaDataHoraIntegracaoTerceiro({{XVDataHora(k_uiHoje, 8)}, 9, 2, 1, {}}), S_OK);
    EXPECT_EQ(Dados(Conteudo("CRCHAVEREGTER.dat")),
              CXVBytes().U64(77).U64(XVChaveDmc(k_uiHoje, 4, 2)).U64(3).U32(6).U32(16).U64(0).Str());
    EXPECT_EQ(Dados(Conteudo("CRDTHRINTEG.dat")),
              CXVBytes().U64(XVDataHora(k_uiHoje, 8)).U32(9).U32(2).U32(1).Zeros(12).Str());
    EXPECT_EQ(Dados(Conteudo("CRMIDDLEWAREVS.dat")), CXVBytes().U16(5).Zeros(14).Str());
}

TEST_F(CXVEsquemaTest, IndexKeysAreTheCrcOfTheirFields) {
    const REG_CR_INDEX_INTEGRACAO_V1 index{4711, {XVChaveDmc(k_uiHoje, 9)}, OfficialBank, 1};
    EXPECT_EQ(m_DataBase.GetChaveIndex(index, 0), CrcBitABit(CXVBytes().U64(4711).U32(8).U32(0).Str()));
    EXPECT_EQ(m_DataBase.GetChaveIndex(index, 1), XVChaveDmc(k_uiHoje, 9));
    EXPECT_EQ(m_DataBase.GetChaveIndex(index, 2), 4711U);
    const REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2 chave{77, {XVChaveDmc(k_uiHoje, 4, 2)}, 3, 6, 16, {1}};
    EXPECT_EQ(m_DataBase.GetChaveIndex(chave, 0),
              CrcBitABit(CXVBytes().U32(16).U32(6).U64(XVChaveDmc(k_uiHoje, 4, 2)).U64(3).Str()));
    EXPECT_EQ(m_DataBase.GetChaveIndex(chave, 1), CrcBitABit(CXVBytes().U32(16).U32(6).U64(77).U64(3).Str()));
    const REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1 dataHora{{1}, 9, 2, 1, {}};
    EXPECT_EQ(m_DataBase.GetChaveIndex(dataHora, 0), CrcBitABit(CXVBytes().U32(2).U32(9).U32(1).Str()));
    EXPECT_EQ(m_DataBase.GetChaveIndex(index, 3), 0U);
    EXPECT_EQ(m_DataBase.GetChaveIndex(chave, 2), 0U);
    EXPECT_EQ(m_DataBase.GetChaveIndex(dataHora, 1), 0U);
}

TEST_F(CXVEsquemaTest, WithoutExternalKeyOrSystemThereIsNoKeyInColumnZero) {
    ASSERT_EQ(m_DataBase.Inicializa(&m_Dono), S_OK);
    const std::vector<REG_CR_INDEX_INTEGRACAO_V1> lista{{0, {XVChaveDmc(k_uiHoje, 1)}, Mercos, 1},
                                                        {5, {XVChaveDmc(k_uiHoje, 2)}, Tipo_Nenhum, 1},
                                                        {5, {XVChaveDmc(k_uiHoje, 3)}, Mercos, 1},
                                                        {5, {XVChaveDmc(k_uiHoje, 4)}, OfficialBank, 1},
                                                        {0, {XVChaveDmc(k_uiHoje, 5)}, OfficialBank, 1}};
    XVUInt uiPosicao = 0;
    ASSERT_EQ(m_DataBase.m_IndexIntegracao.GravaColecao(uiPosicao, lista), S_OK);
    EXPECT_EQ(m_DataBase.GetChaveIndex(lista[0], 0), 0U);
    EXPECT_EQ(m_DataBase.GetChaveIndex(lista[1], 0), 0U);
    EXPECT_NE(m_DataBase.GetChaveIndex(lista[2], 0), m_DataBase.GetChaveIndex(lista[3], 0));
    std::vector<XVUInt> posicoes;
    ASSERT_EQ(
        m_DataBase.m_IndexIntegracao.ExisteIndex(0, posicoes, eIndexacao_ChaveIntegracaoComSistemaTerceiro),
        S_OK);
    EXPECT_TRUE(posicoes.empty());
    for (const auto& reg : lista) {
        ASSERT_EQ(m_DataBase.m_IndexIntegracao.ExisteIndex(reg.regDmcIntegracao.uiValor, uiPosicao,
                                                           eIndexacao_DMCIntegracao),
                  S_OK);
        EXPECT_EQ(uiPosicao, reg.regDmcIntegracao.GetPonteiro());
    }
    ASSERT_EQ(m_DataBase.m_IndexIntegracao.ExisteIndex(5, posicoes, eIndexacao_ChaveIntegracao), S_OK);
    EXPECT_EQ(posicoes, (std::vector<XVUInt>{2, 3, 4}));

    uiPosicao = 0;
    EXPECT_EQ(m_DataBase.m_IndexIntegracao.Grava(uiPosicao, lista[0]), E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA)
        << "one integration, one record";
    uiPosicao = 0;
    EXPECT_EQ(m_DataBase.m_IndexIntegracao.Grava(uiPosicao, {7, {}, Mercos, 1}),
              E_XVCR_INDEXACAO_COM_POSICAO_ZERO);
    EXPECT_EQ(m_DataBase.m_IndexIntegracao.GetQtdRegistros(), lista.size());
    EXPECT_EQ(m_DataBase.m_IndexIntegracao.ExisteIndex(5, posicoes, 3), E_XVCR_COLUNA_INDEXACAO_INVALIDA);
    EXPECT_EQ(m_DataBase.Finaliza(), S_OK);
}

TEST_F(CXVEsquemaTest, FileWithADuplicatedIntegrationIsRefusedAndNamedInTheTrace) {
    const CXVBytes index = CXVBytes().U64(1).U64(XVChaveDmc(k_uiHoje, 1)).U32(16).U32(3);
    m_Arquivos.CriaArquivo(PastaDados("CRINDEXINTEG.dat"),
                           XVArquivoDoTeste({"CRINDEXINTEG.dat"}, index.Str() + index.Str()));
    EXPECT_EQ(m_DataBase.Inicializa(&m_Dono), E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA);
    EXPECT_TRUE(m_Captura.Contem(
        "m_IndexIntegracao.IncluiIndex(this, EColuna_Indexacao_Middleware::eIndexacao_DMCIntegracao )"));
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U) << "a store that does not open holds nothing";
}

}  // namespace
