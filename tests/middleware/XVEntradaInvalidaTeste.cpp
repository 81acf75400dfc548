// Input from outside that cannot be: refused before anything is written, and the next valid one works.
#include "contract/XVDadosCR.h"
#include "tests/middleware/XVCenarioLoja.h"

namespace {

using TReg = tagREG_CR_INTEGRACAO_MIDDLEWAREPS;
using TStatus = CXVDadosCR_StatusIntegracaoMiddleware;

// Enumerations that have no such value are among the model's random operations.
class CXVEntradaInvalidaTeste : public CXVCenarioLoja {
  protected:
    CXVEntradaInvalidaTeste() : m_pLoja(Abre()) {
        m_regDmc = Grava(*m_pLoja, CXVIntegracaoTeste(1).Textos("{}", "m", "{}"));
        m_antes = m_Arquivos.Retrata();
    }
    void TearDown() override {
        EXPECT_EQ(m_Arquivos.Diferenca(m_antes, m_Arquivos.Retrata()), "");
        EXPECT_EQ(Grava(*m_pLoja, CXVIntegracaoTeste(2)).GetPonteiro(), 2U) << "the next one works";
    }

    TLoja m_pLoja;
    REG_XVDMC m_regDmc;
    CXVSistemaArquivosMemoria::TRetrato m_antes;
};

TEST_F(CXVEntradaInvalidaTeste, NenhumaOperacaoGravaIntegracaoImpossivel) {
    std::string sComNul("a\0b", 3);
    const std::function<void(TReg&)> aDefeitos[] = {
        [](TReg& r) { r.eSistemaIntegracao = SimulacaoSistemaTerceiro | OfficialBank; },
        [](TReg& r) { r.eTipoTransacao = 0xFFFFFFFF; },
        [](TReg& r) { r.regDataHoraInclusao = {XVDataHora(XVDma(2023, 2, 29), 0)}; },
        [](TReg& r) { r.regDataHoraAlteracaoStatus = {XVDataHora(k_uiHoje, 24)}; },
        [](TReg& r) { r.regDataHoraAlteracaoStatus = {XVDataHora(k_uiHoje | 1U << 18, 0)}; },
        [](TReg& r) { r.regDmcIntegracaoOrigem = {XVChaveDmc(XVDma(2024, 13, 1), 1)}; },
        [](TReg& r) { r.regDmcMovimentoOrigem = {XVChaveDmc(k_uiHoje, 0)}; },
        [](TReg& r) { r.regDmcMovimentoOrigem = {XVChaveDmc(k_uiHoje, 1) | 1U << 5}; },
        [](TReg& r) { r.regRegistroJSON.ulQtdBytes = 5; },
        [](TReg& r) { r.regMensagemIntegracao.ulQtdBytes = 0xFFFFFFFF; },
        [&](TReg& r) { r.regJSONRetornoIntegracao = CXVStringPS::Vista(sComNul); }};
    for (std::size_t i = 0; i < std::size(aDefeitos); ++i) {
        CXVIntegracaoTeste integracao(2);
        aDefeitos[i](integracao.reg);
        REG_XVDMC regNova;
        EXPECT_EQ(m_pLoja->GravaIntegracao(&regNova, integracao.Ptr()), E_INVALIDARG) << i;
        EXPECT_EQ(m_pLoja->GravaIntegracao(&m_regDmc, integracao.Ptr()), E_INVALIDARG) << i;
        EXPECT_EQ(m_pLoja->GravaIntegracaoInstantanea(&regNova, integracao.reg), E_INVALIDARG) << i;
        EXPECT_EQ(m_pLoja->GravaPendenciaIntegracao(m_regDmc, integracao.reg), E_INVALIDARG) << i;
        EXPECT_TRUE(regNova.EhNulo());
    }
}

TEST_F(CXVEntradaInvalidaTeste, ChavesEDatasQueNaoExistemSaoRecusadas) {
    EXPECT_EQ(m_pLoja->GravaIntegracao(nullptr, CXVIntegracaoTeste().Ptr()), E_POINTER);
    EXPECT_EQ(m_pLoja->GravaIntegracao(&m_regDmc, static_cast<const TReg*>(nullptr)), E_POINTER);
    EXPECT_EQ(m_pLoja->GravaIntegracaoInstantanea(nullptr, {}), E_POINTER);
    EXPECT_EQ(m_pLoja->LeIntegracao(m_regDmc, nullptr, 0), E_POINTER);
    for (const XVUInt64 uiDmc :
         {XVChaveDmc(k_uiHoje, 0), XVChaveDmc(0, 1), XVChaveDmc(XVDma(2024, 2, 30), 1), ~XVUInt64{0}}) {
        REG_XVDMC regDmc{uiDmc};
        EXPECT_EQ(m_pLoja->GravaIntegracao(&regDmc, CXVIntegracaoTeste(1).Ptr()), E_INVALIDARG) << uiDmc;
        const TStatus status{.regDmc = regDmc, .eStatusIntegracao = 1};
        EXPECT_TRUE(FAILED(m_pLoja->GravaStatusIntegracao(status.ComoRegistro()))) << uiDmc;
        EXPECT_EQ(XVLe(*m_pLoja, regDmc).hr, E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA) << uiDmc;
    }
    auto semTexto = TStatus{.regDmc = m_regDmc, .eStatusIntegracao = 1}.ComoRegistro();
    semTexto.regMensagemIntegracao.ulQtdBytes = 1;
    EXPECT_EQ(m_pLoja->GravaStatusIntegracao(semTexto), E_INVALIDARG);
    const std::pair<tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS, HRESULT> aChaves[] = {
        {{1, {3}, 0, 6, 16, {}}, E_XVCR_CHAVE_REGISTRO_TELVO_ZERADA},
        {{1, {XVChaveDmc(k_uiHoje, 0)}, 0, 6, 16, {}}, E_INVALIDARG},
        {{1, m_regDmc, 0, 6, 16, {XVChaveDmc(XVDma(2024, 0, 1), 1)}}, E_INVALIDARG}};
    for (const auto& [chave, hr] : aChaves) {
        EXPECT_EQ(m_pLoja->GravaChaveRegistroTelvoParaTerceiro(chave), hr);
        EXPECT_EQ(m_pLoja->GravaChaveRegistroTelvoParaTerceiroPendente(chave), hr);
    }
    EXPECT_EQ(m_pLoja->GravaDataHoraIntegracaoTerceiro({{XVDataHora(0, 1)}, 9, 2, 1, {}}), E_INVALIDARG);
    EXPECT_EQ(m_pLoja->GravaDataHoraIntegracaoTerceiro({{XVDataHora(k_uiHoje, 1)}, 0, 0, 0, {}}),
              E_XVCR_INDEXACAO_COM_POSICAO_ZERO)
        << "a record without any key field could never be found";
}

}  // namespace
