// What a broken or hostile client sends through the raw interface: a code comes back, and the server goes on.
#include <gtest/gtest.h>
#include <windows.h>

#include <objbase.h>

#include <cstring>
#include <functional>

#include "client/XVConexao.h"
#include "contract/XVCR_BuffersPS.h"
#include "platform/XVTentativas.h"
#include "support/values/XVCrc64.h"
#include "tests/com/XVAmbienteCom.h"
#include "tests/com/XVProcesso.h"

namespace {

using namespace XVAmbienteCom;

// Asked again while the server of the test before is ending, which has many codes.
IXVCR_Middleware* Cria() {
    CLSID clsid;
    IXVCR_Middleware* p = nullptr;
    EXPECT_EQ(::CLSIDFromProgID(L"XVCR.Middleware.1", &clsid), S_OK);
    const auto cria = [&] {
        return ::CoCreateInstance(clsid, nullptr, CLSCTX_LOCAL_SERVER, IXVCR_Middleware::k_iidInterface,
                                  reinterpret_cast<void**>(&p));
    };
    EXPECT_EQ(XVTenta(k_iTentativasLongas, cria, [](HRESULT hr) { return FAILED(hr); }), S_OK);
    return p;
}

class CHostil : public ::testing::Test {
  protected:
    void SetUp() override {
        m_p = Cria();
        ASSERT_NE(m_p, nullptr);
        m_listaServidores = XVProcessos::Servidores();
    }
    // Whatever the test did: the same server still answers.
    void TearDown() override {
        if (m_p == nullptr) return;
        XVLongPS lInicializado = 0;
        EXPECT_EQ(m_p->EstaInicializado(&lInicializado), S_OK);
        EXPECT_EQ(lInicializado, 1);
        EXPECT_EQ(XVProcessos::Servidores(), m_listaServidores);
        m_p->Release();
    }
    static REG_DF_INICIALIZAPS Registro(const std::string& sEmpresa) {
        REG_DF_INICIALIZAPS reg;
        EXPECT_TRUE(XVCliente::MontaRegistroInicializacao({.sEmpresa = sEmpresa, .usUsuario = 3}, &reg));
        return reg;
    }
    HRESULT InicializaAlterado(const std::function<void(REG_DF_INICIALIZAPS&)>& fnAltera, bool bSela = true) {
        REG_DF_INICIALIZAPS reg = Registro("HOSTIL");
        fnAltera(reg);
        if (bSela) reg.uiCRC = XVCrc64(&reg, offsetof(REG_DF_INICIALIZAPS, uiCRC));
        return m_p->Inicializa(&reg);
    }

    IXVCR_Middleware* m_p = nullptr;
    std::vector<DWORD> m_listaServidores;
};

template <std::size_t N>
void Poe(char (&aCampo)[N], const char* pszTexto) {
    std::memset(aCampo, 0, N);
    std::memcpy(aCampo, pszTexto, std::strlen(pszTexto));
}

}  // namespace

TEST_F(CHostil, RegistrosDeInicializacao) {
    EXPECT_EQ(InicializaAlterado([](auto& r) { r.usVersao = 126; }), Codigo(0x81080BFDU));
    EXPECT_EQ(InicializaAlterado([](auto& r) { r.uiCRC ^= 1; }, false), Codigo(0x81080C17U));
    EXPECT_EQ(InicializaAlterado([](auto& r) { r.cMarca = 0; }), Codigo(0x81080C19U));
    EXPECT_EQ(InicializaAlterado([](auto& r) { std::memset(r.szEmpresa, 'A', 48); }), Codigo(0x81080C19U));
    EXPECT_EQ(InicializaAlterado([](auto& r) { r.ulUsuario = 65535; }), E_INVALIDARG);
    for (const char* pszEmpresa : {"..", "..\\..", "C:\\X", "CON", ""})
        EXPECT_EQ(InicializaAlterado([&](auto& r) { Poe(r.szEmpresa, pszEmpresa); }), E_INVALIDARG)
            << pszEmpresa;
    EXPECT_EQ(::GetFileAttributesA((DiretorioModulo() + "\\HOSTIL").c_str()), INVALID_FILE_ATTRIBUTES);
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    EXPECT_EQ(m_p->LeIntegracao(0, &reg, 0), Codigo(0x81080A04U));
}

TEST_F(CHostil, ContagensSemPonteiroEPonteirosNulos) {
    const REG_DF_INICIALIZAPS regInicializa = Registro(NovaEmpresa());
    ASSERT_EQ(m_p->Inicializa_Padrao(&regInicializa), S_OK);
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    reg.eTipoIntegracao = 9;
    reg.eStatusIntegracao = 1;
    reg.eSistemaIntegracao = 2;
    reg.eTipoTransacao = 1;
    reg.regRegistroJSON.ulQtdBytes = 5;
    REG_XVDMC dmc{0};
    EXPECT_EQ(m_p->GravaIntegracao(&dmc, &reg), E_INVALIDARG);
    reg.regRegistroJSON.ulQtdBytes = 0;
    reg.regMensagemIntegracao.ulQtdBytes = 0xFFFFFFFFU;
    EXPECT_EQ(m_p->GravaIntegracao(&dmc, &reg), E_INVALIDARG);
    EXPECT_EQ(dmc.uiValor, 0U);

    const _REG_DF_LISTA_XVDMCPS lista{100, 0, nullptr, 0};
    XVUInt ulQuantidade = 7;
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pLista = nullptr;
    EXPECT_EQ(m_p->LeIntegracoes(&lista, &ulQuantidade, &pLista, 0), E_INVALIDARG);
    EXPECT_EQ(pLista, nullptr);
    tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS filtro{};
    filtro.ulQuantidadeStatusIntegracao = 3;
    _REG_DF_LISTA_XVDMCPS achados{};
    EXPECT_EQ(m_p->BuscaPonteiros(&filtro, &achados), E_INVALIDARG);
    const _REG_CR_LISTA_BYTESPS bytes{9, 0, nullptr, 0};
    EXPECT_EQ(m_p->AlteracaoMultiplaCadastro(1, &bytes), E_INVALIDARG);
    EXPECT_EQ(m_p->AlteracaoMultiplaMovimento(0, &bytes), E_INVALIDARG);
    EXPECT_EQ(m_p->GravaIntegracao(&dmc, nullptr), E_POINTER);
    EXPECT_EQ(m_p->BuscaPonteiros(nullptr, &achados), E_POINTER);
    EXPECT_EQ(m_p->LeIntegracoes(nullptr, &ulQuantidade, &pLista, 0), E_POINTER);
    // Where there is nothing to carry, the call does not even leave the client.
    EXPECT_EQ(m_p->GravaIntegracao(nullptr, &reg), Codigo(0x800706F4U));
    EXPECT_EQ(m_p->Inicializa(nullptr), Codigo(0x800706F4U));
}

TEST_F(CHostil, ValoresImpossiveisNaoGravamNada) {
    const REG_DF_INICIALIZAPS regInicializa = Registro(NovaEmpresa());
    ASSERT_EQ(m_p->Inicializa_Padrao(&regInicializa), S_OK);
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS regBoa{};
    regBoa.eTipoIntegracao = 9;
    regBoa.eStatusIntegracao = 1;
    regBoa.eSistemaIntegracao = 2;
    regBoa.eTipoTransacao = 1;
    REG_XVDMC dmc{0};
    const auto grava = [&](const std::function<void(tagREG_CR_INTEGRACAO_MIDDLEWAREPS&)>& fnAltera) {
        tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg = regBoa;
        fnAltera(reg);
        dmc.uiValor = 0;
        return m_p->GravaIntegracao(&dmc, &reg);
    };
    EXPECT_LT(grava([](auto& r) { r.eTipoIntegracao = 18; }), 0);
    EXPECT_LT(grava([](auto& r) { r.eStatusIntegracao = ~0U; }), 0);
    EXPECT_LT(grava([](auto& r) { r.regDmcMovimentoOrigem.uiValor = ~0ULL; }), 0);
    EXPECT_LT(grava([](auto& r) { r.regDataHoraInclusao.uiValor = ~0ULL; }), 0);
    dmc.uiValor = ~0ULL;
    EXPECT_EQ(m_p->GravaIntegracao(&dmc, &regBoa), E_INVALIDARG);
    tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS filtro{};
    _REG_DF_LISTA_XVDMCPS achados{};
    EXPECT_EQ(m_p->BuscaPonteiros(&filtro, &achados), S_OK);
    EXPECT_EQ(achados.ulQuantidade, 0U);

    ASSERT_EQ(grava([](auto&) {}), S_OK);
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS lida{};
    // All flags at once ask for an exchange with the simulation as well.
    EXPECT_EQ(m_p->LeIntegracao(dmc.uiValor, &lida, ~0ULL), S_OK);
    EXPECT_EQ(lida.regDmc.uiValor, dmc.uiValor);
    XVLiberaBuffers(&lida);
    EXPECT_EQ(m_p->LeIntegracao(~0ULL, &lida, 7), E_INVALIDARG);
}
