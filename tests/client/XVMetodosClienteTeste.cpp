// Every operation of the client, with the sizes that programs use and those they do not: the same by both
// doors, through the real proxy and in this process.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/trace/XVArquivoRecusado.h"
#include "tests/client/XVPortaTeste.h"

namespace {

using namespace XVPortaTeste;

class CMetodosCliente : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        s_sEmpresa = NovaEmpresa();
        s_pCliente = new XVCliente::CXVCliente;
        ASSERT_EQ(Conecta(*s_pCliente, {.sEmpresa = s_sEmpresa, .usUsuario = 7, .ulNumeroSessao = 42}), S_OK);
    }
    static void TearDownTestSuite() {
        delete s_pCliente;
        s_pCliente = nullptr;
    }
    static XVCliente::CXVCliente& Cliente() { return *s_pCliente; }
    static REG_XVDMC Grava(const CXVDadosCR_IntegracaoMiddleware& rDados) {
        REG_XVDMC regDmc;
        EXPECT_EQ(Cliente().GravaIntegracao(&regDmc, rDados), S_OK);
        return regDmc;
    }
    static CXVDadosCR_IntegracaoMiddleware Le(REG_XVDMC regDmc) {
        CXVDadosCR_IntegracaoMiddleware dados;
        EXPECT_EQ(Cliente().LeIntegracao(regDmc, 7, &dados), S_OK);
        return dados;
    }

    static XVCliente::CXVCliente* s_pCliente;
    static std::string s_sEmpresa;
};

XVCliente::CXVCliente* CMetodosCliente::s_pCliente = nullptr;
std::string CMetodosCliente::s_sEmpresa;

std::string TextoGrande(std::size_t uiBytes) {
    std::string sTexto(uiBytes, ' ');
    for (std::size_t i = 0; i < uiBytes; ++i) sTexto[i] = static_cast<char>('a' + i % 23);
    return sTexto;
}

}  // namespace

TEST_F(CMetodosCliente, GravaAlteraELe) {
    auto dados = IntegracaoPendente("{\"pedido\":\"São João\"}");
    dados.ulPonteiroFilial = 3;
    dados.ulPonteiroAuxiliar = 4;
    dados.ucTipoPonteiroAuxiliar = 5;
    dados.cReconsultarIdTerceiros = 1;
    dados.uiBaseDadosTerceiro = 0x1122334455667788U;
    dados.regDmcMovimentoOrigem = REG_XVDMC::Cria(2, 9, REG_XVDMA::Cria(2026, 11, 21));
    const REG_XVDMC regDmc = Grava(dados);
    EXPECT_TRUE(regDmc.EhValido());
    CXVDadosCR_IntegracaoMiddleware lida = Le(regDmc);
    EXPECT_EQ(lida.sRegistroJSON, dados.sRegistroJSON);
    EXPECT_EQ(lida.sMensagemIntegracao, "");
    EXPECT_EQ(lida.ulPonteiroFilial, 3U);
    EXPECT_EQ(lida.ulPonteiroAuxiliar, 4U);
    EXPECT_EQ(lida.ucTipoPonteiroAuxiliar, 5U);
    EXPECT_EQ(lida.cReconsultarIdTerceiros, 1U);
    EXPECT_EQ(lida.uiBaseDadosTerceiro, dados.uiBaseDadosTerceiro);
    EXPECT_EQ(lida.regDmcMovimentoOrigem, dados.regDmcMovimentoOrigem);
    EXPECT_EQ(lida.eTipoIntegracao, 9U);
    EXPECT_EQ(lida.eSistemaIntegracao, 2U);

    dados.eStatusIntegracao = 3;
    dados.uiChaveIntegracaoSistemaTerceiro = 5001;
    dados.sRegistroJSON = "{\"pedido\":2}";
    dados.sMensagemIntegracao = "aceito";
    dados.sJSONRetornoIntegracao = "{\"id\":5001}";
    REG_XVDMC regMesmo = regDmc;
    EXPECT_EQ(Cliente().GravaIntegracao(&regMesmo, dados), S_OK);
    EXPECT_EQ(regMesmo, regDmc);
    lida = Le(regDmc);
    EXPECT_EQ(lida.sRegistroJSON, dados.sRegistroJSON);
    EXPECT_EQ(lida.sMensagemIntegracao, "aceito");
    EXPECT_EQ(lida.sJSONRetornoIntegracao, "{\"id\":5001}");
    EXPECT_EQ(lida.uiChaveIntegracaoSistemaTerceiro, 5001U);
    EXPECT_EQ(lida.eStatusIntegracao, 3U);
    EXPECT_EQ(Cliente().LeIntegracao(regDmc, k_ullLeMensagem, &lida), S_OK);
    EXPECT_EQ(lida.sRegistroJSON + lida.sMensagemIntegracao + lida.sJSONRetornoIntegracao, "aceito");
}

TEST_F(CMetodosCliente, StatusPorDmcEPorChaveDoSistema) {
    auto dados = IntegracaoPendente("{}");
    dados.uiChaveIntegracaoSistemaTerceiro = 6001;
    const REG_XVDMC regDmc = Grava(dados);
    CXVDadosCR_StatusIntegracaoMiddleware status{.regDmc = regDmc,
                                                 .sMensagemIntegracao = "enviado",
                                                 .uiChaveIntegracaoSistemaTerceiro = 6001,
                                                 .eStatusIntegracao = 2,
                                                 .eSistemaIntegracao = 2};
    EXPECT_EQ(Cliente().GravaStatusIntegracao(status), S_OK);
    status.regDmc = {};
    status.eStatusIntegracao = 3;
    status.sMensagemIntegracao = "pronto";
    EXPECT_EQ(Cliente().GravaStatusIntegracao(status), S_OK);
    const CXVDadosCR_IntegracaoMiddleware lida = Le(regDmc);
    EXPECT_EQ(lida.eStatusIntegracao, 3U);
    EXPECT_EQ(lida.sMensagemIntegracao, "pronto");
    EXPECT_EQ(lida.uiChaveIntegracaoSistemaTerceiro, 6001U);
}

TEST_F(CMetodosCliente, BuscaPorListasEChaves) {
    auto dados = IntegracaoPendente("{}");
    dados.eTipoIntegracao = 7;
    dados.uiChaveIntegracaoSistemaTerceiro = 900001;
    const REG_XVDMC regPrimeira = Grava(dados);
    dados.uiChaveIntegracaoSistemaTerceiro = 900002;
    const REG_XVDMC regSegunda = Grava(dados);
    std::vector<REG_XVDMC> lista;
    CXVDadosCR_FiltroIntegracaoMiddleware filtro{.uiChaveIntegracaoSistemaTerceiroInicial = 900001,
                                                 .uiChaveIntegracaoSistemaTerceiroFinal = 900002,
                                                 .listaTipoIntegracao = {1, 7},
                                                 .listaStatusIntegracao = {1},
                                                 .listaTipoTransacao = {1, 2, 3}};
    EXPECT_EQ(Cliente().BuscaPonteiros(filtro, &lista), S_OK);
    EXPECT_EQ(lista, (std::vector<REG_XVDMC>{regPrimeira, regSegunda}));
    filtro.listaTipoIntegracao = {8};
    EXPECT_EQ(Cliente().BuscaPonteiros(filtro, &lista), S_OK);
    EXPECT_TRUE(lista.empty());
    filtro = {.uiChaveIntegracaoSistemaTerceiroInicial = 900002, .listaSistemaIntegracao = {2}};
    EXPECT_EQ(Cliente().BuscaPonteiros(filtro, &lista), S_OK);
    EXPECT_EQ(lista, std::vector<REG_XVDMC>{regSegunda});
}

TEST_F(CMetodosCliente, MapaDeChavesEDataHora) {
    const REG_XVDMC regRegistro = REG_XVDMC::Cria(2, 77, REG_XVDMA::Cria(2026, 1, 2));
    const CXVDadosCR_ChaveRegistroTelvoParaTerceiro chave{
        .uiChaveRegistroSistemaTerceiro = 0,
        .regDmcRegistroTelvo = regRegistro,
        .uiBaseDadosTerceiro = 5,
        .eTipoIntegracao = 6,
        .eSistemaIntegracao = 2,
        .regDmcOrigemIntegracao = {regRegistro.uiValor + 1}};
    EXPECT_EQ(Cliente().GravaChaveRegistroPendente(chave), S_OK);
    auto completa = chave;
    completa.uiChaveRegistroSistemaTerceiro = 4321;
    EXPECT_EQ(Cliente().GravaChaveRegistro(completa), S_OK);
    EXPECT_EQ(Cliente().GravaChaveRegistroPendente(chave), S_OK) << "what is complete stays";
    CXVDadosCR_ChaveRegistroTelvoParaTerceiro achada;
    auto filtro = completa;
    filtro.regDmcRegistroTelvo = {};
    EXPECT_EQ(Cliente().BuscaChaveRegistro(filtro, &achada), S_OK);
    EXPECT_TRUE(achada == completa);
    filtro.uiChaveRegistroSistemaTerceiro = 1;
    EXPECT_EQ(Cliente().BuscaChaveRegistro(filtro, &achada), S_OK);
    EXPECT_TRUE(achada.regDmcRegistroTelvo.EhNulo());

    const CXVDadosCR_DataHoraIntegracaoTerceiro dataHora{
        .regDataHora = REG_XVDMAHMSUTC::Cria(REG_XVDMA::Cria(2026, 11, 21), 3600),
        .eTipoIntegracao = 9,
        .eSistemaIntegracao = 2,
        .eTipoData = 1};
    EXPECT_EQ(Cliente().GravaDataHora(dataHora), S_OK);
    CXVDadosCR_DataHoraIntegracaoTerceiro lida;
    EXPECT_EQ(Cliente().BuscaDataHora(dataHora, &lida), S_OK);
    EXPECT_TRUE(lida == dataHora);
    auto outra = dataHora;
    outra.eTipoData = 2;
    EXPECT_EQ(Cliente().BuscaDataHora(outra, &lida), S_OK);
    EXPECT_TRUE(lida.regDataHora.EhNula());
}

// The built-in simulation has nothing pending and answers the query that a rule document describes, with a
// document of bytes of any kind; a system without provider says so and stores nothing.
TEST_F(CMetodosCliente, TrocaComSistemasTerceiros) {
    auto dados = IntegracaoPendente("{}");
    REG_XVDMC regDmc;
    EXPECT_EQ(Cliente().GravaIntegracaoInstantanea(&regDmc, dados), S_OK);
    EXPECT_TRUE(regDmc.EhNulo());
    dados.eSistemaIntegracao = 8;
    dados.regDmcMovimentoOrigem = REG_XVDMC::Cria(2, 9, REG_XVDMA::Cria(2026, 11, 21));
    EXPECT_EQ(Cliente().GravaPendenciaIntegracao(dados.regDmcMovimentoOrigem, dados), E_NOTIMPL);

    const CXVDadosCR_ConsultaSistemaTerceiro consulta{.sChaveConsulta = "2026-000341", .eTipoConsulta = 5};
    CXVDadosCR_StatusConsultaSistemaTerceiro resposta;
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

    // What is pending for a record of the suite is recorded with that origin.
    std::filesystem::create_directories(pasta / "pendentes");
    std::ofstream(pasta / "pendentes" / "1.pend", std::ios::binary) << "Origem: 20261121-9-2\n\n{\"p\":1}";
    dados.eSistemaIntegracao = SimulacaoSistemaTerceiro;
    EXPECT_EQ(Cliente().GravaPendenciaIntegracao(dados.regDmcMovimentoOrigem, dados), S_OK);
    CXVDadosCR_ChaveRegistroTelvoParaTerceiro chave;
    EXPECT_EQ(Cliente().BuscaChaveRegistro({.regDmcRegistroTelvo = dados.regDmcMovimentoOrigem,
                                            .eTipoIntegracao = dados.eTipoIntegracao,
                                            .eSistemaIntegracao = SimulacaoSistemaTerceiro},
                                           &chave),
              S_OK);
    const CXVDadosCR_IntegracaoMiddleware pendente = Le(chave.regDmcOrigemIntegracao);
    EXPECT_EQ(pendente.regDmcIntegracaoOrigem, dados.regDmcMovimentoOrigem);
    EXPECT_EQ(pendente.sRegistroJSON, "{\"p\":1}");
}

TEST_F(CMetodosCliente, UltimoErroEFuncaoGenerica) {
    std::string sSaida = "x";
    EXPECT_EQ(Cliente().FuncaoGenerica(1, "abc", &sSaida), E_NOTIMPL);
    const REG_XVDMC regNaoExiste = REG_XVDMC::Cria(1, 999999, REG_XVDMA::Cria(2020, 1, 1));
    CXVDadosCR_IntegracaoMiddleware dados;
    EXPECT_EQ(Cliente().LeIntegracao(regNaoExiste, 0, &dados), XVHResult(0x81080AAAU));
    XVCliente::SUltimoErro erro;
    EXPECT_EQ(Cliente().GetUltimoErro(&erro), S_OK);
    EXPECT_EQ(erro.hrErro, XVHResult(0x81080AAAU));
    EXPECT_EQ(erro.sNome, "E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA");
    EXPECT_EQ(erro.sFuncao, "CXVCR_Middleware::LeIntegracao");
    EXPECT_EQ(erro.sFonte, "XVCR_Middleware");
    EXPECT_GT(erro.ulLinha, 0U);
    EXPECT_FALSE(erro.regDataHora.EhNula());
    EXPECT_FALSE(erro.sMensagem.empty());
}

// The component that refused is gone; what it said of its refusal is not.
TEST_F(CMetodosCliente, RecusaDaLojaDizOArquivoAoCliente) {
    const std::string sEmpresa = NovaEmpresa();
    const std::filesystem::path pasta = DiretorioEmpresa(sEmpresa);
    std::filesystem::create_directories(pasta);
    std::ofstream(pasta / "XVDATABASE_FILE_CTRL.dat", std::ios::binary) << "abc";
    const CXVArquivosRecusados recusados;
    XVCliente::CXVCliente cliente;
    XVCliente::SUltimoErro erro;
    EXPECT_EQ(Conecta(cliente, {.sEmpresa = sEmpresa, .usUsuario = 7}), XVHResult(0x81080C5EU));
    EXPECT_TRUE(recusados.GetPath(XVHResult(0x81080C5EU)).ends_with("XVDATABASE_FILE_CTRL.dat"))
        << "noted for this thread, wherever the component is";
    ASSERT_EQ(cliente.GetUltimoErro(&erro), S_OK);
    EXPECT_EQ(erro.hrErro, XVHResult(0x81080C5EU));
    EXPECT_TRUE(erro.sMensagem.ends_with("XVDATABASE_FILE_CTRL.dat")) << erro.sMensagem;

    std::filesystem::remove(pasta / "XVDATABASE_FILE_CTRL.dat");
    EXPECT_EQ(cliente.Reconecta(), S_OK);
    ASSERT_EQ(cliente.GetUltimoErro(&erro), S_OK);
    EXPECT_EQ(erro.hrErro, 0) << "of the component in hand";
}

TEST_F(CMetodosCliente, TextosDe20MBETextosVazios) {
    auto dados = IntegracaoPendente(TextoGrande(20 << 20));
    dados.sMensagemIntegracao = TextoGrande((20 << 20) + 1);
    const REG_XVDMC regDmc = Grava(dados);
    const CXVDadosCR_IntegracaoMiddleware lida = Le(regDmc);
    EXPECT_TRUE(lida.sRegistroJSON == dados.sRegistroJSON);
    EXPECT_TRUE(lida.sMensagemIntegracao == dados.sMensagemIntegracao);
    EXPECT_EQ(lida.sJSONRetornoIntegracao, "");
    const CXVDadosCR_IntegracaoMiddleware vazia = Le(Grava(IntegracaoPendente("")));
    EXPECT_EQ(vazia.sRegistroJSON, "");
}

TEST_F(CMetodosCliente, ListaDe100000ChavesETodosOsTamanhosPequenos) {
    const REG_XVDMC regDmc = Grava(IntegracaoPendente("{\"lista\":true}"));
    std::vector<CXVDadosCR_IntegracaoMiddleware> lista;
    for (const std::size_t uiQuantidade :
         {std::size_t{0}, std::size_t{1}, std::size_t{5}, std::size_t{100}}) {
        EXPECT_EQ(Cliente().LeIntegracoes(std::vector(uiQuantidade, regDmc), 1, &lista), S_OK);
        ASSERT_EQ(lista.size(), uiQuantidade);
        for (const auto& rDados : lista) EXPECT_EQ(rDados.sRegistroJSON, "{\"lista\":true}");
    }
    EXPECT_EQ(Cliente().LeIntegracoes(std::vector(std::size_t{100000}, regDmc), 0, &lista), S_OK);
    ASSERT_EQ(lista.size(), 100000U);
    EXPECT_EQ(lista.back().regDmc, regDmc);
    // One key that is none fails the whole list and hands out nothing.
    lista.assign(1, {});
    EXPECT_LT(Cliente().LeIntegracoes({regDmc, {12345}}, 0, &lista), 0);
}
