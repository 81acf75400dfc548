// The door to a component in this process, and what is this door's alone: the directory that it names
// and who it says that it is. Viewing is tested with the store and with the command-line program.
#ifdef __linux__
#include <malloc.h>
#endif

#include <cstring>
#include <functional>

#include "client/XVConexao.h"
#include "platform/XVAmbienteSO.h"
#include "support/XVAmbiente.h"
#include "support/codes/XVCodigos.h"
#include "tests/client/XVPortaTeste.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"

namespace {

using namespace XVPortaTeste;

const std::string& DiretorioModulo() {
    static const CXVDiretorioTeste s_diretorio;
    static const std::string s_sCaminho = s_diretorio.GetCaminho();
    return s_sCaminho;
}

}  // namespace

namespace XVPortaTeste {

HRESULT Conecta(XVCliente::CXVCliente& rCliente, const XVCliente::SIdentificacao& rIdentificacao) {
    return rCliente.ConectaLocal(rIdentificacao, {.sDiretorio = DiretorioModulo()});
}

std::string DiretorioEmpresa(const std::string& sEmpresa) {
    return DiretorioModulo() + "/" + sEmpresa + "/DF";
}

}  // namespace XVPortaTeste

TEST(PortaLocal, OutroDiretorioSoDepoisDeDesconectar) {
    const CXVDiretorioTeste outro;
    const XVCliente::SLojaLocal loja{.sDiretorio = outro.GetCaminho()};
    const std::string sEmpresa = NovaEmpresa();
    XVCliente::CXVCliente primeiro;
    XVCliente::CXVCliente segundo;
    ASSERT_EQ(Conecta(primeiro, {.sEmpresa = sEmpresa}), S_OK);
    ASSERT_EQ(segundo.ConectaLocal({.sEmpresa = sEmpresa}, loja), E_INVALIDARG);
    EXPECT_FALSE(segundo.EstaConectado());
    EXPECT_FALSE(std::filesystem::exists(outro.Junta(sEmpresa)));
    // A second client of the same store shares it.
    ASSERT_EQ(Conecta(segundo, {.sEmpresa = sEmpresa}), S_OK);
    REG_XVDMC regDmc;
    EXPECT_EQ(primeiro.GravaIntegracao(&regDmc, IntegracaoPendente("{}")), S_OK);
    EXPECT_EQ(Conta(segundo), 1U);
    EXPECT_EQ(primeiro.Desconecta(), S_OK);
    EXPECT_EQ(Conta(segundo), 1U);

    ASSERT_EQ(segundo.ConectaLocal({.sEmpresa = sEmpresa}, loja), S_OK);
    EXPECT_EQ(Conta(segundo), 0U);
    EXPECT_TRUE(std::filesystem::exists(outro.Junta(sEmpresa)));
}

TEST(PortaLocal, IdentificacaoImpossivelNaoAbreNada) {
    XVCliente::CXVCliente cliente;
    for (const XVCliente::SIdentificacao& r : {XVCliente::SIdentificacao{.sEmpresa = std::string(48, 'A')},
                                               {.sEmpresa = "../X"},
                                               {.sEmpresa = ""},
                                               {.sEmpresa = std::string("A\0B", 3)},
                                               {.sEmpresa = "A", .usUsuario = 65535},
                                               {.sEmpresa = "A", .sModulo = std::string(48, 'm')}}) {
        EXPECT_EQ(Conecta(cliente, r), E_INVALIDARG) << r.sEmpresa;
        EXPECT_FALSE(cliente.EstaConectado());
    }
    EXPECT_EQ(Conecta(cliente, {.sEmpresa = "A", .ulNumeroChamador = 0}),
              E_XVCR_ESTRUTURA_INICIALIZACAO_INVALIDA);
    EXPECT_FALSE(std::filesystem::exists(DiretorioModulo() + "/A"));
    EXPECT_EQ(cliente.Desconecta(), S_OK);
    REG_XVDMC regDmc;
    EXPECT_EQ(cliente.GravaIntegracao(&regDmc, {}), E_XVCR_COMPONENTE_NAO_INICIALIZADO);
}

TEST(PortaLocal, RegistroDeInicializacaoSaiSeladoEDizQuemChama) {
    REG_DF_INICIALIZAPS reg;
    ASSERT_TRUE(XVCliente::MontaRegistroInicializacao({.sEmpresa = "UM",
                                                       .usUsuario = 7,
                                                       .ulNumeroSessao = 42,
                                                       .ulNumeroChamador = 9,
                                                       .sExecutavel = "programa",
                                                       .sModulo = "modulo",
                                                       .sIdentificacao = "quem"},
                                                      &reg));
    REG_DF_INICIALIZAPS esperado{};
    esperado.ulUsuario = 7;
    esperado.ulNumeroSessao = 42;
    esperado.ulNumeroChamador = 9;
    esperado.ucSessaoRemota = XVAmbienteSO::EhSessaoRemota() ? 1 : 0;
    std::strcpy(esperado.szEmpresa, "UM");
    std::strcpy(esperado.szExecutavel, "programa");
    std::strcpy(esperado.szModulo, "modulo");
    std::strcpy(esperado.szIdentificacao, "quem");
    XVAmbienteSO::GetNomeUsuario().copy(esperado.szUsuarioLocal, sizeof(esperado.szUsuarioLocal) - 1);
    XVRegistroInicializacao::Sela(&esperado);
    EXPECT_EQ(std::memcmp(&reg, &esperado, sizeof(reg)), 0);
    EXPECT_TRUE(XVRegistroInicializacao::CRCConfere(reg) && XVRegistroInicializacao::EstruturaConfere(reg));
    ASSERT_TRUE(XVCliente::MontaRegistroInicializacao({.sEmpresa = "UM"}, &reg));
    for (const char* psz : {reg.szExecutavel, reg.szModulo, reg.szIdentificacao})
        EXPECT_TRUE(std::string(psz).starts_with("xv_teste_")) << psz;
}

#ifdef __linux__
// Of what the component handed out nothing stays behind; a sanitizer that counts for itself shows nothing
// here and finds it at the end.
TEST(PortaLocal, NenhumaLeituraDeixaBuffersParaTras) {
    XVCliente::CXVCliente cliente;
    ASSERT_EQ(Conecta(cliente, {.sEmpresa = NovaEmpresa()}), S_OK);
    std::vector<REG_XVDMC> lista(200);
    for (REG_XVDMC& rDmc : lista)
        ASSERT_EQ(cliente.GravaIntegracao(&rDmc, IntegracaoPendente(std::string(2000, 'j'))), S_OK);
    const auto emUso = [] {
        const auto memoria = mallinfo2();
        return memoria.uordblks + memoria.hblkhd;
    };
    const std::function<void()> aLeituras[] = {
        [&] {
            CXVDadosCR_IntegracaoMiddleware dados;
            EXPECT_EQ(cliente.LeIntegracao(lista[0], k_ullLeTextos, &dados), S_OK);
        },
        [&] {
            std::vector<CXVDadosCR_IntegracaoMiddleware> lidas;
            EXPECT_EQ(cliente.LeIntegracoes(lista, k_ullLeTextos, &lidas), S_OK);
        },
        [&] { EXPECT_EQ(Conta(cliente), lista.size()); },
        [&] {
            std::vector<REG_XVDMC> ultimas;
            EXPECT_EQ(cliente.UltimasGravadas(&ultimas), S_OK);
        },
    };
    for (const auto& fnLe : aLeituras) {
        fnLe();
        const std::size_t uiAntes = emUso();
        for (int i = 0; i < 50; ++i) fnLe();
        EXPECT_LT(emUso(), uiAntes + 20000) << &fnLe - aLeituras;
    }
}
#endif

// Beside a directory that is named every other setting is the machine's own, and afterwards all are.
TEST(PortaLocal, DiretorioNomeadoSoTrocaOCaminho) {
    const CXVDiretorioTeste diretorio;
    const std::string sChave = CAmbienteXV::GetChaveRegistry(XV_DF);
    CXVRegistryFalso registry;
    registry.SetTexto(sChave, "Path", "/da/maquina");
    registry.SetTexto(sChave, "Outro", "texto");
    registry.SetNumero(sChave, "Durabilidade", 1);
    const CXVGuardaRegistry guarda(registry);
    {
        XVCliente::CXVCliente cliente;
        ASSERT_EQ(cliente.ConectaLocal({.sEmpresa = "UM"}, {.sDiretorio = diretorio.GetCaminho()}), S_OK);
        IXVRegistry& rRegistry = XVPlataforma::Registry();
        EXPECT_EQ(rRegistry.LeTexto(sChave, "Path"), diretorio.GetCaminho());
        EXPECT_EQ(rRegistry.LeTexto(sChave, "Path_x64"), diretorio.GetCaminho());
        EXPECT_EQ(rRegistry.LeTexto(sChave, "Outro"), "texto");
        EXPECT_EQ(rRegistry.LeNumero(sChave, "Durabilidade"), 1U);
    }
    EXPECT_EQ(&XVPlataforma::Registry(), &registry);
}
