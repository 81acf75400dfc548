// The map between keys of the suite and of external systems, and the date-times of the exchanges.
#include <thread>

#include "tests/middleware/XVCenarioLoja.h"

namespace {

using TChave = tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS;

class CXVChavesTest : public CXVCenarioLoja {
  protected:
    CXVChavesTest() : m_pLoja(Abre()) {}

    static REG_XVDMC Registro(unsigned uiPonteiro) { return {XVChaveDmc(0, uiPonteiro, 2)}; }
    static REG_XVDMC Origem(unsigned uiPonteiro) { return {XVChaveDmc(k_uiHoje, uiPonteiro)}; }
    TChave Busca(XVUInt64 uiId, REG_XVDMC regDmc, XVUInt64 uiBase = 1, XVUInt eTipo = 6,
                 XVUInt eSistema = Mercos) {
        TChave achada{9, {9}, 9, 9, 9, {9}};
        EXPECT_EQ(m_pLoja->BuscaChaveRegistroTelvoParaTerceiro({uiId, regDmc, uiBase, eTipo, eSistema, {}},
                                                               &achada),
                  S_OK);
        return achada;
    }
    std::size_t Quantidade() const { return Dados(Conteudo("CRCHAVEREGTER.dat")).size() / 40; }

    TLoja m_pLoja;
};

TEST_F(CXVChavesTest, OneRecordOfTheSuiteHasOneMappingPerSystemTypeAndDatabase) {
    ASSERT_EQ(m_pLoja->GravaChaveRegistroTelvoParaTerceiro({100, Registro(1), 1, 6, Mercos, Origem(1)}),
              S_OK);
    ASSERT_EQ(m_pLoja->GravaChaveRegistroTelvoParaTerceiro({200, Registro(1), 1, 6, Mercos, {}}), S_OK);
    EXPECT_EQ(Quantidade(), 1U) << "overwritten whatever the external ids";
    EXPECT_EQ(Busca(0, Registro(1)).uiChaveRegistroSistemaTerceiro, 200U);
    EXPECT_EQ(Busca(0, Registro(1)).regDmcOrigemIntegracao.uiValor, Origem(1).uiValor)
        << "no origin named: kept";
    EXPECT_EQ(Busca(100, {}).uiChaveRegistroSistemaTerceiro, 0U) << "the old id is known no more";
    ASSERT_EQ(m_pLoja->GravaChaveRegistroTelvoParaTerceiro({200, Registro(1), 1, 6, Mercos, Origem(2)}),
              S_OK);
    EXPECT_EQ(Busca(0, Registro(1)).regDmcOrigemIntegracao.uiValor, Origem(2).uiValor);
    ASSERT_EQ(m_pLoja->GravaChaveRegistroTelvoParaTerceiro({300, Registro(1), 2, 6, Mercos, {}}), S_OK);
    ASSERT_EQ(m_pLoja->GravaChaveRegistroTelvoParaTerceiro({400, Registro(1), 1, 7, Mercos, {}}), S_OK);
    ASSERT_EQ(m_pLoja->GravaChaveRegistroTelvoParaTerceiro({500, Registro(1), 1, 6, OfficialBank, {}}), S_OK);
    EXPECT_EQ(Quantidade(), 4U);
    EXPECT_EQ(Busca(0, Registro(1), 2).uiChaveRegistroSistemaTerceiro, 300U);
    EXPECT_EQ(Busca(0, Registro(1), 1, 7).uiChaveRegistroSistemaTerceiro, 400U);
    EXPECT_EQ(Busca(0, Registro(1), 1, 6, OfficialBank).uiChaveRegistroSistemaTerceiro, 500U);
}

TEST_F(CXVChavesTest, PendingMappingIsAddedOnceAndCompletedInPlace) {
    const TChave pendente{999, Registro(2), 1, 6, Mercos, Origem(3)};
    ASSERT_EQ(m_pLoja->GravaChaveRegistroTelvoParaTerceiroPendente(pendente), S_OK);
    ASSERT_EQ(m_pLoja->GravaChaveRegistroTelvoParaTerceiroPendente(pendente), S_OK);
    EXPECT_EQ(Quantidade(), 1U);
    EXPECT_EQ(Busca(0, Registro(2)).uiChaveRegistroSistemaTerceiro, 0U) << "pending whatever id is given";
    EXPECT_EQ(Busca(0, Registro(2)).regDmcOrigemIntegracao.uiValor, Origem(3).uiValor);
    ASSERT_EQ(m_pLoja->GravaChaveRegistroTelvoParaTerceiro({55, Registro(2), 1, 6, Mercos, {}}), S_OK);
    ASSERT_EQ(m_pLoja->GravaChaveRegistroTelvoParaTerceiroPendente(pendente), S_OK);
    EXPECT_EQ(Quantidade(), 1U);
    EXPECT_EQ(Busca(0, Registro(2)).uiChaveRegistroSistemaTerceiro, 55U)
        << "a complete mapping is left as it is";
}

TEST_F(CXVChavesTest, SearchByIdByRecordByBothAndByNothing) {
    ASSERT_EQ(m_pLoja->GravaChaveRegistroTelvoParaTerceiro({100, Registro(1), 1, 6, Mercos, {}}), S_OK);
    ASSERT_EQ(m_pLoja->GravaChaveRegistroTelvoParaTerceiro({100, Registro(2), 1, 6, Mercos, {}}), S_OK);
    EXPECT_EQ(Busca(100, {}).regDmcRegistroTelvo.uiValor, Registro(1).uiValor) << "the first of several";
    EXPECT_EQ(Busca(100, Registro(2)).regDmcRegistroTelvo.uiValor, Registro(2).uiValor);
    for (const TChave& nada : {Busca(100, Registro(3)), Busca(101, Registro(1)), Busca(0, {}),
                               Busca(100, {}, 2), Busca(100, {}, 1, 7)})
        EXPECT_EQ(
            nada.uiChaveRegistroSistemaTerceiro + nada.regDmcRegistroTelvo.uiValor + nada.eTipoIntegracao,
            0U);
    m_pLoja.reset();
    m_pLoja = Abre();
    EXPECT_EQ(Busca(100, {}).regDmcRegistroTelvo.uiValor, Registro(1).uiValor);
}

TEST_F(CXVChavesTest, DateTimeIsKeptOncePerSystemTypeAndKind) {
    const auto busca = [&](XVUInt eTipo, XVUInt eSistema, XVUInt eTipoData) {
        tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS reg{{9}, 9, 9, 9, {}};
        EXPECT_EQ(m_pLoja->BuscaDataHoraIntegracaoTerceiro({{}, eTipo, eSistema, eTipoData}, &reg), S_OK);
        return reg;
    };
    EXPECT_EQ(busca(9, Mercos, 1).regDataHora.uiValor, 0U);
    for (const unsigned uiHora : {1U, 2U})
        ASSERT_EQ(
            m_pLoja->GravaDataHoraIntegracaoTerceiro({{XVDataHora(k_uiHoje, uiHora)}, 9, Mercos, 1, {}}),
            S_OK);
    ASSERT_EQ(m_pLoja->GravaDataHoraIntegracaoTerceiro({{XVDataHora(k_uiHoje, 7)}, 9, Mercos, 2, {}}), S_OK);
    EXPECT_EQ(Dados(Conteudo("CRDTHRINTEG.dat")).size(), 64U);
    EXPECT_EQ(busca(9, Mercos, 1).regDataHora.uiValor, XVDataHora(k_uiHoje, 2));
    EXPECT_EQ(busca(9, Mercos, 1).eTipoIntegracao, 9U);
    EXPECT_EQ(busca(9, Mercos, 2).regDataHora.uiValor, XVDataHora(k_uiHoje, 7));
    EXPECT_EQ(busca(9, OfficialBank, 1).regDataHora.uiValor, 0U);
    EXPECT_EQ(busca(9, OfficialBank, 1).eTipoData, 0U) << "a cleared record";
}

TEST_F(CXVChavesTest, UpsertsOfOneKeyAtOnceLeaveOneRecord) {
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < 4; ++i)
        threads.emplace_back([&, i] {
            const TLoja pPropria = Abre(static_cast<XVUShort>(i + 1));
            for (unsigned j = 0; j < 25; ++j) {
                const TChave chave{i * 100 + j + 1, Registro(j), 1, 6, Mercos, {}};
                if (j == 0) continue;  // record 0 is null
                EXPECT_EQ(i % 2 == 0 ? pPropria->GravaChaveRegistroTelvoParaTerceiro(chave)
                                     : pPropria->GravaChaveRegistroTelvoParaTerceiroPendente(chave),
                          S_OK);
                EXPECT_EQ(pPropria->GravaDataHoraIntegracaoTerceiro(
                              {{XVDataHora(k_uiHoje, i)}, j % 18, Mercos, 1, {}}),
                          S_OK);
            }
        });
    for (auto& rThread : threads) rThread.join();
    EXPECT_EQ(Quantidade(), 24U);
    EXPECT_EQ(Dados(Conteudo("CRDTHRINTEG.dat")).size() / 32, 18U);
}

}  // namespace
