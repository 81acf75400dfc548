// What a broken or hostile client sends through the raw interface: a code comes back, and the server goes on.
#include <windows.h>

#include <objbase.h>

#include <algorithm>
#include <cstring>
#include <functional>

#include "client/XVConexao.h"
#include "platform/XVTentativas.h"
#include "support/values/XVCrc64.h"
#include "tests/com/XVAmbienteCom.h"
#include "tests/com/XVServidores.h"

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

// With a record that is changed, and sealed again or not.
HRESULT Inicializa(IXVCR_Middleware& rComponente, const char* pszEmpresa,
                   const std::function<void(REG_DF_INICIALIZAPS&)>& fnAltera, bool bSela) {
    REG_DF_INICIALIZAPS reg;
    EXPECT_TRUE(XVCliente::MontaRegistroInicializacao({.sEmpresa = "HOSTIL", .usUsuario = 3}, &reg));
    std::fill(std::begin(reg.szEmpresa), std::end(reg.szEmpresa), '\0');
    std::copy_n(pszEmpresa, std::strlen(pszEmpresa), reg.szEmpresa);
    fnAltera(reg);
    if (bSela) reg.uiCRC = XVCrc64(&reg, offsetof(REG_DF_INICIALIZAPS, uiCRC));
    return rComponente.Inicializa(&reg);
}

}  // namespace

TEST(ClienteHostil, RecebeCodigosEOMesmoServidorContinua) {
    IXVCR_Middleware* const p = Cria();
    ASSERT_NE(p, nullptr);
    const std::vector<DWORD> listaServidores = XVServidores::Lista();
    const auto fnInicializa = [p](const char* pszEmpresa, const auto& fnAltera, bool bSela = true) {
        return Inicializa(*p, pszEmpresa, fnAltera, bSela);
    };
    EXPECT_EQ(fnInicializa("HOSTIL", [](auto& r) { r.usVersao = 126; }), XVHResult(0x81080BFDU));
    EXPECT_EQ(fnInicializa(
                  "HOSTIL", [](auto& r) { r.uiCRC ^= 1; }, false),
              XVHResult(0x81080C17U));
    EXPECT_EQ(fnInicializa("..\\..", [](auto&) {}), E_INVALIDARG);
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    EXPECT_EQ(p->LeIntegracao(0, &reg, 0), XVHResult(0x81080A04U));
    EXPECT_EQ(::GetFileAttributesA((DiretorioModulo() + "\\HOSTIL").c_str()), INVALID_FILE_ATTRIBUTES);

    // Counts without a pointer, and pointers that carry nothing: those do not even leave the client.
    ASSERT_EQ(fnInicializa(NovaEmpresa().c_str(), [](auto&) {}), S_OK);
    reg.regMensagemIntegracao.ulQtdBytes = 0xFFFFFFFFU;
    REG_XVDMC dmc{0};
    EXPECT_EQ(p->GravaIntegracao(&dmc, &reg), E_INVALIDARG);
    const _REG_DF_LISTA_XVDMCPS lista{100, 0, nullptr, 0};
    XVUInt ulQuantidade = 7;
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pLista = nullptr;
    EXPECT_EQ(p->LeIntegracoes(&lista, &ulQuantidade, &pLista, 0), E_INVALIDARG);
    EXPECT_EQ(pLista, nullptr);
    tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS filtro{};
    filtro.ulQuantidadeStatusIntegracao = 3;
    _REG_DF_LISTA_XVDMCPS achados{};
    EXPECT_EQ(p->BuscaPonteiros(&filtro, &achados), E_INVALIDARG);
    const _REG_CR_LISTA_BYTESPS bytes{9, 0, nullptr, 0};
    EXPECT_EQ(p->AlteracaoMultiplaCadastro(1, &bytes), E_INVALIDARG);
    EXPECT_EQ(p->BuscaPonteiros(nullptr, &achados), E_POINTER);
    EXPECT_EQ(p->GravaIntegracao(nullptr, &reg), XVHResult(0x800706F4U));
    EXPECT_EQ(p->Inicializa(nullptr), XVHResult(0x800706F4U));

    XVLongPS lInicializado = 0;
    EXPECT_EQ(p->EstaInicializado(&lInicializado), S_OK);
    EXPECT_EQ(lInicializado, 1);
    EXPECT_EQ(XVServidores::Lista(), listaServidores);
    p->Release();
}
