// Every method of the interface through the real proxy, with the sizes that clients use and those they do
// not.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/values/XVDmc.h"
#include "tests/com/XVAmbienteCom.h"
#include "tests/com/XVProcessoTeste.h"

namespace {

using namespace XVAmbienteCom;

class CMetodosCom : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        s_sEmpresa = NovaEmpresa();
        s_pCliente = new XVCliente::CXVCliente;
        ASSERT_EQ(s_pCliente->Conecta({.sEmpresa = s_sEmpresa, .usUsuario = 7, .ulNumeroSessao = 42}), S_OK);
    }
    static void TearDownTestSuite() {
        delete s_pCliente;
        s_pCliente = nullptr;
    }
    static XVCliente::CXVCliente& Cliente() { return *s_pCliente; }
    static std::uint64_t Grava(const XVCliente::SIntegracao& rDados) {
        std::uint64_t uiDmc = 0;
        EXPECT_EQ(Cliente().GravaIntegracao(&uiDmc, rDados), S_OK);
        return uiDmc;
    }
    static XVCliente::SIntegracao Le(std::uint64_t uiDmc) {
        XVCliente::SIntegracao dados;
        EXPECT_EQ(Cliente().LeIntegracao(uiDmc, 7, &dados), S_OK);
        return dados;
    }

    static XVCliente::CXVCliente* s_pCliente;
    static std::string s_sEmpresa;
};

XVCliente::CXVCliente* CMetodosCom::s_pCliente = nullptr;
std::string CMetodosCom::s_sEmpresa;

std::string TextoGrande(std::size_t uiBytes) {
    std::string sTexto(uiBytes, ' ');
    for (std::size_t i = 0; i < uiBytes; ++i) sTexto[i] = static_cast<char>('a' + i % 23);
    return sTexto;
}

}  // namespace

TEST_F(CMetodosCom, GravaAlteraELe) {
    auto dados = IntegracaoPendente("{\"pedido\":\"São João\"}");
    dados.ulPonteiroFilial = 3;
    dados.ulPonteiroAuxiliar = 4;
    dados.ucTipoPonteiroAuxiliar = 5;
    dados.cReconsultarIdTerceiros = 1;
    dados.uiBaseDadosTerceiro = 0x1122334455667788U;
    dados.uiDmcMovimentoOrigem = REG_XVDMC::Cria(2, 9, REG_XVDMA::Cria(2026, 11, 21)).uiValor;
    const std::uint64_t uiDmc = Grava(dados);
    EXPECT_TRUE(REG_XVDMC{uiDmc}.EhValido());
    XVCliente::SIntegracao lida = Le(uiDmc);
    EXPECT_EQ(lida.sRegistroJSON, dados.sRegistroJSON);
    EXPECT_EQ(lida.sMensagemIntegracao, "");
    EXPECT_EQ(lida.ulPonteiroFilial, 3U);
    EXPECT_EQ(lida.ulPonteiroAuxiliar, 4U);
    EXPECT_EQ(lida.ucTipoPonteiroAuxiliar, 5U);
    EXPECT_EQ(lida.cReconsultarIdTerceiros, 1U);
    EXPECT_EQ(lida.uiBaseDadosTerceiro, dados.uiBaseDadosTerceiro);
    EXPECT_EQ(lida.uiDmcMovimentoOrigem, dados.uiDmcMovimentoOrigem);
    EXPECT_EQ(lida.eTipoIntegracao, 9U);
    EXPECT_EQ(lida.eSistemaIntegracao, 2U);

    dados.eStatusIntegracao = 3;
    dados.uiChaveIntegracaoSistemaTerceiro = 5001;
    dados.sRegistroJSON = "{\"pedido\":2}";
    dados.sMensagemIntegracao = "aceito";
    dados.sJSONRetornoIntegracao = "{\"id\":5001}";
    std::uint64_t uiMesmo = uiDmc;
    EXPECT_EQ(Cliente().GravaIntegracao(&uiMesmo, dados), S_OK);
    EXPECT_EQ(uiMesmo, uiDmc);
    lida = Le(uiDmc);
    EXPECT_EQ(lida.sRegistroJSON, dados.sRegistroJSON);
    EXPECT_EQ(lida.sMensagemIntegracao, "aceito");
    EXPECT_EQ(lida.sJSONRetornoIntegracao, "{\"id\":5001}");
    EXPECT_EQ(lida.uiChaveIntegracaoSistemaTerceiro, 5001U);
    EXPECT_EQ(lida.eStatusIntegracao, 3U);
}

TEST_F(CMetodosCom, StatusPorDmcEPorChaveDoSistema) {
    auto dados = IntegracaoPendente("{}");
    dados.uiChaveIntegracaoSistemaTerceiro = 6001;
    const std::uint64_t uiDmc = Grava(dados);
    XVCliente::SStatusIntegracao status{.uiDmc = uiDmc,
                                        .sMensagemIntegracao = "enviado",
                                        .uiChaveIntegracaoSistemaTerceiro = 6001,
                                        .eStatusIntegracao = 2,
                                        .eSistemaIntegracao = 2};
    EXPECT_EQ(Cliente().GravaStatusIntegracao(status), S_OK);
    status.uiDmc = 0;
    status.eStatusIntegracao = 3;
    status.sMensagemIntegracao = "pronto";
    EXPECT_EQ(Cliente().GravaStatusIntegracao(status), S_OK);
    const XVCliente::SIntegracao lida = Le(uiDmc);
    EXPECT_EQ(lida.eStatusIntegracao, 3U);
    EXPECT_EQ(lida.sMensagemIntegracao, "pronto");
    EXPECT_EQ(lida.uiChaveIntegracaoSistemaTerceiro, 6001U);
}

TEST_F(CMetodosCom, BuscaPorListasEChaves) {
    auto dados = IntegracaoPendente("{}");
    dados.eTipoIntegracao = 7;
    dados.uiChaveIntegracaoSistemaTerceiro = 900001;
    const std::uint64_t uiPrimeira = Grava(dados);
    dados.uiChaveIntegracaoSistemaTerceiro = 900002;
    const std::uint64_t uiSegunda = Grava(dados);
    std::vector<std::uint64_t> lista;
    XVCliente::SFiltroIntegracao filtro{.uiChaveInicial = 900001,
                                        .uiChaveFinal = 900002,
                                        .listaTipoIntegracao = {1, 7},
                                        .listaStatusIntegracao = {1},
                                        .listaTipoTransacao = {1, 2, 3}};
    EXPECT_EQ(Cliente().BuscaPonteiros(filtro, &lista), S_OK);
    EXPECT_EQ(lista, (std::vector<std::uint64_t>{uiPrimeira, uiSegunda}));
    filtro.listaTipoIntegracao = {8};
    EXPECT_EQ(Cliente().BuscaPonteiros(filtro, &lista), S_OK);
    EXPECT_TRUE(lista.empty());
    filtro = {.uiChaveInicial = 900002, .listaSistemaIntegracao = {2}};
    EXPECT_EQ(Cliente().BuscaPonteiros(filtro, &lista), S_OK);
    EXPECT_EQ(lista, std::vector<std::uint64_t>{uiSegunda});
}

TEST_F(CMetodosCom, MapaDeChavesEDataHora) {
    const std::uint64_t uiRegistro = REG_XVDMC::Cria(2, 77, REG_XVDMA::Cria(2026, 1, 2)).uiValor;
    const XVCliente::SChaveRegistro chave{.uiChaveRegistroSistemaTerceiro = 0,
                                          .uiDmcRegistroTelvo = uiRegistro,
                                          .uiBaseDadosTerceiro = 5,
                                          .eTipoIntegracao = 6,
                                          .eSistemaIntegracao = 2};
    EXPECT_EQ(Cliente().GravaChaveRegistroPendente(chave), S_OK);
    auto completa = chave;
    completa.uiChaveRegistroSistemaTerceiro = 4321;
    EXPECT_EQ(Cliente().GravaChaveRegistro(completa), S_OK);
    XVCliente::SChaveRegistro achada;
    auto filtro = completa;
    filtro.uiDmcRegistroTelvo = 0;
    EXPECT_EQ(Cliente().BuscaChaveRegistro(filtro, &achada), S_OK);
    EXPECT_EQ(achada.uiDmcRegistroTelvo, uiRegistro);
    filtro.uiChaveRegistroSistemaTerceiro = 1;
    EXPECT_EQ(Cliente().BuscaChaveRegistro(filtro, &achada), S_OK);
    EXPECT_EQ(achada.uiDmcRegistroTelvo, 0U);

    const XVCliente::SDataHoraIntegracao dataHora{
        .uiDataHora = REG_XVDMAHMSUTC::Cria(REG_XVDMA::Cria(2026, 11, 21), 3600).uiValor,
        .eTipoIntegracao = 9,
        .eSistemaIntegracao = 2,
        .eTipoData = 1};
    EXPECT_EQ(Cliente().GravaDataHora(dataHora), S_OK);
    XVCliente::SDataHoraIntegracao lida;
    EXPECT_EQ(Cliente().BuscaDataHora(dataHora, &lida), S_OK);
    EXPECT_EQ(lida.uiDataHora, dataHora.uiDataHora);
    auto outra = dataHora;
    outra.eTipoData = 2;
    EXPECT_EQ(Cliente().BuscaDataHora(outra, &lida), S_OK);
    EXPECT_EQ(lida.uiDataHora, 0U);
}

// The built-in simulation has nothing pending and answers the query that a rule document describes, with a
// document of bytes of any kind; a system without provider says so and stores nothing.
TEST_F(CMetodosCom, TrocaComSistemasTerceiros) {
    auto dados = IntegracaoPendente("{}");
    std::uint64_t uiDmc = 0;
    EXPECT_EQ(Cliente().GravaIntegracaoInstantanea(&uiDmc, dados), S_OK);
    EXPECT_EQ(uiDmc, 0U);
    dados.eSistemaIntegracao = 8;
    dados.uiDmcMovimentoOrigem = REG_XVDMC::Cria(2, 9, REG_XVDMA::Cria(2026, 11, 21)).uiValor;
    EXPECT_EQ(Cliente().GravaPendenciaIntegracao(dados.uiDmcMovimentoOrigem, dados), E_NOTIMPL);

    const XVCliente::SConsultaTerceiro consulta{.sChaveConsulta = "2026-000341", .eTipoConsulta = 5};
    XVCliente::SRespostaConsulta resposta;
    EXPECT_EQ(Cliente().BuscaDadosSistemaTerceiro(consulta, &resposta), E_NOTIMPL);
    const std::filesystem::path pasta = std::filesystem::path(DiretorioEmpresa(s_sEmpresa)) / "simulacao";
    std::filesystem::create_directories(pasta / "regras");
    std::filesystem::create_directories(pasta / "documentos");
    const std::string sDocumento("%PDF\0\x01\xFF", 7);
    std::ofstream(pasta / "documentos" / "comprovante.pdf", std::ios::binary) << sDocumento;
    std::ofstream(pasta / "regras" / "10-comprovante.regra", std::ios::binary)
        << "Operacao: BuscaDadosSistemaTerceiro\nConsulta: PagamentoComprovante\nChaveConsulta: 2026-000341\n"
           "Mensagem: pago\nDocumento: comprovante.pdf\n\n{\"pago\":true}\n";
    EXPECT_EQ(Cliente().BuscaDadosSistemaTerceiro(consulta, &resposta), S_OK);
    EXPECT_EQ(resposta.eStatusConsulta, 1U);
    EXPECT_EQ(resposta.sMensagemRetorno, "pago");
    EXPECT_EQ(resposta.sJSONRetorno, "{\"pago\":true}");
    EXPECT_EQ(resposta.sDocumentoRetorno, sDocumento);
}

TEST_F(CMetodosCom, UltimoErroEFuncaoGenerica) {
    std::string sSaida = "x";
    EXPECT_EQ(Cliente().FuncaoGenerica(1, "abc", &sSaida), E_NOTIMPL);
    const std::uint64_t uiNaoExiste = REG_XVDMC::Cria(1, 999999, REG_XVDMA::Cria(2020, 1, 1)).uiValor;
    XVCliente::SIntegracao dados;
    EXPECT_EQ(Cliente().LeIntegracao(uiNaoExiste, 0, &dados), Codigo(0x81080AAAU));
    XVCliente::SUltimoErro erro;
    EXPECT_EQ(Cliente().GetUltimoErro(&erro), S_OK);
    EXPECT_EQ(erro.hrErro, Codigo(0x81080AAAU));
    EXPECT_EQ(erro.sNome, "E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA");
    EXPECT_EQ(erro.sFuncao, "CXVCR_Middleware::LeIntegracao");
    EXPECT_FALSE(erro.sMensagem.empty());
}

// The component that refused is gone; what it said of its refusal is not.
TEST_F(CMetodosCom, RecusaDaLojaDizOArquivoAoCliente) {
    const std::string sEmpresa = NovaEmpresa();
    const std::filesystem::path pasta = DiretorioEmpresa(sEmpresa);
    std::filesystem::create_directories(pasta);
    std::ofstream(pasta / "XVDATABASE_FILE_CTRL.dat", std::ios::binary) << "abc";
    XVCliente::CXVCliente cliente;
    XVCliente::SUltimoErro erro;
    EXPECT_EQ(cliente.Conecta({.sEmpresa = sEmpresa, .usUsuario = 7}), Codigo(0x81080C5EU));
    ASSERT_EQ(cliente.GetUltimoErro(&erro), S_OK);
    EXPECT_EQ(erro.hrErro, Codigo(0x81080C5EU));
    EXPECT_TRUE(erro.sMensagem.ends_with("XVDATABASE_FILE_CTRL.dat")) << erro.sMensagem;

    std::filesystem::remove(pasta / "XVDATABASE_FILE_CTRL.dat");
    EXPECT_EQ(cliente.Reconecta(), S_OK);
    ASSERT_EQ(cliente.GetUltimoErro(&erro), S_OK);
    EXPECT_EQ(erro.hrErro, 0) << "of the component in hand";
}

TEST_F(CMetodosCom, TextosDe20MBETextosVazios) {
    auto dados = IntegracaoPendente(TextoGrande(20 << 20));
    dados.sMensagemIntegracao = TextoGrande((20 << 20) + 1);
    const std::uint64_t uiDmc = Grava(dados);
    const XVCliente::SIntegracao lida = Le(uiDmc);
    EXPECT_TRUE(lida.sRegistroJSON == dados.sRegistroJSON);
    EXPECT_TRUE(lida.sMensagemIntegracao == dados.sMensagemIntegracao);
    EXPECT_EQ(lida.sJSONRetornoIntegracao, "");
    const XVCliente::SIntegracao vazia = Le(Grava(IntegracaoPendente("")));
    EXPECT_EQ(vazia.sRegistroJSON, "");
}

TEST_F(CMetodosCom, ListaDe100000ChavesETodosOsTamanhosPequenos) {
    const std::uint64_t uiDmc = Grava(IntegracaoPendente("{\"lista\":true}"));
    std::vector<XVCliente::SIntegracao> lista;
    for (const std::size_t uiQuantidade :
         {std::size_t{0}, std::size_t{1}, std::size_t{5}, std::size_t{100}}) {
        EXPECT_EQ(Cliente().LeIntegracoes(std::vector(uiQuantidade, uiDmc), 1, &lista), S_OK);
        ASSERT_EQ(lista.size(), uiQuantidade);
        for (const auto& rDados : lista) EXPECT_EQ(rDados.sRegistroJSON, "{\"lista\":true}");
    }
    EXPECT_EQ(Cliente().LeIntegracoes(std::vector(std::size_t{100000}, uiDmc), 0, &lista), S_OK);
    ASSERT_EQ(lista.size(), 100000U);
    EXPECT_EQ(lista.back().uiDmc, uiDmc);
    // One key that is none fails the whole list and hands out nothing.
    lista.assign(1, {});
    EXPECT_LT(Cliente().LeIntegracoes({uiDmc, 12345}, 0, &lista), 0);
}
