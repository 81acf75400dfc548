#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/codes/XVCodigos.h"
#include "tools/xvcr/commands/XVCarga.h"

namespace {

using testing::_;
using testing::DoAll;
using testing::Field;
using testing::HasSubstr;
using testing::Return;
using testing::SetArgPointee;
using testing::StrictMock;

class COperacoesFalsas : public IXVOperacoes {
  public:
    MOCK_METHOD(HRESULT, Inicializa, (const SAcesso&), (override));
    MOCK_METHOD(HRESULT, Finaliza, (), (override));
    MOCK_METHOD(HRESULT, GravaIntegracao, (REG_XVDMC*, const SIntegracao&), (override));
    MOCK_METHOD(HRESULT, GravaIntegracaoInstantanea, (REG_XVDMC*, const SIntegracao&), (override));
    MOCK_METHOD(HRESULT, GravaPendenciaIntegracao, (REG_XVDMC, const SIntegracao&), (override));
    MOCK_METHOD(HRESULT, GravaStatusIntegracao, (const SStatusIntegracao&), (override));
    MOCK_METHOD(HRESULT, LeIntegracao, (REG_XVDMC, XVUInt64, SIntegracao*), (override));
    MOCK_METHOD(HRESULT, LeIntegracoes, (const std::vector<REG_XVDMC>&, XVUInt64, std::vector<SIntegracao>*),
                (override));
    MOCK_METHOD(HRESULT, BuscaPonteiros, (const SFiltroIntegracao&, std::vector<REG_XVDMC>*), (override));
    MOCK_METHOD(HRESULT, GravaChaveRegistro, (const SChaveRegistro&), (override));
    MOCK_METHOD(HRESULT, GravaChaveRegistroPendente, (const SChaveRegistro&), (override));
    MOCK_METHOD(HRESULT, BuscaChaveRegistro, (const SChaveRegistro&, SChaveRegistro*), (override));
    MOCK_METHOD(HRESULT, GravaDataHora, (const SDataHoraIntegracao&), (override));
    MOCK_METHOD(HRESULT, BuscaDataHora, (const SDataHoraIntegracao&, SDataHoraIntegracao*), (override));
    MOCK_METHOD(HRESULT, BuscaDadosSistemaTerceiro, (const SConsultaTerceiro&, SRespostaConsulta*),
                (override));
};

const REG_XVDMC k_regDmc = REG_XVDMC::Cria(1, 15, REG_XVDMA::Cria(2026, 11, 21));

class Carga : public testing::Test {
  protected:
    StrictMock<COperacoesFalsas> m_Operacoes;
    CXVCarga m_Carga{m_Operacoes};
};

TEST_F(Carga, LinhaSemDmcIncluiELinhaComDmcAltera) {
    EXPECT_CALL(m_Operacoes,
                GravaIntegracao(testing::Pointee(REG_XVDMC{}), Field(&SIntegracao::ulPonteiroFilial, 3U)))
        .WillOnce(DoAll(SetArgPointee<0>(k_regDmc), Return(S_OK)));
    SResultadoLinha resultado = m_Carga.Executa(R"({"ulPonteiroFilial":3})");
    EXPECT_EQ(resultado.sErro, "");
    EXPECT_EQ(resultado.regDmc, k_regDmc);

    EXPECT_CALL(m_Operacoes, GravaIntegracao(testing::Pointee(k_regDmc), _)).WillOnce(Return(S_OK));
    resultado = m_Carga.Executa(R"({"regDmc":"20261121-15-1","operacao":"integracao"})");
    EXPECT_EQ(resultado.sErro, "");
    EXPECT_EQ(resultado.regDmc, k_regDmc);
}

TEST_F(Carga, OperacaoStatusGravaSoOStatus) {
    EXPECT_CALL(m_Operacoes, GravaStatusIntegracao(testing::AllOf(
                                 Field(&SStatusIntegracao::uiChaveIntegracaoSistemaTerceiro, 9U),
                                 Field(&SStatusIntegracao::sMensagemIntegracao, "ok"))))
        .WillOnce(Return(S_OK));
    const SResultadoLinha resultado = m_Carga.Executa(
        R"({"operacao":"status","uiChaveIntegracaoSistemaTerceiro":9,"eSistemaIntegracao":16,)"
        R"("eStatusIntegracao":"Sucesso","regMensagemIntegracao":"ok"})");
    EXPECT_EQ(resultado.sErro, "");
    EXPECT_EQ(resultado.eOperacao, SResultadoLinha::EOperacao::eStatus);
}

TEST_F(Carga, LinhaErradaNaoChegaABase) {
    EXPECT_EQ(m_Carga.Executa(R"({"operacao":"apaga"})").sCampo, "operacao");
    EXPECT_EQ(m_Carga.Executa(R"({"operacao":1})").sCampo, "operacao");
    EXPECT_EQ(m_Carga.Executa(R"({"operacao":"status","eTipoIntegracao":1})").sCampo, "eTipoIntegracao");
    EXPECT_NE(m_Carga.Executa("{").sErro, "");
}

TEST_F(Carga, FalhaDaBaseTrazCodigoENome) {
    EXPECT_CALL(m_Operacoes, GravaIntegracao(_, _)).WillOnce(Return(E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA));
    const SResultadoLinha resultado = m_Carga.Executa("{}");
    EXPECT_EQ(resultado.hr, E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
    EXPECT_THAT(resultado.sErro, HasSubstr("0x81080AAA E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA: "));
}

}  // namespace
