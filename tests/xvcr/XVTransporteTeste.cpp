// The forms in which integrations leave, of values that hardly a store has: bytes that each form has to
// quote, keys, date-times and enumerations that are impossible, more rows than a transaction takes. And an
// import that the store stops.
#include <algorithm>
#include <filesystem>

#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRelogioFalso.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/xvcr/XVPrograma.h"
#include "tools/xvcr/fields/XVLinhaExportacao.h"
#include "tools/xvcr/transport/XVFormatoExportacao.h"
#include "tools/xvcr/transport/XVImportacao.h"

namespace {

using ETipo = SIntegracaoTransportada::ETipo;

SIntegracaoTransportada Estranha() {
    SIntegracaoTransportada r;
    r.ulPosicaoIndice = 9;
    CXVDadosCR_IntegracaoMiddleware& rDados = r.dados;
    rDados.sRegistroJSON = "a\rb";
    rDados.sMensagemIntegracao = "l'1\nl\"2\"\t\x01\x1f\x7f\b\f\\/é";
    rDados.sJSONRetornoIntegracao = "\xff,";
    rDados.regDmc = {6439373410953871361};
    rDados.regDmcIntegracaoOrigem = {3};  // null and yet of a kind
    rDados.regDmcMovimentoOrigem = {~XVUInt64{0}};
    rDados.regDataHoraInclusao = {86400};  // no such time of day
    rDados.regDataHoraAlteracaoStatus = REG_XVDMAHMSUTC::Cria(REG_XVDMA::Cria(2026, 11, 21), 1);
    rDados.uiChaveIntegracaoSistemaTerceiro = 11;
    rDados.uiChaveRegistroSistemaTerceiro = 12;
    rDados.uiBaseDadosTerceiro = 13;
    rDados.eTipoIntegracao = 99;
    rDados.eStatusIntegracao = 77;
    rDados.eSistemaIntegracao = 4;
    rDados.eTipoTransacao = 55;
    rDados.ulPonteiroFilial = 14;
    rDados.ulPonteiroUsuarioInclusao = 15;
    rDados.ulPonteiroUsuarioCancelamento = 16;
    rDados.ulPonteiroAuxiliar = 17;
    rDados.cReconsultarIdTerceiros = 18;
    rDados.ucTipoPonteiroAuxiliar = 19;
    return r;
}

// Everything of a form but what it begins with.
std::string Forma(EFormatoExportacao eFormato, const std::vector<SIntegracaoTransportada>& rLista,
                  bool bTextos = true) {
    const auto pFormato = XVCriaFormato(eFormato, bTextos);
    std::string sTudo;
    pFormato->Comeca("002", &sTudo);
    sTudo.clear();
    for (const SIntegracaoTransportada& r : rLista) pFormato->Inclui(r, &sTudo);
    pFormato->Termina(&sTudo);
    return sTudo;
}

TEST(Transporte, CadaFormaCitaOQueNaoPodeEstarNela) {
    SIntegracaoTransportada vaga;
    vaga.eTipo = ETipo::eVaga;
    vaga.dados.regDmc = Estranha().dados.regDmc;
    SIntegracaoTransportada substituida = vaga;
    substituida.eTipo = ETipo::eSubstituida;
    const std::vector<SIntegracaoTransportada> lista{Estranha(), vaga, substituida};
    const std::string sResto =
        "20261121-1-1,,18446744073709551615,,2026-11-21T00:00:01Z,11,12,13,99,77,4,55,14,15,16,17,18,19,";
    EXPECT_EQ(
        Forma(EFormatoExportacao::eCsv, lista),
        "\"a\rb\",\"l'1\nl\"\"2\"\"\t\x01\x1f\x7f\b\f\\/é\",/yw=," + sResto + "regJSONRetornoIntegracao\r\n");
    EXPECT_EQ(Forma(EFormatoExportacao::eCsv, lista, false), sResto + "\r\n");
    SIntegracaoTransportada crua;
    crua.dados.sRegistroJSON = crua.dados.sMensagemIntegracao = "\x80";
    EXPECT_TRUE(Forma(EFormatoExportacao::eCsv, {crua})
                    .starts_with("gA==,gA==,,,,,,,0,0,0,NenhumaIntegracao,NenhumStatus,Nenhum,"));
    EXPECT_TRUE(
        Forma(EFormatoExportacao::eCsv, {crua}).ends_with(",0,regRegistroJSON regMensagemIntegracao\r\n"));

    EXPECT_EQ(Forma(EFormatoExportacao::eSql, lista),
              "INSERT INTO integracao VALUES('a\rb','l''1\nl\"2\"\t\x01\x1f\x7f\b\f\\/é','/yw=',"
              "'20261121-1-1',NULL,'18446744073709551615',NULL,'2026-11-21T00:00:01Z','11','12','13','99',"
              "'77','4','55',14,15,16,17,18,19,'regJSONRetornoIntegracao');\nCOMMIT;\n");

    const std::string sLinhas =
        R"({"linha":"integracao","posicaoIndice":9,"regRegistroJSON":"a\rb",)"
        R"("regMensagemIntegracao":"l'1\nl\"2\"\t\u0001\u001f)"
        "\x7f"
        R"(\b\f\\/é","regJSONRetornoIntegracao_base64":"/yw=","regDmc":"20261121-1-1",)"
        R"("regDmcIntegracaoOrigem":"3","regDmcMovimentoOrigem":"18446744073709551615",)"
        R"("regDataHoraInclusao":"86400","regDataHoraAlteracaoStatus":"2026-11-21T00:00:01Z",)"
        R"("uiChaveIntegracaoSistemaTerceiro":"11","uiChaveRegistroSistemaTerceiro":"12",)"
        R"("uiBaseDadosTerceiro":"13","eTipoIntegracao":99,"eStatusIntegracao":77,"eSistemaIntegracao":4,)"
        R"("eTipoTransacao":55,"ulPonteiroFilial":14,"ulPonteiroUsuarioInclusao":15,)"
        R"("ulPonteiroUsuarioCancelamento":16,"ulPonteiroAuxiliar":17,"cReconsultarIdTerceiros":18,)"
        R"("ucTipoPonteiroAuxiliar":19})"
        "\n"
        R"({"linha":"vaga","regDmc":"20261121-1-1"})"
        "\n"
        R"({"linha":"substituida","regDmc":"20261121-1-1"})"
        "\n";
    const std::string sTudo = Forma(EFormatoExportacao::eJsonLines, lista);
    EXPECT_EQ(sTudo.substr(0, sLinhas.size()), sLinhas);
    EXPECT_TRUE(sTudo.substr(sLinhas.size())
                    .starts_with(R"({"linha":"fim","integracoes":1,"substituidas":1,"vagas":1,"soma":")"));
}

TEST(Transporte, FimDeLinhaDuploEMilLinhasPorTransacao) {
    SIntegracaoTransportada r;
    r.dados.sRegistroJSON = "'\r\n\r\n'";
    const std::string sTexto = Forma(EFormatoExportacao::eSql, {r}).substr(30);
    const std::string sMarca = sTexto.substr(11, sTexto.find('}') - 10);
    EXPECT_EQ(sTexto.substr(0, sTexto.find(",NULL")),
              "replace('''" + sMarca + sMarca + "''','" + sMarca + "','\r'||'\n')");
    const std::string sMil = Forma(EFormatoExportacao::eSql, std::vector<SIntegracaoTransportada>(1000));
    EXPECT_EQ(sMil.find("BEGIN"), std::string::npos);
    const std::string sMais = Forma(EFormatoExportacao::eSql, std::vector<SIntegracaoTransportada>(2001));
    const std::size_t uiMil = sMil.size() - std::string("COMMIT;\n").size();
    EXPECT_EQ(sMais.substr(uiMil, 23), "COMMIT;\nBEGIN;\nINSERT I");
    EXPECT_EQ(sMais.substr(2 * uiMil + 15, 23), "COMMIT;\nBEGIN;\nINSERT I");
}

TEST(Transporte, LinhaQueNaoSeLeDizOCampo) {
    const auto erro = [](const std::string& sLinha) {
        TLinhaExportacao linha;
        const SErroCampo r = XVLinhaExportacao::Le(sLinha, &linha);
        return r.sCampo + ": " + r.sMensagem;
    };
    const std::string sDesta = "linha: não é de uma exportação desta versão";
    EXPECT_EQ(erro(R"({"regDmc":"0"})"), sDesta);
    EXPECT_EQ(erro(R"({"linha":1})"), sDesta);
    EXPECT_EQ(erro(R"({"linha":"outra"})"), sDesta);
    EXPECT_EQ(erro("["), ": JSON inválido no byte 2");
    EXPECT_EQ(erro(R"({"linha":"vaga","regDmc":"20261121-1-1","eStatusIntegracao":1})"),
              "linha: só regDmc vale com \"vaga\"");
    EXPECT_EQ(erro(R"({"linha":"vaga","posicaoIndice":1})"), "posicaoIndice: campo desconhecido");
    EXPECT_EQ(erro(R"({"linha":"substituida","posicaoIndice":1})"), "posicaoIndice: campo desconhecido");
    EXPECT_EQ(erro(R"({"linha":"integracao","posicaoIndice":"x"})"),
              "posicaoIndice: esperado um número inteiro sem sinal");
    EXPECT_EQ(erro(R"({"linha":"mapa","eStatusIntegracao":1})"), "eStatusIntegracao: campo desconhecido");
    EXPECT_EQ(erro(R"({"linha":"fim","mapa":-1})"), "mapa: esperado um número inteiro sem sinal");
    TLinhaExportacao linha;
    const std::string sFim =
        R"({"linha":"fim","integracoes":1,"substituidas":2,"vagas":3,"mapa":4,"datasHoras":5,"soma":"6"})";
    ASSERT_EQ(XVLinhaExportacao::Le(sFim, &linha).sMensagem, "");
    std::string sVolta;
    XVLinhaExportacao::Anexa(sVolta, std::get<SFimExportacao>(linha));
    EXPECT_EQ(sVolta, sFim);
}

class TransporteAqui : public XVPrograma {
  protected:
    TransporteAqui() : XVPrograma(true) {}
    CXVRelogioFalso m_Relogio;
    const CXVGuardaRelogio m_GuardaRelogio{m_Relogio};
};

// A full disk would refuse each of the lines that follow.
TEST_F(TransporteAqui, ImportacaoQueContinuaParaNaFalhaDaBase) {
    for (int i = 0; i < 3; ++i) Grava("grava --status Pendente --json-enviado {}");
    const std::string sArquivo = m_Diretorio.Junta("tudo.jsonl");
    EXPECT_EQ(Xvcr("exporta --para", {sArquivo}).iSaida, 0);
    const auto importa = [&] {
        return XVExecutaAqui({"--diretorio", m_Diretorio.GetCaminho(), "--empresa", "002", "importa",
                              sArquivo, "--continua", "--json"});
    };
    CXVSistemaArquivosFalhas falhas(XVPlataforma::SistemaArquivos());
    falhas.SetFiltro([](const std::string& s) {
        return s.find("002") != std::string::npos && s.find("CRINTEGMIDJSON2") != std::string::npos;
    });
    const CXVGuardaSistemaArquivos guarda(falhas);
    const auto enche = [&] {
        falhas.Programa({.eOperacao = EOperacaoArquivo::eGrava,
                         .bPermanente = true,
                         .eCausa = ECausaArquivo::eDiscoCheio});
    };
    enche();
    const std::string sCheio =
        "0x80043F08 eDiskFull: O disco está cheio ou a cota acabou; libere espaço e repita, nada foi "
        "perdido. Arquivo: ";
    SExecucao execucao = importa();  // into a company that is not there yet
    EXPECT_EQ(execucao.iSaida, 1);
    EXPECT_EQ(execucao.sSaida,
              "{\"novas\":0,\"jaEstavam\":0,\"deixadas\":0,\"lancamentos\":0,\"recusadas\":0,"
              "\"completa\":false}\n");
    EXPECT_TRUE(execucao.sErro.starts_with("xvcr: " + sCheio)) << execucao.sErro;
    EXPECT_EQ(std::count(execucao.sErro.begin(), execucao.sErro.end(), '\n'), 1) << execucao.sErro;
    falhas.Limpa();
    static_cast<void>(XVExecutaAqui(
        {"--diretorio", m_Diretorio.GetCaminho(), "--empresa", "002", "grava", "--status", "Erro"}));
    enche();
    execucao = importa();  // behind another integration
    EXPECT_EQ(execucao.iSaida, 1);
    EXPECT_EQ(execucao.sSaida,
              "{\"novas\":0,\"jaEstavam\":0,\"deixadas\":0,\"lancamentos\":0,\"recusadas\":2,"
              "\"completa\":false}\n");
    EXPECT_TRUE(execucao.sErro.starts_with(
        "xvcr: " + sArquivo + ", linha 2: o DMC já é o de outra integração nesta base\nxvcr: " + sArquivo +
        ", linha 3: " + sCheio))
        << execucao.sErro;
    EXPECT_EQ(execucao.sErro.find("linha 4"), std::string::npos) << execucao.sErro;
}

// What cannot be read is told, and keeps its place behind a whole batch; a day without records is told too,
// and what is no day of the calendar is none.
TEST_F(TransporteAqui, ExportacaoGuardaOLugarDoQueNaoSeLe) {
    std::string sCarga;
    for (int i = 0; i < 66; ++i)
        sCarga += "{\"eStatusIntegracao\":\"Pendente\",\"regRegistroJSON\":\"{}\"}\n";
    m_Diretorio.CriaArquivo("carga.jsonl", sCarga);
    m_Relogio.SetUTC({2026, 11, 20, 12, 0, 0});
    Grava("grava --status Erro");
    m_Relogio.SetUTC({2026, 11, 21, 12, 0, 0});
    ASSERT_EQ(Xvcr("carrega", {m_Diretorio.Junta("carga.jsonl")}).iSaida, 0);
    const std::string sPasta = m_Diretorio.Junta("001/DF/");
    const std::string sDia = "001/DF/CRINTEGMID20261121.dat";
    std::string sRegistros = m_Diretorio.LeConteudo(sDia).value_or("");
    ASSERT_EQ(sRegistros.size(), 240U + 66 * 88);
    sRegistros[sRegistros.size() - 88 + 48 + 1] = '\x7f';  // which text is the last one's
    m_Diretorio.CriaArquivo(sDia, sRegistros);
    std::filesystem::copy_file(sPasta + "CRINTEGMID20261121.dat", sPasta + "CRINTEGMID99999999.dat");
    std::filesystem::remove(sPasta + "CRINTEGMID20261120.dat");
    const SExecucao execucao = Xvcr("exporta");
    EXPECT_EQ(execucao.iSaida, 1);
    EXPECT_EQ(std::count(execucao.sErro.begin(), execucao.sErro.end(), '\n'), 2) << execucao.sErro;
    for (const char* pszDmc : {"20261120-1-1", "20261121-66-1"}) {
        EXPECT_NE(execucao.sErro.find(std::string("xvcr: ") + pszDmc + ": "), std::string::npos)
            << execucao.sErro;
        EXPECT_NE(execucao.sSaida.find(std::string(R"({"linha":"vaga","regDmc":")") + pszDmc + "\"}\n"),
                  std::string::npos)
            << execucao.sSaida;
    }
    EXPECT_NE(execucao.sSaida.find(R"({"linha":"fim","integracoes":65,"vagas":2,"soma":")"),
              std::string::npos)
        << execucao.sSaida;
}

TEST(Transporte, VariosTextosCrusEmSql) {
    SIntegracaoTransportada r;
    r.dados.sRegistroJSON = r.dados.sMensagemIntegracao = "\x80";
    EXPECT_TRUE(Forma(EFormatoExportacao::eSql, {r})
                    .ends_with(",0,'regRegistroJSON regMensagemIntegracao');\nCOMMIT;\n"));
}

}  // namespace
