// The method layer: outputs cleared on entry and after a failure, and what is refused before the store. What
// each method hands over and brings back is tested with the client.
#include "tests/xvrpcdll/XVCenarioComponente.h"

namespace {

class CMetodos : public CCenarioComponente {
  protected:
    const REG_XVDMC m_dmc = REG_XVDMC::Cria(1, 15, REG_XVDMA::Cria(2026, 11, 21));
    REG_XVDMC m_aDmc[3] = {m_dmc, m_dmc, m_dmc};
    const _REG_DF_LISTA_XVDMCPS m_lista{3, 0, m_aDmc, 0};

    void SetUp() override { ASSERT_EQ(Inicializa(*m_p), S_OK); }
    // What a caller leaves in an output is never freed or handed back by a call that fails with hr, and
    // neither is what the operation had put there.
    void EsperaSaidasLimpas(CComponenteFalso& r, HRESULT hr) const {
        const auto limpa = [hr](auto reg, auto fnChamada) {
            const auto regZero = reg;
            std::memset(static_cast<void*>(&reg), 0xAA, sizeof(reg));
            EXPECT_EQ(fnChamada(&reg), hr);
            EXPECT_EQ(std::memcmp(&reg, &regZero, sizeof(reg)), 0);
        };
        const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS filtro{};
        const tagREG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS chave{};
        const tagREG_CR_FILTRO_DATA_HORA_INTEGRACAO_TERCEIROPS dataHora{};
        const tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS consulta{};
        const _REG_CR_LISTA_BYTESPS entrada{};
        limpa(tagREG_CR_INTEGRACAO_MIDDLEWAREPS{},
              [&](auto* p) { return r.LeIntegracao(m_dmc.uiValor, p, 7); });
        limpa(_REG_DF_LISTA_XVDMCPS{}, [&](auto* p) { return r.BuscaPonteiros(&filtro, p); });
        limpa(tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS{},
              [&](auto* p) { return r.BuscaDadosSistemaTerceiro(&consulta, p); });
        limpa(_REG_CR_LISTA_BYTESPS{}, [&](auto* p) { return r.FuncaoGenerica(1, &entrada, p); });
        limpa(tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS{},
              [&](auto* p) { return r.BuscaChaveRegistroTelvoParaTerceiro(&chave, p); });
        limpa(tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS{},
              [&](auto* p) { return r.BuscaDataHoraIntegracaoTerceiro(&dataHora, p); });
        XVUInt ulQuantidade = 99;
        auto* pLista = reinterpret_cast<tagREG_CR_INTEGRACAO_MIDDLEWAREPS*>(16);
        EXPECT_EQ(r.LeIntegracoes(&m_lista, &ulQuantidade, &pLista, 0), hr);
        EXPECT_EQ(ulQuantidade, 0U);
        EXPECT_EQ(pLista, nullptr);
    }
};

}  // namespace

TEST_F(CMetodos, FalhaNaoEntregaNadaNemDoQueJaEstavaPreenchido) {
    EsperaSaidasLimpas(*CReferencia(), E_XVCR_COMPONENTE_NAO_INICIALIZADO);
    m_controle.fnOperacao = [] { return eHardIO; };
    EsperaSaidasLimpas(*m_p, eHardIO);
}

// The address sanitizer keeps what was freed, up to 256 MiB, and says by itself what never is.
#ifdef XV_GUARDA_LIBERADA
constexpr XVUInt64 k_uiMemoriaQueFica = XVUInt64{1} << 30;
#else
constexpr XVUInt64 k_uiMemoriaQueFica = XVUInt64{12} << 20;
#endif

// What a failing list had filled is freed: a million texts leave no trace in the memory of the process.
TEST_F(CMetodos, FalhaDeListaDevolveTodosOsTextos) {
    m_controle.fnOperacao = [] { return eHardIO; };
    std::vector<REG_XVDMC> dmcs(1000, m_dmc);
    const _REG_DF_LISTA_XVDMCPS lista{static_cast<XVUInt>(dmcs.size()), 0, dmcs.data(), 0};
    const auto falha = [&] {
        XVUInt ulQuantidade = 0;
        tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg = nullptr;
        const CXVCapturaTrace captura;
        EXPECT_EQ(m_p->LeIntegracoes(&lista, &ulQuantidade, &pReg, 0), eHardIO);
    };
    falha();
    const XVUInt64 uiAntes = XVAmbienteSO::GetMemoriaPrivadaProcesso();
    for (int i = 0; i < 1000; ++i) falha();
    EXPECT_LT(XVAmbienteSO::GetMemoriaPrivadaProcesso(), uiAntes + k_uiMemoriaQueFica);
}

TEST_F(CMetodos, PonteirosNulosListasEChavesImpossiveisSaoRecusadosAntesDaLogica) {
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    REG_XVDMC dmc;
    XVUInt ulQuantidade = 9;
    for (const HRESULT hr :
         {m_p->LeIntegracao(m_dmc.uiValor, nullptr, 0), m_p->LeIntegracoes(&m_lista, nullptr, nullptr, 0),
          m_p->LeIntegracoes(&m_lista, &ulQuantidade, nullptr, 0), m_p->GravaIntegracao(nullptr, &reg),
          m_p->GravaIntegracao(&dmc, nullptr), m_p->GravaIntegracaoInstantanea(&dmc, nullptr),
          m_p->GravaIntegracaoInstantanea(nullptr, &reg), m_p->GravaPendenciaIntegracao(0, nullptr),
          m_p->GravaStatusIntegracao(nullptr), m_p->BuscaPonteiros(nullptr, nullptr),
          m_p->GravaChaveRegistroTelvoParaTerceiro(nullptr),
          m_p->GravaChaveRegistroTelvoParaTerceiroPendente(nullptr),
          m_p->BuscaChaveRegistroTelvoParaTerceiro(nullptr, nullptr),
          m_p->GravaDataHoraIntegracaoTerceiro(nullptr),
          m_p->BuscaDataHoraIntegracaoTerceiro(nullptr, nullptr),
          m_p->BuscaDadosSistemaTerceiro(nullptr, nullptr), m_p->AlteracaoMultiplaCadastro(1, nullptr),
          m_p->GetUltimoErro(nullptr), m_p->EstaInicializado(nullptr)})
        EXPECT_EQ(hr, E_POINTER);
    EXPECT_EQ(ulQuantidade, 0U);

    const _REG_DF_LISTA_XVDMCPS listaSemPonteiro{5, 0, nullptr, 0};
    REG_XVDMC aComData[] = {m_dmc, m_dmc, REG_XVDMC::Cria(1, 15, REG_XVDMA::Cria(2026, 2, 30))};
    REG_XVDMC aComPonteiro[] = {REG_XVDMC::Cria(1, 0, REG_XVDMA::Cria(2026, 11, 21)), m_dmc};
    const _REG_DF_LISTA_XVDMCPS listaComData{3, 0, aComData, 0};
    const _REG_DF_LISTA_XVDMCPS listaComPonteiro{2, 0, aComPonteiro, 0};
    const _REG_CR_LISTA_BYTESPS bytesSemPonteiro{0xFFFFFFFFU, 0, nullptr, 0};
    const _REG_CR_LISTA_BYTESPS vazia{};
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg = nullptr;
    _REG_CR_LISTA_BYTESPS saida{};
    for (const HRESULT hr :
         {m_p->LeIntegracoes(&listaSemPonteiro, &ulQuantidade, &pReg, ~XVUInt64{0}),
          m_p->LeIntegracoes(&listaComData, &ulQuantidade, &pReg, 0),
          m_p->LeIntegracoes(&listaComPonteiro, &ulQuantidade, &pReg, 0),
          m_p->FuncaoGenerica(1, &bytesSemPonteiro, &saida),
          m_p->AlteracaoMultiplaCadastro(1, &bytesSemPonteiro), m_p->LeIntegracao(~XVUInt64{0}, &reg, 0),
          m_p->AlteracaoMultiplaMovimento(~XVUInt64{0}, &vazia)})
        EXPECT_EQ(hr, E_INVALIDARG);
    EXPECT_EQ(m_controle.iOperacoes, 0);
}

// The store offers no operation of these two kinds; another component of the suite would.
TEST_F(CMetodos, OperacoesGenericasEntregamBytesETrazemOsSeus) {
    XVByte aBytes[] = {1, 2, 3};
    const _REG_CR_LISTA_BYTESPS entrada{3, 0, aBytes, 0};
    _REG_CR_LISTA_BYTESPS saida;
    EXPECT_EQ(m_p->FuncaoGenerica(9, &entrada, &saida), S_OK);
    ASSERT_EQ(saida.ulQtdBytes, 4U);
    EXPECT_EQ(std::memcmp(saida.pListaBytes, "\x03\x02\x01\x09", 4), 0);
    XVAmbienteSO::LiberaSaida(saida.pListaBytes);
    EXPECT_EQ(m_p->AlteracaoMultiplaMovimento(m_dmc.uiValor, &entrada), E_NOTIMPL);
}
