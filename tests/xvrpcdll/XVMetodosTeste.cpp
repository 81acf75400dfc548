// The method layer: what it hands to the store, outputs cleared on entry and after a failure, and what is
// refused before the store.
#include <gtest/gtest.h>

#include <cstring>

#include "support/trace/XVCapturaTrace.h"
#include "tests/xvrpcdll/XVLogicaFalsa.h"

namespace {

// A record every byte of which is another one.
template <class TRegistro>
TRegistro Cheio(XVByte ucPrimeiro = 1) {
    TRegistro reg;
    auto* p = reinterpret_cast<XVByte*>(&reg);
    for (std::size_t i = 0; i < sizeof(reg); ++i) p[i] = static_cast<XVByte>(ucPrimeiro + i);
    return reg;
}

template <class TRegistro>
bool Zerado(const TRegistro& reg) {
    const TRegistro regZero{};
    return std::memcmp(&reg, &regZero, sizeof(reg)) == 0;
}

class CMetodos : public ::testing::Test {
  protected:
    SControleLogica m_controle;
    CXVCapturaTrace m_captura;
    CReferencia<CComponenteFalso> m_p;
    const REG_XVDMC m_dmc = REG_XVDMC::Cria(1, 15, REG_XVDMA::Cria(2026, 11, 21));
    REG_XVDMC m_aDmc[3] = {m_dmc, m_dmc, m_dmc};
    const _REG_DF_LISTA_XVDMCPS m_lista{3, 0, m_aDmc, 0};

    void SetUp() override {
        const REG_DF_INICIALIZAPS reg = RegistroValido();
        ASSERT_EQ(m_p->Inicializa_Padrao(&reg), S_OK);
    }
    // A call as any client makes it: by the number of the method's slot.
    template <class... TArgumentos>
    void EsperaNoSlot(const std::string& sChamada, std::size_t uiSlot, TArgumentos... argumentos) {
        using PFMetodo = HRESULT(STDMETHODCALLTYPE*)(void*, TArgumentos...);
        void* p = static_cast<IXVCR_Middleware*>(m_p.operator->());
        EXPECT_EQ(reinterpret_cast<PFMetodo>((*static_cast<void***>(p))[uiSlot])(p, argumentos...), S_OK);
        EXPECT_TRUE(m_controle.sChamada == sChamada) << "slot " << uiSlot << ": " << m_controle.sChamada;
    }
    // What a caller leaves in an output is never freed or handed back by a call that fails with hr, and
    // neither is what the operation had put there.
    void EsperaSaidasLimpas(CComponenteFalso& r, HRESULT hr) const {
        const auto limpa = [hr](auto reg, auto fnChamada) {
            reg = Cheio<decltype(reg)>();
            EXPECT_EQ(fnChamada(&reg), hr);
            EXPECT_TRUE(Zerado(reg));
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
        XVUInt ulQuantidade = 99;
        auto* pLista = reinterpret_cast<tagREG_CR_INTEGRACAO_MIDDLEWAREPS*>(16);
        EXPECT_EQ(r.LeIntegracoes(&m_lista, &ulQuantidade, &pLista, 0), hr);
        EXPECT_EQ(ulQuantidade, 0U);
        EXPECT_EQ(pLista, nullptr);
        if (hr != E_XVCR_COMPONENTE_NAO_INICIALIZADO) return;  // these two have nothing to free
        limpa(tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS{},
              [&](auto* p) { return r.BuscaChaveRegistroTelvoParaTerceiro(&chave, p); });
        limpa(tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS{},
              [&](auto* p) { return r.BuscaDataHoraIntegracaoTerceiro(&dataHora, p); });
    }
};

}  // namespace

TEST_F(CMetodos, CadaSlotQueGravaEntregaTudoASuaOperacao) {
    const auto reg = Cheio<tagREG_CR_INTEGRACAO_MIDDLEWAREPS>();
    const auto regStatus = Cheio<tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS>(2);
    const auto regChave = Cheio<tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS>(3);
    const auto regDataHora = Cheio<tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS>(4);
    REG_XVDMC regDmc = m_dmc;
    EsperaNoSlot(XVChamada("GravaIntegracaoInstantanea", regDmc, reg), 12, &regDmc, &reg);
    EsperaNoSlot(XVChamada("GravaIntegracao", regDmc, reg), 13, &regDmc, &reg);
    EsperaNoSlot(XVChamada("GravaPendenciaIntegracao", regDmc, reg), 14, regDmc.uiValor, &reg);
    EsperaNoSlot(XVChamada("GravaStatusIntegracao", regStatus), 15, &regStatus);
    EsperaNoSlot(XVChamada("GravaChaveRegistroTelvoParaTerceiro", regChave), 17, &regChave);
    EsperaNoSlot(XVChamada("GravaChaveRegistroTelvoParaTerceiroPendente", regChave), 19, &regChave);
    EsperaNoSlot(XVChamada("GravaDataHoraIntegracaoTerceiro", regDataHora), 20, &regDataHora);
}

// What the operation answered, in buffers that are the caller's.
TEST_F(CMetodos, CadaSlotQueRespondeEntregaTudoETrazAResposta) {
    const auto filtro = Cheio<tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS>(5);
    const auto filtroChave = Cheio<tagREG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS>(6);
    const auto filtroDataHora = Cheio<tagREG_CR_FILTRO_DATA_HORA_INTEGRACAO_TERCEIROPS>(7);
    const auto consulta = Cheio<tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS>(8);
    const REG_XVDMC regDmc = m_dmc;
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS lida;
    EsperaNoSlot(XVChamada("LeIntegracao", regDmc, XVUInt64{5}), 10, regDmc.uiValor, &lida, XVUInt64{5});
    EXPECT_EQ(CXVStringPS::RegToString(lida.regRegistroJSON), "{\"n\":1}");
    XVLiberaBuffers(&lida);
    XVUInt ulQuantidade = 0;
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pLidas = nullptr;
    EsperaNoSlot(XVChamada("LeIntegracoes", m_lista, XVUInt64{6}), 11, &m_lista, &ulQuantidade, &pLidas,
                 XVUInt64{6});
    EXPECT_EQ(ulQuantidade, 3U);
    XVLiberaIntegracoes(&ulQuantidade, &pLidas);
    EXPECT_EQ(pLidas, nullptr);
    _REG_DF_LISTA_XVDMCPS achadas;
    EsperaNoSlot(XVChamada("BuscaPonteiros", filtro), 16, &filtro, &achadas);
    EXPECT_EQ(achadas.ulQuantidade, 2U);
    XVLiberaBuffers(&achadas);
    tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS chave;
    EsperaNoSlot(XVChamada("BuscaChaveRegistroTelvoParaTerceiro", filtroChave), 18, &filtroChave, &chave);
    EXPECT_EQ(chave.eTipoIntegracao, 4U);
    tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS dataHora;
    EsperaNoSlot(XVChamada("BuscaDataHoraIntegracaoTerceiro", filtroDataHora), 21, &filtroDataHora,
                 &dataHora);
    EXPECT_EQ(dataHora.eTipoData, 5U);
    tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS status;
    EsperaNoSlot(XVChamada("BuscaDadosSistemaTerceiro", consulta), 22, &consulta, &status);
    EXPECT_EQ(status.eStatusConsulta, 2U);
    XVLiberaBuffers(&status);
    XVByte aBytes[] = {1, 2, 3};
    const _REG_CR_LISTA_BYTESPS entrada{3, 0, aBytes, 0};
    _REG_CR_LISTA_BYTESPS saida;
    EsperaNoSlot(XVChamada("FuncaoGenerica", XVUInt{9}), 6, XVUInt{9}, &entrada, &saida);
    ASSERT_EQ(saida.ulQtdBytes, 4U);
    EXPECT_EQ(std::memcmp(saida.pListaBytes, "\x03\x02\x01\x09", 4), 0);
    XVAmbienteSO::LiberaSaida(saida.pListaBytes);
    EsperaNoSlot(XVChamada("AlteracaoMultiplaCadastro", XVUInt{8}, std::span<const XVByte>(aBytes)), 7,
                 XVUInt{8}, &entrada);
}

TEST_F(CMetodos, FalhaNaoEntregaNadaNemDoQueJaEstavaPreenchido) {
    EsperaSaidasLimpas(*CReferencia<CComponenteFalso>(), E_XVCR_COMPONENTE_NAO_INICIALIZADO);
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

TEST_F(CMetodos, PonteirosNulosSaoRecusadosAntesDaLogica) {
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
          m_p->BuscaDadosSistemaTerceiro(nullptr, nullptr), m_p->AlteracaoMultiplaCadastro(1, nullptr)})
        EXPECT_EQ(hr, E_POINTER);
    EXPECT_EQ(ulQuantidade, 0U);
    EXPECT_EQ(m_controle.iOperacoes, 0);
}

TEST_F(CMetodos, ListasEChavesImpossiveisSaoRecusadasAntesDaLogica) {
    const _REG_DF_LISTA_XVDMCPS listaSemPonteiro{5, 0, nullptr, 0};
    XVUInt ulQuantidade = 0;
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg = nullptr;
    const _REG_CR_LISTA_BYTESPS bytesSemPonteiro{0xFFFFFFFFU, 0, nullptr, 0};
    const _REG_CR_LISTA_BYTESPS vazia{};
    _REG_CR_LISTA_BYTESPS saida{};
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    for (const HRESULT hr :
         {m_p->LeIntegracoes(&listaSemPonteiro, &ulQuantidade, &pReg, ~XVUInt64{0}),
          m_p->FuncaoGenerica(1, &bytesSemPonteiro, &saida),
          m_p->AlteracaoMultiplaCadastro(1, &bytesSemPonteiro), m_p->LeIntegracao(~XVUInt64{0}, &reg, 0),
          m_p->AlteracaoMultiplaMovimento(~XVUInt64{0}, &vazia)})
        EXPECT_EQ(hr, E_INVALIDARG);
    EXPECT_EQ(m_controle.iOperacoes, 0);
    // What the logic does not offer says so.
    EXPECT_EQ(m_p->AlteracaoMultiplaMovimento(m_dmc.uiValor, &vazia), E_NOTIMPL);
}
