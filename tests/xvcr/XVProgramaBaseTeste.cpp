#include <gmock/gmock.h>

#include <cstdlib>
#include <list>
#include <utility>

#include "client/XVCliente.h"
#include "tests/harness/XVProcessoFilho.h"
#include "tests/xvcr/XVPrograma.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using TLinhas = std::vector<nlohmann::json>;

class ProgramaBase : public XVPrograma {};

TEST_F(ProgramaBase, BaseQueNaoHaNaoECriadaPorQuemSoOlha) {
    for (const char* pszComando : {"--leitura busca", "busca", "converte --simula", "converte", "versao",
                                   "mapa lista", "verifica", "recupera", "resumo", "registro"}) {
        const SExecucao execucao = Xvcr(pszComando);
        EXPECT_EQ(execucao.iSaida, 1);
        EXPECT_THAT(execucao.sErro, HasSubstr("0x80043EBF eBadPath: a empresa \"001\" não tem base"));
    }
    EXPECT_FALSE(std::filesystem::exists(m_Diretorio.Junta("001")));
}

TEST_F(ProgramaBase, QuemSoOlhaTrabalhaAoLadoDeQuemEscreve) {
    XVCliente::CXVCliente escritor;
    ASSERT_EQ(escritor.ConectaLocal({.sEmpresa = "001"}, {.sDiretorio = m_Diretorio.GetCaminho()}), S_OK);
    REG_XVDMC regDmc;
    ASSERT_EQ(escritor.GravaIntegracao(&regDmc, {.eStatusIntegracao = eXVSMiddleware_Pendente,
                                                 .eSistemaIntegracao = SimulacaoSistemaTerceiro}),
              S_OK);
    EXPECT_EQ(Xvcr("busca --conta").sSaida, "1\n");
    for (const char* pszComando : {"busca --le", "mapa lista", "datahora lista", "versao", "verifica"})
        EXPECT_EQ(Xvcr(pszComando).iSaida, 0) << pszComando;
    EXPECT_EQ(escritor.Desconecta(), S_OK);
}

TEST_F(ProgramaBase, VersaoDeCadaSituacao) {
    std::filesystem::create_directories(m_Diretorio.Junta("001/DF"));
    const auto versao = [](int iVersao, const char* pszSituacao) {
        return TLinhas{{{"versao", iVersao}, {"versaoAtual", 5}, {"situacao", pszSituacao}}};
    };
    EXPECT_EQ(Json("versao"), versao(0, "anterior"));
    EXPECT_EQ(Json("converte --simula").back()["versao"], 0);
    EXPECT_FALSE(m_Diretorio.LeConteudo("001/DF/CRMIDDLEWAREVS.dat").has_value()) << "asking changes nothing";
    Grava("grava --filial 1");
    EXPECT_EQ(Json("versao"), versao(5, "atual"));
    EXPECT_EQ(Xvcr("versao").sSaida,
              "Versão da base:      5\nVersão do programa:  5\nSituação:            atual\n");
    EXPECT_EQ(Xvcr("converte").sSaida, "a base já está na versão 5\n");
    EXPECT_EQ(Xvcr("converte --simula").sSaida, "versão da base: 5\nnada a converter\n");
    EXPECT_EQ(Xvcr("--leitura converte").iSaida, 2);
    EXPECT_EQ(Xvcr("--leitura converte --simula").iSaida, 0);

    std::filesystem::remove_all(m_Diretorio.Junta("001/DF"));
    std::filesystem::create_directories(m_Diretorio.Junta("001/DF"));
    m_Diretorio.CriaArquivo("001/DF/CRMIDDLEWAREVS.dat", "\x06" + std::string(15, '\0'));
    EXPECT_EQ(Json("versao"), versao(6, "posterior"));
    EXPECT_EQ(Xvcr("versao").sSaida,
              "Versão da base:      6\nVersão do programa:  5\nSituação:            posterior\n");
    const SExecucao recusada = Xvcr("converte");
    EXPECT_EQ(recusada.iSaida, 1);
    EXPECT_THAT(recusada.sErro, StartsWith("xvcr: 0x810809C7 "));
}

TEST_F(ProgramaBase, ConversaoDitaAUmaPessoaEAUmPrograma) {
    const auto copiaDourada = [&] {
        std::filesystem::remove_all(m_Diretorio.Junta("001"));
        std::filesystem::create_directories(m_Diretorio.Junta("001"));
        std::filesystem::copy(std::filesystem::path(XV_DOURADOS) / "v3", m_Diretorio.Junta("001/DF"));
    };
    copiaDourada();
    EXPECT_EQ(Xvcr("converte --simula").sSaida,
              "versão da base: 3\n"
              "passo 4: 3 arquivo(s)\n"
              "  CRINTEGMID20230605.dat  880 bytes\n"
              "  CRINTEGMID20230606.dat  616 bytes\n"
              "  CRINTEGMID20230607.dat  616 bytes\n"
              "passo 5: 2 arquivo(s)\n"
              "  CRDTHRINTEG.dat  768 bytes\n"
              "  CRCHAVEREGTER.dat  960 bytes\n");
    EXPECT_EQ(Json("converte --simula"),
              XVLinhasJson(R"({"passo":4,"arquivo":"CRINTEGMID20230605.dat","bytes":880}
{"passo":4,"arquivo":"CRINTEGMID20230606.dat","bytes":616}
{"passo":4,"arquivo":"CRINTEGMID20230607.dat","bytes":616}
{"passo":5,"arquivo":"CRDTHRINTEG.dat","bytes":768}
{"passo":5,"arquivo":"CRCHAVEREGTER.dat","bytes":960}
{"versao":3,"passos":2})"));
    EXPECT_EQ(Xvcr("converte").sSaida,
              "passo 4: 3 arquivo(s)\n"
              "  1/3  CRINTEGMID20230605.dat  10 registros\n"
              "  2/3  CRINTEGMID20230606.dat  7 registros\n"
              "  3/3  CRINTEGMID20230607.dat  7 registros\n"
              "passo 4 concluído: 24 registros\n"
              "passo 5: 2 arquivo(s)\n"
              "  1/2  CRDTHRINTEG.dat  24 registros\n"
              "  2/2  CRCHAVEREGTER.dat  24 registros\n"
              "passo 5 concluído: 48 registros\n"
              "convertida da versão 3 para a 5: 5 arquivo(s), 72 registros\n");
    EXPECT_EQ(Le("20230605-5-1")["regRegistroJSON"], "{\"pedido\":5,\"cliente\":\"Três Irmãos\"}");
    copiaDourada();
    EXPECT_EQ(Json("converte"), XVLinhasJson(R"({"passo":4,"arquivo":"CRINTEGMID20230605.dat","registros":10}
{"passo":4,"arquivo":"CRINTEGMID20230606.dat","registros":7}
{"passo":4,"arquivo":"CRINTEGMID20230607.dat","registros":7}
{"passo":5,"arquivo":"CRDTHRINTEG.dat","registros":24}
{"passo":5,"arquivo":"CRCHAVEREGTER.dat","registros":24}
{"versaoAnterior":3,"versao":5,"passos":2,"arquivos":5,"registros":72})"));
}

// putenv makes no copy: what it was given stays for good.
void PoeVariavel(std::string sAtribuicao) {
    static std::list<std::string> s_lista;
    putenv(s_lista.emplace_back(std::move(sAtribuicao)).data());
}

TEST_F(ProgramaBase, VariaveisDeAmbienteValemOndeNaoHaOpcao) {
    const std::string sOutro = m_Diretorio.Junta("outro");
    std::filesystem::create_directories(sOutro);
    PoeVariavel("XVCR_DIRETORIO=" + m_Diretorio.GetCaminho());
    PoeVariavel("XVCR_EMPRESA=002");
    const std::string sPrograma = XVProgramaVizinho("xvcr");
    EXPECT_EQ(XVExecuta(sPrograma, {"grava", "--filial", "1"}).iSaida, 0);
    EXPECT_EQ(XVExecuta(sPrograma, {"--empresa", "003", "grava", "--filial", "1"}).iSaida, 0);
    EXPECT_EQ(XVExecuta(sPrograma, {"--diretorio", sOutro, "grava", "--filial", "1"}).iSaida, 0);
    for (const char* pszBase : {"002", "003", "outro/002"})
        EXPECT_TRUE(
            std::filesystem::exists(m_Diretorio.Junta(pszBase + std::string("/DF/CRINDEXINTEG.dat"))));
    EXPECT_EQ(XVExecuta(sPrograma, {"busca", "--conta"}).sSaida, "1\n");
    EXPECT_EQ(XVExecuta(sPrograma, {"empresas"}).sSaida, "002\n003\n");
    EXPECT_THAT(XVExecuta(sPrograma, {"--diretorio", sPrograma, "busca"}).sErro,
                StartsWith("xvcr: o diretório do módulo"))
        << "a file is no directory";
    PoeVariavel("XVCR_DIRETORIO=");
    PoeVariavel("XVCR_EMPRESA=");
}

TEST_F(ProgramaBase, ArquivoDeUmDiaDanificadoEDitoComSuaData) {
    const std::string sDmc = Grava("grava --status Pendente --tipo BuscaPedidos");
    const std::string sDia = sDmc.substr(0, 8);
    const std::string sArquivo = "001/DF/CRINTEGMID" + sDia + ".dat";
    std::string sBytes = m_Diretorio.LeConteudo(sArquivo).value_or("");
    ASSERT_GT(sBytes.size(), 240U);
    sBytes[130] = static_cast<char>(sBytes[130] ^ 1);
    m_Diretorio.CriaArquivo(sArquivo, sBytes);
    const std::string sPath = std::filesystem::path(m_Diretorio.Junta(sArquivo)).make_preferred().string();
    const std::string sFim = " Arquivo: " + sPath + " (dia " + sDia.substr(6) + "/" + sDia.substr(4, 2) +
                             "/" + sDia.substr(0, 4) + ")";
    for (const std::string& rComando : {"le " + sDmc, std::string("busca --le")}) {
        const SExecucao execucao = Xvcr(rComando);
        EXPECT_EQ(execucao.iSaida, 1) << rComando;
        EXPECT_THAT(execucao.sErro, StartsWith("xvcr: " + sDmc + ": 0x81080A3F"));
        EXPECT_THAT(execucao.sErro, EndsWith(sFim + '\n'));
    }
    EXPECT_THAT(Xvcr("busca").sSaida, EndsWith("---\n0 de 1 integração\n"));
    EXPECT_EQ(m_Diretorio.LeConteudo(sArquivo), sBytes);
    // Of a load the line that met the file names it, the one that did not names none.
    const auto linha = [](const std::string& s) {
        return R"({"operacao":"status","eStatusIntegracao":"Erro","sDmc":")" + s + "\"}\n";
    };
    const TLinhas listaLinhas =
        XVLinhasJson(Xvcr("--json carrega - --continua", {}, linha(sDmc) + linha("20200101-1-1")).sSaida);
    ASSERT_EQ(listaLinhas.size(), 3U);
    EXPECT_THAT(listaLinhas[0].value("erro", ""), HasSubstr(sFim));
    EXPECT_THAT(listaLinhas[1].value("erro", "Arquivo:"), testing::Not(HasSubstr("Arquivo:")));
}

}  // namespace
