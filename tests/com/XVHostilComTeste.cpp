// What a broken or hostile client sends through the raw interface: a code comes back, and the server goes on.
#include "tests/com/XVAmbienteCom.h"
#include "tests/com/XVComponenteCru.h"
#include "tests/com/XVServidores.h"

using namespace XVAmbienteCom;

TEST(ClienteHostil, RecebeCodigosEOMesmoServidorContinua) {
    const XVComponenteCru::PComponente p = XVComponenteCru::Cria();
    ASSERT_NE(p, nullptr);
    const std::vector<DWORD> listaServidores = XVServidores::Lista();
    const auto fnInicializa = [&p](const std::string& sEmpresa, const auto& fnAltera, bool bSela = true) {
        return XVComponenteCru::Inicializa(*p, sEmpresa, fnAltera, bSela);
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
    ASSERT_EQ(fnInicializa(NovaEmpresa(), [](auto&) {}), S_OK);
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
}
