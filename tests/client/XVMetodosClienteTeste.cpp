// Every operation of the client, with the sizes that programs use and those they do not: the same by both
// doors, through the real proxy and in this process.
#include <filesystem>
#include <fstream>

#include "middleware/XVOperacoesGenericas.h"
#include "support/trace/XVArquivoRecusado.h"
#include "tests/client/XVPortaTeste.h"
#include "tests/suite/XVIntegracaoCheia.h"

namespace {

using namespace XVPortaTeste;

class CMetodosCliente : public ::testing::Test {
  protected:
    CMetodosCliente() {
        EXPECT_EQ(Conecta(m_Cliente, {.sEmpresa = m_sEmpresa, .usUsuario = 7, .ulNumeroSessao = 42}), S_OK);
    }
    REG_XVDMC Grava(const CXVDadosCR_IntegracaoMiddleware& rDados) {
        REG_XVDMC regDmc;
        EXPECT_EQ(m_Cliente.GravaIntegracao(&regDmc, rDados), S_OK);
        return regDmc;
    }
    CXVDadosCR_IntegracaoMiddleware Le(REG_XVDMC regDmc) {
        CXVDadosCR_IntegracaoMiddleware dados;
        EXPECT_EQ(m_Cliente.LeIntegracao(regDmc, k_ullLeTextos, &dados), S_OK);
        return dados;
    }

    const std::string m_sEmpresa = NovaEmpresa();
    XVCliente::CXVCliente m_Cliente;
};

std::string TextoGrande(std::size_t uiBytes) {
    std::string sTexto(uiBytes, ' ');
    for (std::size_t i = 0; i < uiBytes; ++i) sTexto[i] = static_cast<char>('a' + i % 23);
    return sTexto;
}

}  // namespace

TEST_F(CMetodosCliente, GravaAlteraELe) {
    CXVDadosCR_IntegracaoMiddleware dados = XVIntegracaoCheia();
    dados.uiChaveRegistroSistemaTerceiro = 0;  // the external system gives it
    dados.regDmc = Grava(dados);
    EXPECT_TRUE(dados.regDmc.EhValido());
    EXPECT_EQ(Le(dados.regDmc), dados);

    dados.eStatusIntegracao = 1;
    dados.uiChaveIntegracaoSistemaTerceiro = 5001;
    dados.sRegistroJSON = "{\"pedido\":2}";
    dados.sMensagemIntegracao = "aceito";
    dados.sJSONRetornoIntegracao = "{\"id\":5001}";
    REG_XVDMC regMesmo = dados.regDmc;
    EXPECT_EQ(m_Cliente.GravaIntegracao(&regMesmo, dados), S_OK);
    EXPECT_EQ(regMesmo, dados.regDmc);
    CXVDadosCR_IntegracaoMiddleware lida = Le(dados.regDmc);
    dados.regDataHoraAlteracaoStatus = lida.regDataHoraAlteracaoStatus;
    EXPECT_EQ(lida, dados);
    EXPECT_EQ(m_Cliente.LeIntegracao(dados.regDmc, k_ullLeMensagem, &lida), S_OK);
    EXPECT_EQ(lida.sRegistroJSON + lida.sMensagemIntegracao + lida.sJSONRetornoIntegracao, "aceito");

    // By key, and by system and external key.
    CXVDadosCR_StatusIntegracaoMiddleware status{.regDmc = dados.regDmc,
                                                 .sMensagemIntegracao = "enviado",
                                                 .sJSONRetornoIntegracao = "{\"id\":2}",
                                                 .eStatusIntegracao = 2};
    EXPECT_EQ(m_Cliente.GravaStatusIntegracao(status), S_OK);
    EXPECT_EQ(Le(dados.regDmc).sMensagemIntegracao, "enviado");
    EXPECT_EQ(m_Cliente.GravaStatusIntegracao({.sMensagemIntegracao = "pronto",
                                               .uiChaveIntegracaoSistemaTerceiro = 5001,
                                               .eStatusIntegracao = 4,
                                               .eSistemaIntegracao = SimulacaoSistemaTerceiro}),
              S_OK);
    lida = Le(dados.regDmc);
    dados.eStatusIntegracao = 4;
    dados.sMensagemIntegracao = "pronto";
    dados.sJSONRetornoIntegracao = "{\"id\":2}";
    dados.regDataHoraAlteracaoStatus = lida.regDataHoraAlteracaoStatus;
    EXPECT_EQ(lida, dados);
}

TEST_F(CMetodosCliente, BuscaPorListasEChaves) {
    auto dados = IntegracaoPendente("{}");
    dados.eTipoIntegracao = 7;
    dados.uiChaveIntegracaoSistemaTerceiro = 900001;
    const REG_XVDMC regPrimeira = Grava(dados);
    dados.uiChaveIntegracaoSistemaTerceiro = 900002;
    const REG_XVDMC regSegunda = Grava(dados);
    const auto busca = [&](const CXVDadosCR_FiltroIntegracaoMiddleware& rFiltro) {
        std::vector<REG_XVDMC> lista{{1}};
        EXPECT_EQ(m_Cliente.BuscaPonteiros(rFiltro, &lista), S_OK);
        return lista;
    };
    CXVDadosCR_FiltroIntegracaoMiddleware filtro{.uiChaveIntegracaoSistemaTerceiroInicial = 900001,
                                                 .uiChaveIntegracaoSistemaTerceiroFinal = 900002,
                                                 .listaTipoIntegracao = {1, 7},
                                                 .listaStatusIntegracao = {1},
                                                 .listaTipoTransacao = {1, 2, 3}};
    EXPECT_EQ(busca(filtro), (std::vector<REG_XVDMC>{regPrimeira, regSegunda}));
    filtro.listaTipoIntegracao = {8};
    EXPECT_EQ(busca(filtro), std::vector<REG_XVDMC>{});
    EXPECT_EQ(busca({.uiChaveIntegracaoSistemaTerceiroInicial = 900002, .listaSistemaIntegracao = {2}}),
              std::vector<REG_XVDMC>{regSegunda});
}

TEST_F(CMetodosCliente, MapaDeChavesEDataHora) {
    CXVDadosCR_ChaveRegistroTelvoParaTerceiro chave{
        .regDmcRegistroTelvo = REG_XVDMC::Cria(2, 77, REG_XVDMA::Cria(2026, 1, 2)),
        .uiBaseDadosTerceiro = 5,
        .eTipoIntegracao = 6,
        .eSistemaIntegracao = 2,
        .regDmcOrigemIntegracao = REG_XVDMC::Cria(1, 78, REG_XVDMA::Cria(2026, 1, 3))};
    const auto busca = [&](XVUInt64 uiChave, REG_XVDMC regDmc) {
        auto filtro = chave;
        filtro.uiChaveRegistroSistemaTerceiro = uiChave;
        filtro.regDmcRegistroTelvo = regDmc;
        CXVDadosCR_ChaveRegistroTelvoParaTerceiro achada;
        EXPECT_EQ(m_Cliente.BuscaChaveRegistro(filtro, &achada), S_OK);
        return achada;
    };
    EXPECT_EQ(m_Cliente.GravaChaveRegistroPendente(chave), S_OK);
    EXPECT_EQ(busca(0, chave.regDmcRegistroTelvo), chave);
    const auto pendente = chave;
    chave.uiChaveRegistroSistemaTerceiro = 4321;
    EXPECT_EQ(m_Cliente.GravaChaveRegistro(chave), S_OK);
    EXPECT_EQ(m_Cliente.GravaChaveRegistroPendente(pendente), S_OK) << "what is complete stays";
    EXPECT_EQ(busca(4321, {}), chave);
    EXPECT_TRUE(busca(1, {}).regDmcRegistroTelvo.EhNulo());

    CXVDadosCR_DataHoraIntegracaoTerceiro dataHora{
        .regDataHora = REG_XVDMAHMSUTC::Cria(REG_XVDMA::Cria(2026, 11, 21), 3600),
        .eTipoIntegracao = 9,
        .eSistemaIntegracao = 2,
        .eTipoData = 1};
    EXPECT_EQ(m_Cliente.GravaDataHora(dataHora), S_OK);
    CXVDadosCR_DataHoraIntegracaoTerceiro lida;
    EXPECT_EQ(m_Cliente.BuscaDataHora(dataHora, &lida), S_OK);
    EXPECT_EQ(lida, dataHora);
    dataHora.eTipoData = 2;
    EXPECT_EQ(m_Cliente.BuscaDataHora(dataHora, &lida), S_OK);
    EXPECT_TRUE(lida.regDataHora.EhNula());
}

// The built-in simulation has nothing pending and answers the query that a rule document describes, with a
// document of bytes of any kind; a system without provider says so and stores nothing.
TEST_F(CMetodosCliente, TrocaComSistemasTerceiros) {
    auto dados = IntegracaoPendente("{}");
    REG_XVDMC regDmc;
    EXPECT_EQ(m_Cliente.GravaIntegracaoInstantanea(&regDmc, dados), S_OK);
    EXPECT_TRUE(regDmc.EhNulo());
    dados.eSistemaIntegracao = 8;
    dados.regDmcMovimentoOrigem = REG_XVDMC::Cria(2, 9, REG_XVDMA::Cria(2026, 11, 21));
    EXPECT_EQ(m_Cliente.GravaPendenciaIntegracao(dados.regDmcMovimentoOrigem, dados), E_NOTIMPL);

    const CXVDadosCR_ConsultaSistemaTerceiro consulta{.sChaveConsulta = "2026-000341", .eTipoConsulta = 5};
    CXVDadosCR_StatusConsultaSistemaTerceiro resposta;
    EXPECT_EQ(m_Cliente.BuscaDadosSistemaTerceiro(consulta, &resposta), E_NOTIMPL);
    const auto arquivo = [&](const char* pszNome, const std::string& sBytes) {
        const auto caminho = std::filesystem::path(DiretorioEmpresa(m_sEmpresa)) / "simulacao" / pszNome;
        std::filesystem::create_directories(caminho.parent_path());
        std::ofstream(caminho, std::ios::binary) << sBytes;
    };
    const std::string sDocumento("%PDF\0\x01\xFF", 7);
    arquivo("documentos/comprovante.pdf", sDocumento);
    arquivo(
        "regras/10-comprovante.regra",
        "Operacao: BuscaDadosSistemaTerceiro\nConsulta: PagamentoComprovante\nChaveConsulta: 2026-000341\n"
        "Mensagem: pago\nDocumento: comprovante.pdf\n\n{\"pago\":true}\n");
    EXPECT_EQ(m_Cliente.BuscaDadosSistemaTerceiro(consulta, &resposta), S_OK);
    EXPECT_EQ(resposta, (CXVDadosCR_StatusConsultaSistemaTerceiro{"pago", "{\"pago\":true}", sDocumento,
                                                                  eXVSMiddleware_ConsultaSucesso}));

    // What is pending for a record of the suite is recorded with that origin.
    arquivo("pendentes/1.pend", "Origem: 20261121-9-2\n\n{\"p\":1}");
    dados.eSistemaIntegracao = SimulacaoSistemaTerceiro;
    EXPECT_EQ(m_Cliente.GravaPendenciaIntegracao(dados.regDmcMovimentoOrigem, dados), S_OK);
    CXVDadosCR_ChaveRegistroTelvoParaTerceiro chave;
    EXPECT_EQ(m_Cliente.BuscaChaveRegistro({.regDmcRegistroTelvo = dados.regDmcMovimentoOrigem,
                                            .eTipoIntegracao = dados.eTipoIntegracao,
                                            .eSistemaIntegracao = SimulacaoSistemaTerceiro},
                                           &chave),
              S_OK);
    const CXVDadosCR_IntegracaoMiddleware pendente = Le(chave.regDmcOrigemIntegracao);
    EXPECT_EQ(pendente.regDmcIntegracaoOrigem, dados.regDmcMovimentoOrigem);
    EXPECT_EQ(pendente.sRegistroJSON, "{\"p\":1}");
    std::vector<REG_XVDMC> gravadas;
    EXPECT_EQ(m_Cliente.UltimasGravadas(&gravadas), S_OK);
    EXPECT_EQ(gravadas, std::vector{chave.regDmcOrigemIntegracao});
    // The same for callers that have the interface only.
    std::string sGravadas;
    EXPECT_EQ(m_Cliente.FuncaoGenerica(k_ulFuncaoUltimasGravadas, {}, &sGravadas), S_OK);
    const XVUInt64 uiGravada = chave.regDmcOrigemIntegracao.uiValor;
    EXPECT_EQ(sGravadas, std::string(reinterpret_cast<const char*>(&uiGravada), sizeof uiGravada));
}

TEST_F(CMetodosCliente, UltimoErroEFuncaoGenerica) {
    std::string sSaida = "x";
    EXPECT_EQ(m_Cliente.FuncaoGenerica(1, "abc", &sSaida), E_NOTIMPL);
    EXPECT_EQ(m_Cliente.GravaIntegracao(nullptr, {}), E_POINTER);
    const REG_XVDMC regNaoExiste = REG_XVDMC::Cria(1, 999999, REG_XVDMA::Cria(2020, 1, 1));
    CXVDadosCR_IntegracaoMiddleware dados;
    EXPECT_EQ(m_Cliente.LeIntegracao(regNaoExiste, 0, &dados), XVHResult(0x81080AAAU));
    XVCliente::SUltimoErro erro;
    EXPECT_EQ(m_Cliente.GetUltimoErro(&erro), S_OK);
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
    for (const std::size_t uiBytes : {std::size_t{20} << 20, std::size_t{0}}) {
        auto dados = IntegracaoPendente(TextoGrande(uiBytes));
        dados.sMensagemIntegracao = TextoGrande(uiBytes + 1);
        const CXVDadosCR_IntegracaoMiddleware lida = Le(Grava(dados));
        EXPECT_TRUE(lida.sRegistroJSON == dados.sRegistroJSON);
        EXPECT_TRUE(lida.sMensagemIntegracao == dados.sMensagemIntegracao);
        EXPECT_EQ(lida.sJSONRetornoIntegracao, "");
    }
}

TEST_F(CMetodosCliente, ListaDe100000ChavesETodosOsTamanhosPequenos) {
    const REG_XVDMC regDmc = Grava(IntegracaoPendente("{\"lista\":true}"));
    std::vector<CXVDadosCR_IntegracaoMiddleware> lista;
    for (const std::size_t uiQuantidade : {0U, 1U, 5U, 100U, 100000U}) {
        EXPECT_EQ(m_Cliente.LeIntegracoes(std::vector(uiQuantidade, regDmc), k_ullLeJSON, &lista), S_OK);
        EXPECT_TRUE(lista == std::vector(uiQuantidade, Le(regDmc))) << uiQuantidade;
    }
    // One key that is none fails the whole list and hands out nothing.
    lista.assign(1, {});
    EXPECT_LT(m_Cliente.LeIntegracoes({regDmc, {12345}}, 0, &lista), 0);
}
