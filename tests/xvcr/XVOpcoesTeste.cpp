// Every option of the commands that record or exchange, each at a value of its own, from the line to the
// files and back: records are compared whole.
#include <utility>

#include "contract/XVCR_Enumeracoes.h"
#include "platform/XVBibliotecaDinamica.h"
#include "tests/middleware/exchange/XVGravador.h"
#include "tests/xvcr/XVPrograma.h"
#include "tools/xvcr/text/XVLeituraValor.h"

namespace {

using nlohmann::json;

// Texts with bytes that JSON escapes and bytes that it cannot hold; numbers at their limits.
const TArgumentos k_textos{"--json-enviado", "{\"ç\":1}",     "--mensagem", "\x01linha 1\nlinha \"2\"\t",
                           "--json-retorno", "\xff\xfe bytes"};
const std::string k_sCampos =
    " --tipo CadastroProduto --status Erro --transacao Exclusao --chave 18446744073709551615 "
    "--chave-registro 12 --base-dados 9007199254740993 --integracao-origem 20261121-17-1 "
    "--movimento-origem 23591231-4294967295-2 --inclusao 2026-11-01T01:02:03 --alteracao-status 1848-01-01 "
    "--filial 4294967295 --usuario-inclusao 20 --usuario-cancelamento 21 --auxiliar 22 --tipo-auxiliar 255 "
    "--reconsultar 1 ";

constexpr const char* k_szVazia = R"({
    "regDmcIntegracaoOrigem":"0", "regDmcMovimentoOrigem":"0", "regDataHoraInclusao":"",
    "regDataHoraAlteracaoStatus":"", "uiChaveIntegracaoSistemaTerceiro":"0",
    "uiChaveRegistroSistemaTerceiro":"0", "uiBaseDadosTerceiro":"0",
    "eTipoIntegracao":"eXVSMiddleware_NenhumaIntegracao", "eStatusIntegracao":"eXVSMiddleware_NenhumStatus",
    "eSistemaIntegracao":"Tipo_Nenhum", "eTipoTransacao":"XVSMiddleware_TipoTransacaoNenhum",
    "ulPonteiroFilial":0, "ulPonteiroUsuarioInclusao":0, "ulPonteiroUsuarioCancelamento":0,
    "ulPonteiroAuxiliar":0, "cReconsultarIdTerceiros":0, "ucTipoPonteiroAuxiliar":0,
    "regRegistroJSON":"", "regMensagemIntegracao":"", "regJSONRetornoIntegracao":""})";

// What grava makes of k_textos and k_sCampos. The store keeps no key of the external record.
constexpr const char* k_szTudo = R"({
    "regDmcIntegracaoOrigem":"6439373410954133505", "regDmcMovimentoOrigem":"18439988674268479490",
    "regDataHoraInclusao":"2026-11-01T01:02:03Z", "regDataHoraAlteracaoStatus":"1848-01-01T00:00:00Z",
    "uiChaveIntegracaoSistemaTerceiro":"18446744073709551615", "uiBaseDadosTerceiro":"9007199254740993",
    "eTipoIntegracao":"eXVSMiddleware_CadastroProduto", "eStatusIntegracao":"eXVSMiddleware_Erro",
    "eSistemaIntegracao":"Mercos", "eTipoTransacao":"eXVSMiddleware_Exclusao",
    "ulPonteiroFilial":4294967295, "ulPonteiroUsuarioInclusao":20, "ulPonteiroUsuarioCancelamento":21,
    "ulPonteiroAuxiliar":22, "cReconsultarIdTerceiros":1, "ucTipoPonteiroAuxiliar":255,
    "regRegistroJSON":"{\"ç\":1}", "regMensagemIntegracao":"\u0001linha 1\nlinha \"2\"\t",
    "regJSONRetornoIntegracao":null, "regJSONRetornoIntegracao_base64":"//4gYnl0ZXM="})";

std::string Decimal(const std::string& sDmc) {
    REG_XVDMC regDmc;
    EXPECT_EQ(XVLeituraValor::Le(sDmc, &regDmc), "") << sDmc;
    return std::to_string(regDmc.uiValor);
}

// The integration with the fields of the first and, above them, of the second; all others are empty.
json Integracao(const std::string& sDmc, const json& rCampos, const json& rMais = json::object()) {
    json integracao = json::parse(k_szVazia);
    integracao.merge_patch(rCampos);
    integracao.merge_patch(rMais);
    integracao.merge_patch({{"sDmc", sDmc}, {"regDmc", Decimal(sDmc)}});
    return integracao;
}

class Opcoes : public XVPrograma {
  protected:
    Opcoes() : XVPrograma(true) {}
    const json m_Tudo = json::parse(k_szTudo);
};

TEST_F(Opcoes, GravaLevaCadaUmaAoSeuCampo) {
    const std::string sDmc = Grava("grava --sistema Mercos" + k_sCampos, k_textos);
    EXPECT_EQ(Le(sDmc), Integracao(sDmc, m_Tudo));
    const json semTextos = Json("le " + sDmc).at(0);
    for (const auto& [sOpcao, sCampo] :
         {std::pair<std::string, std::string>{"json-enviado", "regRegistroJSON"},
          {"mensagem", "regMensagemIntegracao"},
          {"json-retorno", "regJSONRetornoIntegracao_base64"}}) {
        json comUm = semTextos;
        comUm[sCampo] = m_Tudo[sCampo];
        EXPECT_EQ(Json("le --" + sOpcao + ' ' + sDmc).at(0), comUm) << "one text alone";
    }
    json comDois = semTextos;
    for (const char* pszCampo : {"regRegistroJSON", "regMensagemIntegracao"})
        comDois[pszCampo] = m_Tudo[pszCampo];
    EXPECT_EQ(Json("le --json-enviado --mensagem " + sDmc).at(0), comDois) << "two together";
    Grava("grava --filial 118 --dmc " + sDmc);
    EXPECT_EQ(Le(sDmc), Integracao(sDmc, m_Tudo, {{"ulPonteiroFilial", 118}})) << "the texts too";
    EXPECT_EQ(Json("grava --filial 119 --mensagem outra --dmc " + sDmc),
              (std::vector<json>{{{"regDmc", Decimal(sDmc)}, {"sDmc", sDmc}}}));
    const json outra{{"ulPonteiroFilial", 119}, {"regMensagemIntegracao", "outra"}};
    EXPECT_EQ(Le(sDmc), Integracao(sDmc, m_Tudo, outra)) << "what is not given stays";

    const auto carrega = [&](const json& rLinha) {
        m_Diretorio.CriaArquivo("linha.jsonl", rLinha.dump());
        EXPECT_EQ(Grava("carrega", {m_Diretorio.Junta("linha.jsonl")}), sDmc) << "a line with a DMC updates";
        return Le(sDmc);
    };
    EXPECT_EQ(carrega(Integracao(sDmc, m_Tudo)), Integracao(sDmc, m_Tudo)) << "what was read, each field";
    const json poucos{{"eStatusIntegracao", "eXVSMiddleware_Erro"},
                      {"regDataHoraInclusao", "2026-10-01T00:00:00Z"}};
    json linha = poucos;
    linha.merge_patch({{"sDmc", sDmc}, {"cReconsultarIdTerceiros", true}});
    EXPECT_EQ(carrega(linha), Integracao(sDmc, poucos, {{"cReconsultarIdTerceiros", 1}}))
        << "the whole record is replaced";
    Grava("grava --substitui --status Erro --inclusao 2026-10-01 --dmc " + sDmc);
    EXPECT_EQ(Le(sDmc), Integracao(sDmc, poucos)) << "what is not given is emptied";
}

TEST_F(Opcoes, StatusPorDmcEPorChave) {
    const std::string sUm = Grava("grava --sistema Mercos" + k_sCampos, k_textos);
    const std::string sOutro = Grava("grava --sistema SimulacaoSistemaTerceiro" + k_sCampos, k_textos);
    json outro = m_Tudo;
    outro["eSistemaIntegracao"] = "SimulacaoSistemaTerceiro";
    EXPECT_EQ(Json("status --chave 18446744073709551615 --sistema Mercos --status Enviado --mensagem foi "
                   "--json-retorno [3]"),
              (std::vector<json>{{{"regDmc", "0"},
                                  {"sDmc", "0"},
                                  {"uiChaveIntegracaoSistemaTerceiro", "18446744073709551615"},
                                  {"eStatusIntegracao", "eXVSMiddleware_Enviado"},
                                  {"eSistemaIntegracao", "Mercos"}}}));
    json lida = Le(sUm);
    EXPECT_NE(lida["regDataHoraAlteracaoStatus"], m_Tudo["regDataHoraAlteracaoStatus"]);
    EXPECT_EQ(lida, Integracao(sUm, m_Tudo,
                               {{"eStatusIntegracao", "eXVSMiddleware_Enviado"},
                                {"regMensagemIntegracao", "foi"},
                                {"regJSONRetornoIntegracao", "[3]"},
                                {"regJSONRetornoIntegracao_base64", nullptr},
                                {"regDataHoraAlteracaoStatus", lida["regDataHoraAlteracaoStatus"]}}));
    EXPECT_EQ(Le(sOutro), Integracao(sOutro, outro)) << "the same key of another system";

    EXPECT_EQ(Xvcr("status --status Cancelado --dmc " + sOutro).sSaida, "status gravado: Cancelado\n");
    lida = Le(sOutro);
    EXPECT_EQ(lida, Integracao(sOutro, outro,
                               {{"eStatusIntegracao", "eXVSMiddleware_Cancelado"},
                                {"ulPonteiroUsuarioCancelamento", 7},
                                {"regMensagemIntegracao", ""},
                                {"regDataHoraAlteracaoStatus", lida["regDataHoraAlteracaoStatus"]}}));
}

TEST_F(Opcoes, MapaLevaCadaUmaAoSeuCampo) {
    const std::string sOnde = " --tipo CadastroProduto --sistema Mercos --base-dados 3";
    const std::string sRegistro = sOnde + " --registro 20261121-7-2";
    const auto ligacao = [](const char* pszChave, const char* pszOrigem) {
        return std::vector<json>{{{"uiChaveRegistroSistemaTerceiro", pszChave},
                                  {"regDmcRegistroTelvo", Decimal("20261121-7-2")},
                                  {"uiBaseDadosTerceiro", "3"},
                                  {"eTipoIntegracao", "eXVSMiddleware_CadastroProduto"},
                                  {"eSistemaIntegracao", "Mercos"},
                                  {"regDmcOrigemIntegracao", Decimal(pszOrigem)}}};
    };
    EXPECT_EQ(Json("mapa pendente --origem 20261121-1-1" + sRegistro), ligacao("0", "20261121-1-1"));
    const auto gravada = ligacao("5500", "20261121-2-1");
    EXPECT_EQ(Json("mapa grava --chave-registro 5500 --origem 20261121-2-1" + sRegistro), gravada);
    EXPECT_EQ(Json("mapa busca" + sRegistro), gravada);
    EXPECT_EQ(Json("mapa busca --chave-registro 5500" + sOnde), gravada);
    EXPECT_EQ(Json("mapa busca --chave-registro 5501" + sRegistro), std::vector<json>{}) << "both must hold";
    EXPECT_EQ(Json("mapa pendente --origem 20261121-3-1" + sRegistro), gravada) << "left as it is";
    EXPECT_EQ(Json("mapa lista"), gravada);
    EXPECT_EQ(Xvcr("mapa lista").sSaida,
              "Registro      Tipo             Sistema  Base  Id externo  Origem\n"
              "------------  ---------------  -------  ----  ----------  ------------\n"
              "20261121-7-2  CadastroProduto  Mercos   3     5500        20261121-2-1\n");
    EXPECT_EQ(Xvcr("mapa busca --chave-registro 5501" + sOnde).sSaida, "nenhuma ligação encontrada\n");
}

TEST_F(Opcoes, DataHoraLevaCadaUmaAoSeuCampo) {
    const std::string sQual = " --tipo BuscaPedidos --sistema Mercos --tipo-data DataProximaRequisicao";
    const std::vector<json> gravada{{{"regDataHora", "2026-11-21T13:05:09Z"},
                                     {"eTipoIntegracao", "eXVSMiddleware_BuscaPedidos"},
                                     {"eSistemaIntegracao", "Mercos"},
                                     {"eTipoData", "eXVSMiddleware_DataProximaRequisicao"}}};
    EXPECT_EQ(Json("datahora grava --data-hora 2026-11-21T13:05:09" + sQual), gravada);
    EXPECT_EQ(Json("datahora busca" + sQual), gravada);
    EXPECT_EQ(Json("datahora lista"), gravada);
    const std::string sOutra = "datahora busca --tipo BuscaPedidos --sistema 16 --tipo-data 1";
    EXPECT_EQ(Json(sOutra), std::vector<json>{});
    EXPECT_EQ(Xvcr(sOutra).sSaida, "nenhuma data-hora encontrada\n");
}

// With the provider that writes down what it was asked and by whom; it has one item pending.
class OpcoesDeTroca : public Opcoes {
  protected:
    OpcoesDeTroca() {
        m_rGravador = {};
        SItemGravador& rItem = m_rGravador.listaItens.emplace_back();
        rItem.sJSON = "{\"p\":1}";
        rItem.reg.uiDmcOrigem = std::stoull(m_sOrigem);
        rItem.reg.uiBaseDadosTerceiro = 31;
        rItem.reg.eSistemaIntegracao = OfficialBank;
    }

    // What an exchange answers under the key 77.
    void Responde(const char* pszOperacao, const char* pszMensagem, std::uint32_t eStatus) {
        SRespostaDados& rResposta = m_rGravador.mapDados[pszOperacao];
        rResposta.bMuda = true;
        rResposta.sMensagem = pszMensagem;
        rResposta.reg.uiChaveIntegracaoSistemaTerceiro = 77;
        rResposta.reg.eStatusIntegracao = eStatus;
    }

    const std::string m_sOrigem = Decimal("20261121-17-1");
    CXVBibliotecaDinamica m_Biblioteca{"XVProvedor8.dll"};
    SGravador& m_rGravador = *m_Biblioteca.GetFuncao<PFXVGravador>(k_pszFuncaoGravador)();
};

TEST_F(OpcoesDeTroca, PendenciaLevaCadaUmaAoProvedorEAoRegistro) {
    const std::string sDmc = Grava(
        "pendencia --sistema OfficialBank --origem 20261121-18-1 --tipo CadastroProduto --transacao Exclusao "
        "--chave-registro 12 --base-dados 9007199254740993 --inclusao 2026-11-01T01:02:03 "
        "--alteracao-status 1848-01-01 --filial 4294967295 --usuario-inclusao 20 --usuario-cancelamento 21 "
        "--auxiliar 22 --tipo-auxiliar 255");
    EXPECT_EQ(
        m_rGravador.listaChamadas.at(0),
        "BuscaIntegracoes 001/7/42 dmc=0-0-0 origem=91509-18-1 tipo=6 sistema=8 transacao=3 auxiliar=22/255 "
        "chaveRegistro=12 base=9007199254740993 filial=4294967295");
    EXPECT_EQ(Json("busca").at(0)["sDmc"], sDmc);
    EXPECT_EQ(Le(sDmc), Integracao(sDmc, m_Tudo,
                                   {{"regDmcIntegracaoOrigem", Decimal("20261121-18-1")},
                                    {"regDmcMovimentoOrigem", m_sOrigem},
                                    {"uiChaveIntegracaoSistemaTerceiro", "0"},
                                    {"uiBaseDadosTerceiro", "31"},
                                    {"eStatusIntegracao", "eXVSMiddleware_Pendente"},
                                    {"eSistemaIntegracao", "OfficialBank"},
                                    {"cReconsultarIdTerceiros", 0},
                                    {"regRegistroJSON", "{\"p\":1}"},
                                    {"regMensagemIntegracao", ""},
                                    {"regJSONRetornoIntegracao", ""},
                                    {"regJSONRetornoIntegracao_base64", nullptr}}));
    m_rGravador.listaItens.clear();
    EXPECT_EQ(Xvcr("pendencia --sistema OfficialBank --origem 20261121-17-1").sSaida,
              "nenhuma integração gravada\n");
}

TEST_F(OpcoesDeTroca, InstantaneaLevaCadaUmaAoProvedorEAoRegistro) {
    const std::string sPedido =
        "instantanea --sistema OfficialBank --tipo 6 --filial 19 --auxiliar 22 --tipo-auxiliar 23 "
        "--integracao-origem 20261121-17-1 ";
    const auto pedido = [&](const std::string& sDmc, const char* pszTransacao) {
        return "BuscaIntegracoes 001/7/42 dmc=" + sDmc +
               " origem=91509-17-1 tipo=6 sistema=8 transacao=" + pszTransacao +
               " auxiliar=22/23 chaveRegistro=0 base=0 filial=19";
    };
    Responde("EnviaJson", "foi", 3);
    const std::string sDmc = Grava(sPedido + "--transacao Inclusao");
    EXPECT_EQ(m_rGravador.listaChamadas.at(0), pedido("0-0-0", "1"));
    EXPECT_EQ(Le(sDmc)["regMensagemIntegracao"], "foi");

    m_rGravador.listaChamadas.clear();
    Responde("ExcluiDados", "saiu", 5);
    EXPECT_EQ(Xvcr(sPedido + "--transacao Exclusao --dmc " + sDmc).sSaida, sDmc + "\n");
    EXPECT_EQ(m_rGravador.listaChamadas.at(0), pedido(XVDescreveDmc(std::stoull(Decimal(sDmc))), "3"));
    EXPECT_EQ(Le(sDmc)["regMensagemIntegracao"], "saiu");
    EXPECT_EQ(Json("busca").size(), 1U);

    m_rGravador.listaItens.clear();
    EXPECT_EQ(Xvcr(sPedido + "--transacao 1").sSaida, "nenhuma integração gravada\n");
    EXPECT_EQ(Json(sPedido + "--transacao 1"), std::vector<json>{});
}

TEST_F(OpcoesDeTroca, OQueFoiGravadoEDitoTambemQuandoUmItemPosteriorFalha) {
    m_rGravador.listaItens.resize(4, m_rGravador.listaItens[0]);
    SRespostaDados& rEnvio = m_rGravador.mapDados["EnviaJson"];
    rEnvio.fnDepois = [&rEnvio, i = 0]() mutable {
        if (++i == 3) rEnvio.iResultado = static_cast<std::int32_t>(0x80990001U);
    };
    const SExecucao troca = Xvcr("instantanea --tipo 6 --transacao 1 --integracao-origem 20261121-17-1");
    const auto listaTrocadas = Json("busca");
    ASSERT_EQ(listaTrocadas.size(), 2U);
    EXPECT_EQ(troca.iSaida, 1);
    EXPECT_EQ(troca.sSaida, listaTrocadas[0]["sDmc"].get<std::string>() + '\n' +
                                listaTrocadas[1]["sDmc"].get<std::string>() + '\n');
    EXPECT_EQ(
        troca.sErro,
        "xvcr: 0x80990001: a operação falhou; integrações gravadas: 2; confira no sistema externo e com "
        "\"xvcr registro\" o que já foi enviado, antes de enviar outra vez\n");

    // Two items have changed one integration when the third fails.
    SRespostaDados& rBusca = m_rGravador.mapDados["BuscaDados"];
    rBusca.fnDepois = [&rBusca, i = 0]() mutable {
        if (++i == 3) rBusca.iResultado = static_cast<std::int32_t>(0x80990001U);
    };
    const std::string sDmc = listaTrocadas[0]["sDmc"];
    const SExecucao mudanca = Xvcr("instantanea --tipo 6 --transacao 2 --dmc " + sDmc);
    EXPECT_EQ(mudanca.sSaida, sDmc + '\n');
    EXPECT_NE(mudanca.sErro.find("integrações gravadas: 1; confira"), std::string::npos) << mudanca.sErro;

    m_rGravador.listaItens[1].reg.uiDmcOrigem = 0;  // a pending integration needs a record of the suite
    const SExecucao pendencia = Xvcr("pendencia --origem 20261121-17-1 --tipo 6 --transacao 1");
    ASSERT_EQ(Json("busca").size(), 3U);
    EXPECT_EQ(pendencia.iSaida, 1);
    EXPECT_EQ(pendencia.sSaida, Json("busca").at(2)["sDmc"].get<std::string>() + '\n');
    EXPECT_EQ(
        pendencia.sErro,
        "xvcr: 0x81080CEB E_XVCR_CHAVE_REGISTRO_TELVO_ZERADA: A chave do registro está zerada; integrações "
        "gravadas: 1; repetir gravaria outra vez o que já está gravado\n");
}

TEST_F(OpcoesDeTroca, LeConsultaOSistemaExternoEEncerraAConsulta) {
    const std::string sDmc = Grava("grava --sistema OfficialBank --chave 41 --status Enviado");
    const json gravada = Le(sDmc);
    Responde("BuscaDados", "recusado", 4);
    for (const std::string sOpcao : {"", " --operacao-posterior"}) {
        m_rGravador.listaChamadas.clear();
        EXPECT_EQ(Json("le --todos --consulta-terceiro " + sDmc + sOpcao).at(0)["regMensagemIntegracao"],
                  "recusado");
        std::string sOperacoes;
        for (const std::string& r : m_rGravador.listaChamadas) sOperacoes += r.substr(0, r.find(' ') + 1);
        EXPECT_EQ(sOperacoes, sOpcao.empty() ? "BuscaDados Anterior " : "BuscaDados Anterior Posterior ");
    }
    EXPECT_EQ(Le(sDmc), gravada) << "nothing is recorded";
}

TEST_F(OpcoesDeTroca, ProvedoresDizOsQueHa) {
    const json listados = Json("provedores");
    ASSERT_EQ(listados.size(), 2U);
    EXPECT_EQ(listados[0]["eSistemaIntegracao"], "SimulacaoSistemaTerceiro");
    EXPECT_EQ(listados[1], (json{{"eSistemaIntegracao", "OfficialBank"},
                                 {"biblioteca", "XVProvedor8.dll"},
                                 {"carregado", true}}));
}

TEST_F(OpcoesDeTroca, ConsultaLevaCadaUmaAoProvedorETrazODocumentoByteAByte) {
    Grava("grava --filial 1");  // a query makes no store
    m_rGravador.consulta = {.eStatus = 3,
                            .sMensagem = "pague",
                            .sJSON = "{\"eco\":1}",
                            .sDocumento = std::string("%PDF\0\xff", 6)};
    const std::string sConsulta =
        "consulta --tipo-consulta ConsultaBoleto --chave-consulta @@9 --auxiliar 5 --tipo-auxiliar 6";
    json esperada{{"regMensagemRetorno", "pague"},
                  {"regJSONRetorno", "{\"eco\":1}"},
                  {"eStatusConsulta", "eXVSMiddleware_ConsultaPagamentoNecessario"},
                  {"ulTamanhoDocumentoRetorno", 6},
                  {"pDocumentoRetorno_base64", "JVBERgD/"}};
    EXPECT_EQ(Json(sConsulta), std::vector<json>{esperada});
    EXPECT_EQ(m_rGravador.listaChamadas,
              TArgumentos{"Consulta 001/7/42 tipo=2 chave=[@9] auxiliar=5 tipoAuxiliar=6"});
    EXPECT_EQ(Xvcr(sConsulta).sSaida,
              "Resultado:  ConsultaPagamentoNecessario\nMensagem:   pague\nJSON:       {\"eco\":1}\n"
              "Documento:  6 bytes\n");
    const std::string sArquivo = m_Diretorio.Junta("boleto.pdf");
    esperada.erase("pDocumentoRetorno_base64");
    esperada["pDocumentoRetorno_arquivo"] = sArquivo;
    EXPECT_EQ(Json(sConsulta, {"--documento", sArquivo}), std::vector<json>{esperada});
    EXPECT_EQ(m_Diretorio.LeConteudo("boleto.pdf"), m_rGravador.consulta.sDocumento);
}

}  // namespace
