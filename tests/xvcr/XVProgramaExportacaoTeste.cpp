// exporta and importa: what leaves a store and enters another one is the same store.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "tests/harness/XVProcessoFilho.h"
#include "tests/xvcr/XVPrograma.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;

constexpr const char* k_szInicio = R"({"linha":"inicio","versao":1,"empresa":"001"})"
                                   "\n";

std::string Linha(const std::string& sDmc, const std::string& sMais = {}) {
    return R"({"linha":"integracao","regDmc":")" + sDmc + '"' + sMais + "}\n";
}

class ProgramaExportacao : public XVPrograma {
  protected:
    SExecucao Outra(const std::string& sPalavras, const std::string& sEntrada = {}) const {
        TArgumentos lista = XVPalavras("--empresa 001 " + sPalavras);
        lista.insert(lista.begin(), {"--diretorio", m_Outro.GetCaminho()});
        return XVExecuta(XVProgramaVizinho("xvcr"), lista, sEntrada);
    }
    static std::map<std::string, std::string> Bytes(const CXVDiretorioTeste& rDiretorio) {
        std::map<std::string, std::string> mapa;
        for (const auto& rArquivo : std::filesystem::recursive_directory_iterator(rDiretorio.GetCaminho())) {
            if (!rArquivo.is_regular_file()) continue;
            std::ifstream arquivo(rArquivo.path(), std::ios::binary);
            std::ostringstream bytes;
            bytes << arquivo.rdbuf();
            mapa[rArquivo.path().generic_string()] = bytes.str();
        }
        return mapa;
    }
    // Everything that a store has to say, to hold against another's.
    template <class FXvcr>
    static std::string Respostas(FXvcr fnXvcr) {
        std::string sTudo;
        for (const char* pszPergunta :
             {"busca --json", "busca --le --todos --json", "mapa lista --json", "datahora lista --json",
              "busca --chave-inicial 77 --sistema OfficialBank --le --json", "le 20200101-2-1"}) {
            const SExecucao r = fnXvcr(pszPergunta);
            sTudo += std::to_string(r.iSaida) + r.sSaida + r.sErro;
        }
        return sTudo;
    }
    // Two days, the later one first in the index; an integration that a later one of the bank replaced;
    // texts that are no UTF-8, that JSON has to escape, and one that was superseded.
    void EncheBase() const {
        m_Diretorio.CriaArquivo("cru", "\xff\xfe \"aspas\" \\ \x01\n\tfim\r\n");
        const std::string sDia =
            Linha("20200102-1-1", R"(,"posicaoIndice":1,"regDataHoraInclusao":"2020-01-02T01:02:03Z")");
        EXPECT_EQ(
            Xvcr("importa -", {},
                 k_szInicio + sDia +
                     Linha("20200101-1-1",
                           R"(,"posicaoIndice":2,"uiBaseDadosTerceiro":"18446744073709551615")") +
                     R"({"linha":"substituida","regDmc":"20200101-2-1","regMensagemIntegracao":"antes"})"
                     "\n"
                     R"({"linha":"vaga","regDmc":"20200101-3-1"})"
                     "\n")
                .iSaida,
            1)
            << "the last line is missing";
        const std::string sDmc = Grava(
            "grava --sistema OfficialBank --chave 77 --status Pendente --tipo BuscaPedidos --transacao "
            "Alteracao --filial 3 --usuario-inclusao 4 --usuario-cancelamento 5 --auxiliar 6 --tipo-auxiliar "
            "8 --reconsultar 1 --base-dados 9 --movimento-origem 0-33-2 --integracao-origem 20200102-1-1",
            {"--json-enviado", "@" + m_Diretorio.Junta("cru")});
        Json("status --status Erro --mensagem é --dmc " + sDmc);
        Json("status --status Sucesso --mensagem Água --json-retorno {} --dmc " + sDmc);
        Grava("grava --sistema OfficialBank --chave 77 --status Sucesso");
        Grava("grava --sistema Mercos --status Pendente");
        Json(
            "mapa grava --registro 0-33-0 --chave-registro 5501 --base-dados 2 --tipo CadastroProduto "
            "--sistema "
            "Mercos --origem " +
            sDmc);
        Json("mapa pendente --registro 20200101-7-2 --tipo CadastroProduto --sistema Mercos");
        Json(
            "datahora grava --tipo BuscaPedidos --sistema Mercos --tipo-data DataUltimaBusca --data-hora "
            "2020-01-01T13:05:09Z");
    }
    CXVDiretorioTeste m_Outro;
};

TEST_F(ProgramaExportacao, IdaEVoltaDaoAMesmaBase) {
    EncheBase();
    const auto antes = Bytes(m_Diretorio);
    const std::string sTudo = Xvcr("exporta").sSaida;
    EXPECT_EQ(Bytes(m_Diretorio), antes) << "exporting only reads";
    const std::string sPasta = m_Outro.Junta("dias");
    EXPECT_EQ(Xvcr("exporta --por-dia --para", {sPasta}).iSaida, 0);
    EXPECT_EQ(Outra("importa " + sPasta).sSaida,
              "6 integrações gravadas, 0 já estavam, 0 deixadas; 3 do mapa e das datas-horas; "
              "0 linhas recusadas\n");
    EXPECT_EQ(Respostas([&](const char* psz) { return Outra(psz); }),
              Respostas([&](const char* psz) { return Xvcr(psz); }));
    EXPECT_EQ(Outra("exporta").sSaida, sTudo);
    EXPECT_EQ(Outra("verifica").iSaida, 0) << Outra("verifica").sSaida;

    EXPECT_EQ(Outra("importa -", sTudo).sSaida,
              "0 integrações gravadas, 6 já estavam, 0 deixadas; 3 do mapa e das datas-horas; "
              "0 linhas recusadas\n");
    EXPECT_EQ(Outra("exporta").sSaida, sTudo) << "importing it again changes nothing";
    // What is recorded next has the same key in both.
    EXPECT_EQ(XVLinhasJson(Outra("grava --status Erro --json").sSaida).at(0)["sDmc"],
              Grava("grava --status Erro"));
}

constexpr const char* k_szRecusadas = R"(xvcr: linha 4: o DMC já é o de outra integração nesta base
xvcr: linha 5: a posição não é a seguinte do dia nesta base: falta a integração anterior
xvcr: linha 6: outra integração do OfficialBank já tem esta chave externa nesta base
xvcr: linha 7: o registro da suíte já tem outra ligação nesta base
xvcr: linha 8, campo "eTipoTransacao": valor desconhecido; os aceitos são: 0=TipoTransacaoNenhum, )"
                                      R"(1=Inclusao, 2=Alteracao, 3=Exclusao
xvcr: linha 9, campo "campo": campo desconhecido
xvcr: linha 10: mais de 500 bytes; --linha-maxima aceita mais
xvcr: linha 11: JSON inválido no byte 2
xvcr: linha 12, campo "linha": só regDmc vale com "vaga"
xvcr: linha 13, campo "regDmc": esperado um DMC (AAAAMMDD-ponteiro-tipo, ou o valor decimal de 64 bits)
xvcr: entrada padrão: a exportação termina antes da sua linha final; o que veio antes foi importado
)";

// One line after the other into a store that has something: refused ones are named and change nothing.
TEST_F(ProgramaExportacao, LinhaRecusadaNaoMudaNadaEAsOutrasEntram) {
    const std::string sBanco = R"(,"eSistemaIntegracao":8,"uiChaveIntegracaoSistemaTerceiro":5)";
    const std::string sMapa = R"({"linha":"mapa","regDmcRegistroTelvo":"0-3-0","eSistemaIntegracao":16,)"
                              R"("uiChaveRegistroSistemaTerceiro":)";
    const std::string sLonga =
        Linha("20200101-2-1", R"(,"regMensagemIntegracao":")" + std::string(999, 'x') + '"');
    const std::string sEntrada =
        k_szInicio + Linha("20200101-1-1", sBanco) + sMapa + "7}\n" +
        Linha("20200101-1-1", R"(,"eStatusIntegracao":2)") +  // 4: another integration
        Linha("20200101-3-1") +                               // 5: the second is missing
        Linha("20200101-2-1", sBanco) +                       // 6: key of the bank
        sMapa + "8}\n" +                                      // 7: another id
        Linha("20200101-2-1", R"(,"eTipoTransacao":99)") +    // 8
        Linha("20200101-2-1", R"(,"campo":1)") +              // 9
        sLonga +                                              // 10
        "{\n" +                                               // 11
        R"({"linha":"vaga","regDmc":"20200101-2-1","ulPonteiroFilial":1})" + "\n" +  // 12
        Linha("20200101-0-1") +                                                      // 13
        Linha("20200101-2-1");
    const SExecucao execucao = Xvcr("importa - --continua --linha-maxima 500 --json", {}, sEntrada);
    EXPECT_EQ(execucao.iSaida, 1);
    EXPECT_EQ(execucao.sErro, k_szRecusadas);
    EXPECT_EQ(XVLinhasJson(execucao.sSaida).at(0).dump(),
              R"({"completa":false,"deixadas":0,"jaEstavam":0,"lancamentos":1,"novas":2,"recusadas":10})");
    EXPECT_EQ(Xvcr("busca --dmcs").sSaida, "20200101-1-1\n20200101-2-1\n");
    EXPECT_EQ(Json("mapa lista").at(0)["uiChaveRegistroSistemaTerceiro"], "7");
    EXPECT_EQ(Json("le 20200101-1-1").at(0)["uiChaveIntegracaoSistemaTerceiro"], "5");
}

// What no later line can mend ends the import, whatever was asked for.
TEST_F(ProgramaExportacao, OQueAcabaAImportacao) {
    const std::string sInicio = k_szInicio, sUma = Linha("20200101-1-1");
    const std::string sData = R"({"linha":"dataHora","eTipoIntegracao":6,"eSistemaIntegracao":16,)"
                              R"("eTipoData":1,"regDataHora":"2020-01-0)";
    const std::string sSemFim =
        "entrada padrão: a exportação termina antes da sua linha final; o que veio antes foi importado";
    const std::string sOutraSoma =
        "a linha final não confere com as que vieram antes dela: faltam linhas ou foram alteradas";
    const struct {
        std::string sLinhas, sErros;
    } aCasos[] = {
        {sUma + sInicio, "linha 1: a exportação não começa aqui: esta não é a sua primeira linha"},
        {R"({"linha":"inicio","versao":2})"
         "\n" +
             sUma,
         "linha 1: a exportação é da versão 2; este programa lê a versão 1"},
        {sInicio + sUma + sInicio + sUma, "linha 3: outra exportação começa antes do fim da anterior"},
        {sInicio, sSemFim},
        {"", sSemFim},  // an exporter that failed has written nothing
        {sInicio + R"({"linha":"fim","soma":"1"})", "linha 2: " + sOutraSoma},
        {sInicio + sData + "1\"}\n" + sData + "2\"}\n" + sData + "1\"}\n",
         "linha 3: a data-hora já tem outro valor nesta base\nxvcr: " + sSemFim},
    };
    for (const auto& rCaso : aCasos) {
        const SExecucao execucao = Xvcr("importa - --continua", {}, rCaso.sLinhas);
        EXPECT_EQ(execucao.iSaida, 1);
        EXPECT_EQ(execucao.sErro, "xvcr: " + rCaso.sErros + '\n');
    }
    EXPECT_EQ(Xvcr("importa -", {}, sInicio + Linha("20200101-3-1") + sUma).sErro,
              "xvcr: linha 2: a posição não é a seguinte do dia nesta base: falta a integração anterior\n")
        << "without the option the first one";
}

TEST_F(ProgramaExportacao, ArquivoIncompletoOuAlteradoNaoEntra) {
    EncheBase();
    const std::string sTudo = Xvcr("exporta").sSaida;
    std::string sAlterado = sTudo;
    sAlterado.replace(sTudo.find("gua"), 1, "j");
    const std::string sSemFim = sTudo.substr(0, sTudo.rfind('\n', sTudo.size() - 2) + 1);
    std::string sSemLinha = sTudo;
    sSemLinha.erase(sTudo.find(R"({"linha":"dataHora")"),
                    sTudo.rfind(R"({"linha":"fim")") - sTudo.find(R"({"linha":"dataHora")"));
    for (const std::string& rConteudo : {sAlterado, sSemFim, sSemLinha, std::string("{}\n"), std::string()}) {
        m_Diretorio.CriaArquivo("danificado.jsonl", rConteudo);
        const SExecucao execucao = Outra("importa " + m_Diretorio.Junta("danificado.jsonl"));
        EXPECT_EQ(execucao.iSaida, 1);
        EXPECT_THAT(execucao.sErro, HasSubstr("nada foi importado"));
        EXPECT_TRUE(Bytes(m_Outro).empty());
    }
    m_Diretorio.CriaArquivo("inteira.jsonl", sTudo);
    EXPECT_THAT(Outra("importa --linha-maxima 60 " + m_Diretorio.Junta("inteira.jsonl")).sErro,
                HasSubstr("linha 2: mais de 60 bytes"));
    const SExecucao execucao = Outra("importa - --json", sAlterado);
    EXPECT_EQ(execucao.iSaida, 1);
    EXPECT_THAT(execucao.sErro, HasSubstr("a linha final não confere"));
    EXPECT_EQ(XVLinhasJson(execucao.sSaida).at(0)["completa"], false);
    EXPECT_EQ(Outra("busca --conta").sSaida, "4\n")
        << "what came by the pipe is there, and said to be in doubt";
}

// Origins of integrations and of the key map follow; what the index does not know stays behind.
TEST_F(ProgramaExportacao, ChavesNovasLevamAsOrigens) {
    EncheBase();
    EXPECT_EQ(Outra("grava --status Erro").iSaida, 0);
    const SExecucao execucao = Outra("importa - --chaves-novas --json", Xvcr("exporta").sSaida);
    EXPECT_EQ(execucao.iSaida, 0) << execucao.sErro;
    const auto linhas = XVLinhasJson(execucao.sSaida);
    ASSERT_EQ(linhas.size(), 5U);
    EXPECT_EQ(linhas.back()["deixadas"], 3);
    EXPECT_EQ(linhas[1]["sDmc"], "20200102-1-1");
    EXPECT_THAT(linhas[1].value("sDmcNovo", ""), EndsWith("-3-1"));
    const auto lida =
        XVLinhasJson(Outra("le --todos --json " + linhas[1].value("sDmcNovo", "")).sSaida).at(0);
    EXPECT_EQ(lida["regDataHoraInclusao"], "2020-01-02T01:02:03Z");
    EXPECT_EQ(Outra("busca --conta").sSaida, "5\n");

    const std::string sPar =
        k_szInicio + Linha("20200101-1-1") +
        Linha("20200101-2-1", R"(,"regDmcIntegracaoOrigem":"20200101-1-1")") +
        R"({"linha":"mapa","regDmcRegistroTelvo":"0-9-0","eTipoIntegracao":6,"eSistemaIntegracao":16,)"
        R"("regDmcOrigemIntegracao":"20200101-2-1"})";
    const auto par = XVLinhasJson(Outra("importa - --chaves-novas --json", sPar).sSaida);
    EXPECT_EQ(XVLinhasJson(Outra("le --json " + par.at(1).value("sDmcNovo", "")).sSaida)
                  .at(0)["regDmcIntegracaoOrigem"],
              nlohmann::json::parse(Outra("le --json " + par.at(0).value("sDmcNovo", "")).sSaida)["regDmc"]);
    EXPECT_THAT(Outra("mapa lista").sSaida, HasSubstr(par.at(1).value("sDmcNovo", "?")));
}

// A key whose integration is lost is named, and is not given to another one where the rest goes.
TEST_F(ProgramaExportacao, IntegracaoDanificadaEDitaEGuardaOSeuLugar) {
    const std::string sUm = Grava("grava --status Erro --json-enviado {}");
    const std::string sDois = Grava("grava --status Erro --json-enviado {}");
    const std::string sArquivo = "001/DF/CRINTEGMID" + sUm.substr(0, 8) + ".dat";
    std::string sBytes = m_Diretorio.LeConteudo(sArquivo).value_or("");
    sBytes.at(240 + 88 + 48) = 9;  // the text that the second record names
    m_Diretorio.CriaArquivo(sArquivo, sBytes);
    const SExecucao exporta = Xvcr("exporta");
    EXPECT_EQ(exporta.iSaida, 1);
    EXPECT_THAT(exporta.sErro, testing::StartsWith("xvcr: " + sDois + ": 0x"));
    EXPECT_THAT(exporta.sSaida, HasSubstr(R"({"linha":"vaga","regDmc":")" + sDois + "\"}\n"));
    EXPECT_EQ(Outra("importa -", exporta.sSaida).iSaida, 0);
    EXPECT_EQ(Outra("busca --dmcs").sSaida, sUm + '\n');
    EXPECT_THAT(Outra("grava --status Erro").sSaida, HasSubstr(sUm.substr(0, 9) + "3-1"));
}

}  // namespace
