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

class ProgramaBase : public XVPrograma {};

TEST_F(ProgramaBase, LeituraEnquantoOutroProcessoGrava) {
    XVCliente::CXVCliente cliente;
    ASSERT_EQ(cliente.ConectaLocal({.sEmpresa = "001"}, {.sDiretorio = m_Diretorio.GetCaminho()}), S_OK);
    CXVDadosCR_IntegracaoMiddleware dados;
    dados.sRegistroJSON = "{\"primeira\":1}";
    REG_XVDMC regPrimeira;
    ASSERT_EQ(cliente.GravaIntegracao(&regPrimeira, dados), S_OK);

    const nlohmann::json json = Json({"--leitura", "le", regPrimeira.ToString(), "--todos"}).at(0);
    EXPECT_EQ(json["regRegistroJSON"], dados.sRegistroJSON);
    EXPECT_EQ(Xvcr("--leitura busca --conta").sSaida, "1\n");

    REG_XVDMC regSegunda;
    EXPECT_EQ(cliente.GravaIntegracao(&regSegunda, dados), S_OK) << "the viewer must not be in the way";
    EXPECT_EQ(Xvcr("--leitura busca --conta").sSaida, "2\n");
    EXPECT_EQ(cliente.Desconecta(), S_OK);
}

TEST_F(ProgramaBase, BaseQueNaoHaNaoECriadaPorQuemSoOlha) {
    for (const std::vector<std::string>& rComando :
         {std::vector<std::string>{"--leitura", "busca"}, {"busca"}, {"converte", "--simula"}}) {
        const SExecucao execucao = Xvcr(rComando);
        EXPECT_EQ(execucao.iSaida, 1);
        EXPECT_THAT(execucao.sErro, HasSubstr("0x80043EBF eBadPath"));
    }
    EXPECT_EQ(Json("versao").at(0)["versao"], 0);
    EXPECT_FALSE(std::filesystem::exists(m_Diretorio.Junta("001")));
}

TEST_F(ProgramaBase, VersaoDeCadaSituacao) {
    std::filesystem::create_directories(m_Diretorio.Junta("001/DF"));
    const auto versao = [](int iVersao, const char* pszSituacao) {
        return std::vector<nlohmann::json>{
            {{"versao", iVersao}, {"versaoAtual", 5}, {"situacao", pszSituacao}}};
    };
    EXPECT_EQ(Json("versao"), versao(0, "anterior"));
    EXPECT_EQ(Json("converte --simula").back()["versao"], 0);
    EXPECT_FALSE(m_Diretorio.LeConteudo("001/DF/CRMIDDLEWAREVS.dat").has_value()) << "asking changes nothing";
    Grava("--status Pendente");
    EXPECT_EQ(Json("versao"), versao(5, "atual"));
    EXPECT_EQ(Json("converte"),
              (std::vector<nlohmann::json>{
                  {{"versaoAnterior", 5}, {"versao", 5}, {"passos", 0}, {"arquivos", 0}, {"registros", 0}}}));
    EXPECT_EQ(Xvcr("converte").sSaida, "a base já está na versão 5\n");
    EXPECT_EQ(Xvcr("converte --simula").sSaida, "versão da base: 5\nnada a converter\n");
    EXPECT_EQ(Xvcr("--leitura converte").iSaida, 2);
    EXPECT_EQ(Xvcr("--leitura converte --simula").iSaida, 0);

    std::filesystem::remove_all(m_Diretorio.Junta("001/DF"));
    std::filesystem::create_directories(m_Diretorio.Junta("001/DF"));
    m_Diretorio.CriaArquivo("001/DF/CRMIDDLEWAREVS.dat", "\x06" + std::string(15, '\0'));
    EXPECT_EQ(Json("versao"), versao(6, "posterior"));
    const SExecucao recusada = Xvcr("converte");
    EXPECT_EQ(recusada.iSaida, 1);
    EXPECT_THAT(recusada.sErro, StartsWith("xvcr: 0x810809C7 "));
}

// The files that each step rewrites in the golden stores, with their records.
struct SPasso {
    int iPasso;
    const char* pszArquivo;
    int iRegistros;
};
constexpr SPasso k_aPassos[] = {
    {1, "CRINTEGMID20230605.dat", 10}, {1, "CRINTEGMID20230606.dat", 7},  {1, "CRINTEGMID20230607.dat", 7},
    {2, "CRCHAVEREGTER.dat", 24},      {3, "CRINTEGMID20230605.dat", 10}, {3, "CRINTEGMID20230606.dat", 7},
    {3, "CRINTEGMID20230607.dat", 7},  {4, "CRINTEGMID20230605.dat", 10}, {4, "CRINTEGMID20230606.dat", 7},
    {4, "CRINTEGMID20230607.dat", 7},  {5, "CRDTHRINTEG.dat", 24},        {5, "CRCHAVEREGTER.dat", 24}};

// Record lengths in bytes of a store of the version that a simulation looks at.
int BytesDoRegistro(const std::string& sArquivo, int iVersao) {
    if (sArquivo.starts_with("CRINTEGMID")) return iVersao < 3 ? 80 : 88;
    return sArquivo.starts_with("CRDTHR") ? 32 : iVersao < 2 ? 24 : 40;
}

class ProgramaConversao : public ProgramaBase, public testing::WithParamInterface<int> {};

TEST_P(ProgramaConversao, SimulaConverteERespondePeloPrograma) {
    const int iVersao = GetParam();
    const auto origem = std::filesystem::path(XV_DOURADOS) / ("v" + std::to_string(iVersao));
    std::filesystem::create_directories(m_Diretorio.Junta("001"));
    std::filesystem::copy(origem, m_Diretorio.Junta("001/DF"));
    std::vector<nlohmann::json> listaPrevistos;
    std::vector<nlohmann::json> listaFeitos;
    int iRegistros = 0;
    for (const SPasso& rPasso : k_aPassos) {
        if (rPasso.iPasso <= iVersao) continue;
        const nlohmann::json comum{{"passo", rPasso.iPasso}, {"arquivo", rPasso.pszArquivo}};
        listaPrevistos.push_back(comum);
        listaPrevistos.back()["bytes"] = rPasso.iRegistros * BytesDoRegistro(rPasso.pszArquivo, iVersao);
        listaFeitos.push_back(comum);
        listaFeitos.back()["registros"] = rPasso.iRegistros;
        iRegistros += rPasso.iRegistros;
    }
    const std::size_t uiArquivos = listaFeitos.size();
    listaPrevistos.push_back({{"versao", iVersao}, {"passos", 5 - iVersao}});
    listaFeitos.push_back({{"versaoAnterior", iVersao},
                           {"versao", 5},
                           {"passos", 5 - iVersao},
                           {"arquivos", uiArquivos},
                           {"registros", iRegistros}});
    const auto versao = [](int i, const char* pszSituacao) {
        return "Versão da base:      " + std::to_string(i) +
               "\nVersão do programa:  5\nSituação:            " + pszSituacao + "\n";
    };
    EXPECT_EQ(Xvcr("versao").sSaida, versao(iVersao, "anterior"));
    EXPECT_EQ(Json("converte --simula"), listaPrevistos);
    EXPECT_EQ(Json("converte"), listaFeitos);
    EXPECT_EQ(Xvcr("versao").sSaida, versao(5, "atual"));
    EXPECT_EQ(Xvcr("busca --conta").sSaida, "24\n");
    EXPECT_EQ(Json("le 20230605-5-1 --json-enviado").at(0)["regRegistroJSON"],
              "{\"pedido\":5,\"cliente\":\"Três Irmãos\"}");
}

INSTANTIATE_TEST_SUITE_P(Versoes, ProgramaConversao, testing::Range(0, 5));

TEST_F(ProgramaBase, ConversaoDitaAUmaPessoa) {
    std::filesystem::create_directories(m_Diretorio.Junta("001"));
    std::filesystem::copy(std::filesystem::path(XV_DOURADOS) / "v3", m_Diretorio.Junta("001/DF"));
    EXPECT_EQ(Xvcr("converte --simula").sSaida,
              "versão da base: 3\n"
              "passo 4: 3 arquivo(s)\n"
              "  CRINTEGMID20230605.dat  880 bytes\n"
              "  CRINTEGMID20230606.dat  616 bytes\n"
              "  CRINTEGMID20230607.dat  616 bytes\n"
              "passo 5: 2 arquivo(s)\n"
              "  CRDTHRINTEG.dat  768 bytes\n"
              "  CRCHAVEREGTER.dat  960 bytes\n");
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
}

// putenv makes no copy: what it was given stays for good.
void PoeVariavel(std::string sAtribuicao) {
    static std::list<std::string> s_lista;
    putenv(s_lista.emplace_back(std::move(sAtribuicao)).data());
}

// A variable of the programs that the test starts, for as long as the object lives.
class CXVVariavel {
  public:
    CXVVariavel(const std::string& sNome, const std::string& sValor) : m_sNome(sNome) {
        PoeVariavel(sNome + '=' + sValor);
    }
    ~CXVVariavel() { PoeVariavel(m_sNome + '='); }
    CXVVariavel(const CXVVariavel&) = delete;
    CXVVariavel& operator=(const CXVVariavel&) = delete;

  private:
    std::string m_sNome;
};

TEST_F(ProgramaBase, VariaveisDeAmbienteValemOndeNaoHaOpcao) {
    const std::string sPrograma = XVProgramaVizinho("xvcr");
    const std::string sEmpresa2 = "002";
    std::filesystem::create_directories(m_Diretorio.Junta("outro"));
    {
        const CXVVariavel diretorio("XVCR_DIRETORIO", m_Diretorio.GetCaminho());
        const CXVVariavel empresa("XVCR_EMPRESA", sEmpresa2);
        EXPECT_EQ(XVExecuta(sPrograma, {"grava", "--status", "Pendente"}).iSaida, 0);
        EXPECT_TRUE(std::filesystem::exists(m_Diretorio.Junta("002/DF/CRINDEXINTEG.dat")));
        EXPECT_EQ(XVExecuta(sPrograma, {"--empresa", "003", "grava", "--status", "Pendente"}).iSaida, 0);
        EXPECT_TRUE(std::filesystem::exists(m_Diretorio.Junta("003/DF/CRINDEXINTEG.dat")));
        EXPECT_EQ(
            XVExecuta(sPrograma, {"--diretorio", m_Diretorio.Junta("outro"), "grava", "--status", "Pendente"})
                .iSaida,
            0);
        EXPECT_TRUE(std::filesystem::exists(m_Diretorio.Junta("outro/002/DF/CRINDEXINTEG.dat")));
        EXPECT_EQ(XVExecuta(sPrograma, {"busca", "--conta"}).sSaida, "1\n");
    }
    const SExecucao semEmpresa =
        XVExecuta(sPrograma, {"--diretorio", m_Diretorio.GetCaminho(), "busca", "--conta"});
    EXPECT_EQ(semEmpresa.iSaida, 2);
    EXPECT_EQ(semEmpresa.sErro,
              "xvcr: falta a empresa: use --empresa ou a variável de ambiente XVCR_EMPRESA\n");
}

// A store given on the line leaves the installation's own alone.
TEST_F(ProgramaBase, DiretorioDadoNaoTocaODaInstalacao) {
    const CXVDiretorioTeste producao;
    const std::string sPath = '"' + producao.GetCaminho() + '"';
    m_Diretorio.CriaArquivo(
        "registro.txt", "[SOFTWARE\\Wow6432Node\\Velmora\\DF]\nPath=" + sPath + "\nPath_x64=" + sPath + "\n");
    const CXVVariavel registro("XV_REGISTRO", m_Diretorio.Junta("registro.txt"));
    const std::string sPrograma = XVProgramaVizinho("xvcr");
    EXPECT_EQ(XVExecuta(sPrograma, {"--empresa", "001", "grava", "--status", "Erro"}).iSaida, 0);
    EXPECT_TRUE(std::filesystem::exists(producao.Junta("001/DF/CRINDEXINTEG.dat")));
    const auto quantidade = [&] {
        return XVExecuta(sPrograma, {"--empresa", "001", "busca", "--conta"}).sSaida;
    };

    EXPECT_EQ(Json("versao").at(0)["versao"], 0);
    Grava("--status Pendente");
    Grava("--status Pendente");
    EXPECT_EQ(Xvcr("busca --conta").sSaida, "2\n");
    EXPECT_EQ(Xvcr("converte").sSaida, "a base já está na versão 5\n");
    EXPECT_EQ(quantidade(), "1\n");
}

TEST_F(ProgramaBase, ArquivoDeUmDiaDanificadoEDitoComSuaData) {
    const std::string sDmc = Grava("--status Pendente --tipo BuscaPedidos");
    const std::string sDia = sDmc.substr(0, 8);
    const std::string sArquivo = "001/DF/CRINTEGMID" + sDia + ".dat";
    std::string sBytes = m_Diretorio.LeConteudo(sArquivo).value_or("");
    ASSERT_GT(sBytes.size(), 240U);
    sBytes[130] = static_cast<char>(sBytes[130] ^ 1);
    m_Diretorio.CriaArquivo(sArquivo, sBytes);
    const std::string sPath = std::filesystem::path(m_Diretorio.Junta(sArquivo)).make_preferred().string();
    const std::string sFim = " Arquivo: " + sPath + " (dia " + sDia.substr(6) + "/" + sDia.substr(4, 2) +
                             "/" + sDia.substr(0, 4) + ")\n";
    for (const std::vector<std::string>& rComando :
         {std::vector<std::string>{"le", sDmc}, {"busca", "--tipo", "BuscaPedidos"}, {"busca", "--le"}}) {
        const SExecucao execucao = Xvcr(rComando);
        EXPECT_EQ(execucao.iSaida, 1) << rComando[0];
        EXPECT_THAT(execucao.sErro, StartsWith("xvcr: 0x81080A3F"));
        EXPECT_THAT(execucao.sErro, EndsWith(sFim));
    }
    EXPECT_EQ(m_Diretorio.LeConteudo(sArquivo), sBytes);
    // Of a load the line that met the file names it, the one that did not names none.
    const SExecucao carga =
        Xvcr({"--json", "carrega", "-", "--continua"},
             R"({"operacao":"status","sDmc":")" + sDmc +
                 R"(","eStatusIntegracao":"Erro"})"
                 "\n"
                 R"({"operacao":"status","sDmc":"20200101-1-1","eStatusIntegracao":"Erro"})"
                 "\n");
    const std::vector<nlohmann::json> listaLinhas = XVLinhasJson(carga.sSaida);
    ASSERT_EQ(listaLinhas.size(), 3U) << carga.sSaida << carga.sErro;
    EXPECT_THAT(listaLinhas[0].value("erro", ""), HasSubstr(sFim.substr(0, sFim.size() - 1)));
    EXPECT_EQ(listaLinhas[1].value("erro", "").find("Arquivo:"), std::string::npos);
    EXPECT_NE(listaLinhas[1].value("erro", ""), "");
}

TEST_F(ProgramaBase, ArquivoListadoQueSumiuEDitoPeloNome) {
    for (const char* pszNome : {"CRINDEXINTEG.dat", "CRMIDDLEWAREVS.dat"}) {
        Grava("--status Pendente");
        Grava("--status Pendente");  // a file is listed when it is next opened
        const std::string sArquivo = std::string("001/DF/") + pszNome;
        const std::string sBytes = m_Diretorio.LeConteudo(sArquivo).value_or("");
        std::filesystem::remove(m_Diretorio.Junta(sArquivo));
        const SExecucao execucao = Xvcr("busca");
        EXPECT_EQ(execucao.iSaida, 1);
        EXPECT_THAT(execucao.sErro, HasSubstr("0x81080A50"));
        EXPECT_THAT(execucao.sErro, HasSubstr(pszNome));
        EXPECT_EQ(Xvcr("--leitura busca").iSaida, 1) << "a viewer does not take it for an empty file";
        m_Diretorio.CriaArquivo(sArquivo, sBytes);
    }
}

TEST_F(ProgramaBase, SistemaSemProvedorNaoGravaNada) {
    const SExecucao execucao = Xvcr("consulta --tipo-consulta ConsultaPagamentoExtrato --chave-consulta []");
    EXPECT_NE(execucao.iSaida, 2) << execucao.sErro;
    const std::vector<std::vector<std::string>> listaComandos{{"pendencia", "--origem"},
                                                              {"instantanea", "--integracao-origem"}};
    for (std::vector<std::string> listaArgumentos : listaComandos) {
        listaArgumentos.insert(listaArgumentos.end(), {"20261121-7-2", "--sistema", "Mercos", "--tipo",
                                                       "CadastroProduto", "--transacao", "Inclusao"});
        const SExecucao semProvedor = Xvcr(listaArgumentos);
        EXPECT_EQ(semProvedor.iSaida, 1);
        EXPECT_THAT(semProvedor.sErro, HasSubstr("0x80004001 E_NOTIMPL"));
    }
    EXPECT_EQ(Xvcr("busca --conta").sSaida, "0\n");
}

}  // namespace
