// The method layer: outputs cleared on entry and after a failure, and what is refused before the store.
#include <gtest/gtest.h>

#include <cstring>

#include "support/trace/XVCapturaTrace.h"
#include "tests/xvrpcdll/XVLogicaFalsa.h"

namespace {

class CMetodos : public ::testing::Test {
  protected:
    SControleLogica m_controle;
    CXVCapturaTrace m_captura;
    CReferencia<CComponenteFalso> m_p;
    const REG_XVDMC m_dmc = REG_XVDMC::Cria(1, 15, REG_XVDMA::Cria(2026, 11, 21));

    void SetUp() override {
        const REG_DF_INICIALIZAPS reg = RegistroValido();
        ASSERT_EQ(m_p->Inicializa_Padrao(&reg), S_OK);
    }
    void Falha(HRESULT hr) {
        m_controle.fnOperacao = [hr] { return hr; };
    }
};

template <class TRegistro>
TRegistro Lixo() {
    TRegistro reg;
    std::memset(static_cast<void*>(&reg), 0xCD, sizeof(reg));
    return reg;
}

template <class TRegistro>
bool Zerado(const TRegistro& reg) {
    const TRegistro regZero{};
    return std::memcmp(&reg, &regZero, sizeof(reg)) == 0;
}

}  // namespace

// What a caller leaves in an output is never freed or handed back.
TEST_F(CMetodos, SaidasSaoLimpasNaEntradaMesmoQuandoAChamadaEhRecusada) {
    const CReferencia<CComponenteFalso> p;  // not initialised
    auto regIntegracao = Lixo<tagREG_CR_INTEGRACAO_MIDDLEWAREPS>();
    EXPECT_EQ(p->LeIntegracao(m_dmc.uiValor, &regIntegracao, 7), E_XVCR_COMPONENTE_NAO_INICIALIZADO);
    EXPECT_TRUE(Zerado(regIntegracao));
    XVUInt ulQuantidade = 99;
    auto* pLista = reinterpret_cast<tagREG_CR_INTEGRACAO_MIDDLEWAREPS*>(16);
    const _REG_DF_LISTA_XVDMCPS listaVazia{};
    EXPECT_EQ(p->LeIntegracoes(&listaVazia, &ulQuantidade, &pLista, 0), E_XVCR_COMPONENTE_NAO_INICIALIZADO);
    EXPECT_EQ(ulQuantidade, 0U);
    EXPECT_EQ(pLista, nullptr);
    auto lista = Lixo<_REG_DF_LISTA_XVDMCPS>();
    const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS filtro{};
    EXPECT_EQ(p->BuscaPonteiros(&filtro, &lista), E_XVCR_COMPONENTE_NAO_INICIALIZADO);
    EXPECT_TRUE(Zerado(lista));
    auto regStatus = Lixo<tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS>();
    const tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS consulta{};
    EXPECT_EQ(p->BuscaDadosSistemaTerceiro(&consulta, &regStatus), E_XVCR_COMPONENTE_NAO_INICIALIZADO);
    EXPECT_TRUE(Zerado(regStatus));
    auto bytes = Lixo<_REG_CR_LISTA_BYTESPS>();
    const _REG_CR_LISTA_BYTESPS entrada{};
    EXPECT_EQ(p->FuncaoGenerica(1, &entrada, &bytes), E_XVCR_COMPONENTE_NAO_INICIALIZADO);
    EXPECT_TRUE(Zerado(bytes));
}

// Run under the address sanitizer: what the operation had filled before failing must be freed.
TEST_F(CMetodos, FalhaNaoEntregaNadaDoQueJaEstavaPreenchido) {
    Falha(eHardIO);
    auto regIntegracao = Lixo<tagREG_CR_INTEGRACAO_MIDDLEWAREPS>();
    EXPECT_EQ(m_p->LeIntegracao(m_dmc.uiValor, &regIntegracao, 7), eHardIO);
    EXPECT_TRUE(Zerado(regIntegracao));
    REG_XVDMC aDmc[3] = {m_dmc, m_dmc, m_dmc};
    const _REG_DF_LISTA_XVDMCPS lista{3, 0, aDmc, 0};
    XVUInt ulQuantidade = 0;
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg = nullptr;
    EXPECT_EQ(m_p->LeIntegracoes(&lista, &ulQuantidade, &pReg, 0), eHardIO);
    EXPECT_EQ(pReg, nullptr);
    EXPECT_EQ(ulQuantidade, 0U);
    auto achados = Lixo<_REG_DF_LISTA_XVDMCPS>();
    const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS filtro{};
    EXPECT_EQ(m_p->BuscaPonteiros(&filtro, &achados), eHardIO);
    EXPECT_TRUE(Zerado(achados));
    auto regStatus = Lixo<tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS>();
    const tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS consulta{};
    EXPECT_EQ(m_p->BuscaDadosSistemaTerceiro(&consulta, &regStatus), eHardIO);
    EXPECT_TRUE(Zerado(regStatus));
}

TEST_F(CMetodos, SucessoEntregaBuffersDoChamador) {
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg;
    ASSERT_EQ(m_p->LeIntegracao(m_dmc.uiValor, &reg, 1), S_OK);
    EXPECT_EQ(CXVStringPS::RegToString(reg.regRegistroJSON), "{\"n\":1}");
    XVLiberaBuffers(&reg);
    REG_XVDMC aDmc[2] = {m_dmc, m_dmc};
    const _REG_DF_LISTA_XVDMCPS lista{2, 0, aDmc, 0};
    XVUInt ulQuantidade = 0;
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg = nullptr;
    ASSERT_EQ(m_p->LeIntegracoes(&lista, &ulQuantidade, &pReg, 0), S_OK);
    EXPECT_EQ(ulQuantidade, 2U);
    XVLiberaIntegracoes(&ulQuantidade, &pReg);
    EXPECT_EQ(pReg, nullptr);
    XVByte aBytes[] = {1, 2, 3};
    const _REG_CR_LISTA_BYTESPS entrada{3, 0, aBytes, 0};
    _REG_CR_LISTA_BYTESPS saida{};
    ASSERT_EQ(m_p->FuncaoGenerica(9, &entrada, &saida), S_OK);
    ASSERT_EQ(saida.ulQtdBytes, 4U);
    EXPECT_EQ(std::memcmp(saida.pListaBytes, "\x03\x02\x01\x09", 4), 0);
    XVAmbienteSO::LiberaSaida(saida.pListaBytes);
}

TEST_F(CMetodos, PonteirosNulosSaoRecusadosAntesDaLogica) {
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    REG_XVDMC dmc;
    XVUInt ulQuantidade = 0;
    const _REG_DF_LISTA_XVDMCPS lista{};
    EXPECT_EQ(m_p->LeIntegracao(m_dmc.uiValor, nullptr, 0), E_POINTER);
    EXPECT_EQ(m_p->LeIntegracoes(&lista, nullptr, nullptr, 0), E_POINTER);
    EXPECT_EQ(m_p->LeIntegracoes(&lista, &ulQuantidade, nullptr, 0), E_POINTER);
    EXPECT_EQ(m_p->GravaIntegracao(nullptr, &reg), E_POINTER);
    EXPECT_EQ(m_p->GravaIntegracao(&dmc, nullptr), E_POINTER);
    EXPECT_EQ(m_p->GravaIntegracaoInstantanea(&dmc, nullptr), E_POINTER);
    EXPECT_EQ(m_p->GravaPendenciaIntegracao(0, nullptr), E_POINTER);
    EXPECT_EQ(m_p->GravaStatusIntegracao(nullptr), E_POINTER);
    EXPECT_EQ(m_p->BuscaPonteiros(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(m_p->GravaChaveRegistroTelvoParaTerceiroPendente(nullptr), E_POINTER);
    EXPECT_EQ(m_p->BuscaChaveRegistroTelvoParaTerceiro(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(m_p->GravaDataHoraIntegracaoTerceiro(nullptr), E_POINTER);
    EXPECT_EQ(m_p->BuscaDataHoraIntegracaoTerceiro(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(m_p->BuscaDadosSistemaTerceiro(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(m_p->AlteracaoMultiplaCadastro(1, nullptr), E_POINTER);
    EXPECT_EQ(m_controle.iOperacoes, 0);
}

TEST_F(CMetodos, ListasEChavesImpossiveisSaoRecusadasAntesDaLogica) {
    const _REG_DF_LISTA_XVDMCPS listaSemPonteiro{5, 0, nullptr, 0};
    XVUInt ulQuantidade = 0;
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg = nullptr;
    EXPECT_EQ(m_p->LeIntegracoes(&listaSemPonteiro, &ulQuantidade, &pReg, ~XVUInt64{0}), E_INVALIDARG);
    const _REG_CR_LISTA_BYTESPS bytesSemPonteiro{0xFFFFFFFFU, 0, nullptr, 0};
    _REG_CR_LISTA_BYTESPS saida{};
    EXPECT_EQ(m_p->FuncaoGenerica(1, &bytesSemPonteiro, &saida), E_INVALIDARG);
    EXPECT_EQ(m_p->AlteracaoMultiplaCadastro(1, &bytesSemPonteiro), E_INVALIDARG);
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    EXPECT_EQ(m_p->LeIntegracao(~XVUInt64{0}, &reg, 0), E_INVALIDARG);
    const _REG_CR_LISTA_BYTESPS vazia{};
    EXPECT_EQ(m_p->AlteracaoMultiplaMovimento(~XVUInt64{0}, &vazia), E_INVALIDARG);
    EXPECT_EQ(m_controle.iOperacoes, 0);
    // What the logic does not offer says so.
    EXPECT_EQ(m_p->AlteracaoMultiplaMovimento(m_dmc.uiValor, &vazia), E_NOTIMPL);
}
