#include <gmock/gmock.h>

#include "support/codes/XVCodigos.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/xvcr/XVPrograma.h"
#include "tools/xvcr/commands/XVSaidaCarga.h"

namespace {

using testing::HasSubstr;

class ProgramaCarga : public XVPrograma {};

constexpr const char* k_szSistemaDesconhecido =
    "valor desconhecido; os aceitos são: 0=Nenhum, 2=SimulacaoSistemaTerceiro, 8=OfficialBank, 16=Mercos";
constexpr const char* k_szTresLinhas =
    "{\"eSistemaIntegracao\":\"Mercos\",\"regRegistroJSON\":{\"n\" : 1.50}}\n"
    "\n"
    "{\"eSistemaIntegracao\":\"Merc\"}\n"
    "{\"eSistemaIntegracao\":16}\n";

TEST_F(ProgramaCarga, ParaNoPrimeiroErroESoOAnteriorFica) {
    const SExecucao execucao = Xvcr("carrega -", {}, k_szTresLinhas);
    EXPECT_EQ(execucao.iSaida, 1);
    const nlohmann::json lida = Json("busca --le --json-enviado").at(0);
    EXPECT_EQ(lida["regRegistroJSON"], "{\"n\":1.50}");
    EXPECT_EQ(execucao.sSaida, "linha 1: " + lida.value("sDmc", "") +
                                   " gravada\nlinha 3: erro\n2 lidas, 1 gravadas, 1 com erro\n");
    EXPECT_EQ(execucao.sErro,
              std::string("xvcr: linha 3, campo \"eSistemaIntegracao\": ") + k_szSistemaDesconhecido + '\n');
    EXPECT_EQ(Xvcr("carrega - --para", {}, k_szTresLinhas).iSaida, 1);
    EXPECT_EQ(Xvcr("busca --conta").sSaida, "2\n");
}

// What each line did, whole: recorded, refused before the store, refused by it, too long.
TEST_F(ProgramaCarga, ContinuaDepoisDoErroEDizOQueHouveComCadaLinha) {
    const std::string sLonga = "{\"regRegistroJSON\":\"" + std::string(100000, 'x') + "\"}\n";
    const std::string sEntrada = k_szTresLinhas + sLonga + "{\"a\":\xff}\n" +
                                 R"({"operacao":"status","sDmc":"20200101-9-1","eStatusIntegracao":4})"
                                 "\n{\"operacao\":\"apaga\"}\n{\"operacao\":1}\n"
                                 "{\"operacao\":\"status\",\"eTipoIntegracao\":1}\n" +
                                 sLonga.substr(0, 999);
    const SExecucao execucao = Xvcr("--json carrega - --continua", {}, sEntrada);
    EXPECT_EQ(execucao.iSaida, 1);
    const std::vector<nlohmann::json> lidas = Json("busca --le --json-enviado");
    ASSERT_EQ(lidas.size(), 3U);
    EXPECT_EQ(lidas[2]["regRegistroJSON"], std::string(100000, 'x'));
    std::vector<nlohmann::json> esperadas = XVLinhasJson(
        R"({"linha":1,"operacao":"integracao","hr":"0x00000000"}
{"linha":3,"operacao":"integracao","regDmc":"0","sDmc":"0","campo":"eSistemaIntegracao"}
{"linha":4,"operacao":"integracao","hr":"0x00000000"}
{"linha":5,"operacao":"integracao","hr":"0x00000000"}
{"linha":6,"operacao":"integracao","regDmc":"0","sDmc":"0","erro":"JSON inválido no byte 6"}
{"linha":7,"operacao":"status","hr":"0x810809D9","regDmc":"6199275255819812865","sDmc":"20200101-9-1"}
{"linha":8,"operacao":"integracao","regDmc":"0","sDmc":"0","campo":"operacao"}
{"linha":9,"operacao":"integracao","regDmc":"0","sDmc":"0","campo":"operacao"}
{"linha":10,"operacao":"status","regDmc":"0","sDmc":"0","campo":"eTipoIntegracao","erro":"campo desconhecido"}
{"linha":11,"operacao":"integracao","regDmc":"0","sDmc":"0","erro":"JSON inválido no byte 1000"}
{"lidas":10,"gravadas":3,"erros":7})");
    esperadas[1]["erro"] = k_szSistemaDesconhecido;
    esperadas[6]["erro"] = esperadas[7]["erro"] = "esperado \"integracao\" ou \"status\"";
    for (std::size_t i = 0; i < 3; ++i)
        for (const char* pszCampo : {"regDmc", "sDmc"})
            esperadas[i == 0 ? 0 : i + 1][pszCampo] = lidas[i][pszCampo];
    std::vector<nlohmann::json> listaLinhas = XVLinhasJson(execucao.sSaida);
    ASSERT_EQ(listaLinhas.size(), 11U);
    EXPECT_THAT(listaLinhas[5].value("erro", ""), testing::StartsWith("0x810809D9 E_XVCR_TENTATIVA_LER"));
    listaLinhas[5].erase("erro");
    EXPECT_EQ(listaLinhas, esperadas);
}

// The writer waits for the answer to each line, and does not end its lines when the load ends at one.
TEST_F(ProgramaCarga, CadaLinhaERespondidaQuandoChegaEOErroNaoEsperaAProxima) {
    CXVProcessoFilho filho = Carrega("-");
    for (const char* pszLinha : {"linha 1", "linha 2"}) {
        filho.Escreve("{\"eSistemaIntegracao\":16}\n");
        EXPECT_THAT(filho.LeLinha(), testing::StartsWith(pszLinha));
    }
    filho.Escreve("{\"eSistemaIntegracao\":16}\n{}}\n");
    for (const char* pszLinha : {"linha 3: ", "linha 4: erro", "4 lidas, 3 gravadas, 1 com erro"})
        EXPECT_THAT(filho.LeLinha(), testing::StartsWith(pszLinha));
    EXPECT_EQ(filho.EsperaFim(), 1);
    EXPECT_EQ(Xvcr("busca --conta").sSaida, "3\n");
}

TEST_F(ProgramaCarga, ChaveUnicaNaoGravaDeNovoOQueABaseTem) {
    const auto linha = [](const std::string& sCampos) {
        return "{\"uiChaveIntegracaoSistemaTerceiro\":7," + sCampos + "}\n";
    };
    const std::string sMercos = linha(R"("eSistemaIntegracao":16,"eTipoIntegracao":6)");
    const std::string sLinhas = sMercos + sMercos + linha(R"("eSistemaIntegracao":16,"eTipoIntegracao":9)") +
                                linha(R"("eSistemaIntegracao":16,"eTipoIntegracao":6,"eTipoTransacao":1)") +
                                linha(R"("eSistemaIntegracao":8,"eTipoIntegracao":6)") +
                                linha(R"("eSistemaIntegracao":8,"eTipoIntegracao":9)") +
                                linha(R"("eTipoIntegracao":6)") +
                                R"({"eSistemaIntegracao":16,"eTipoIntegracao":6})";
    const auto respostas = [&] {
        std::vector<std::pair<std::string, bool>> lista;
        std::vector<nlohmann::json> listaLinhas = Json("carrega - --chave-unica", {}, sLinhas);
        const nlohmann::json total = listaLinhas.back();
        listaLinhas.pop_back();
        std::size_t uiExistentes = 0;
        for (const nlohmann::json& rLinha : listaLinhas) {
            lista.emplace_back(rLinha.value("sDmc", ""), rLinha.value("existente", false));
            uiExistentes += lista.back().second ? 1U : 0U;
        }
        EXPECT_EQ(total.value("existentes", std::size_t{99}), uiExistentes);
        EXPECT_EQ(total.value("gravadas", std::size_t{99}), lista.size() - uiExistentes);
        return lista;
    };
    // Without key or system every line is one more.
    auto primeira = respostas();
    ASSERT_EQ(primeira.size(), 8U);
    EXPECT_EQ(primeira[1], std::pair(primeira[0].first, true));
    EXPECT_EQ(primeira[5], std::pair(primeira[4].first, true));
    EXPECT_EQ(Xvcr("busca --conta").sSaida, "6\n");
    const auto segunda = respostas();
    for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(segunda[i], std::pair(primeira[i].first, true)) << i;
    for (std::size_t i = 6; i < 8; ++i) EXPECT_FALSE(segunda[i].second);
    EXPECT_THAT(Xvcr("carrega - --chave-unica", {}, sMercos).sSaida,
                testing::MatchesRegex(
                    "linha 1: 2.*-1 já existente\n1 lidas, 0 gravadas, 1 já existentes, 0 com erro\n"));
    EXPECT_EQ(Xvcr("busca --conta").sSaida, "8\n");
}

class ProgramaCargaAqui : public XVPrograma {
  protected:
    ProgramaCargaAqui() : XVPrograma(true) {}
};

// A full disk would refuse each of the lines that follow.
TEST_F(ProgramaCargaAqui, ContinuaNaoPassaDoDiscoCheio) {
    const std::string sLinha = "{\"regRegistroJSON\":\"texto\"}\n";
    m_Diretorio.CriaArquivo("linhas.jsonl", "{}}\n" + sLinha + sLinha);
    CXVSistemaArquivosFalhas falhas(XVPlataforma::SistemaArquivos());
    falhas.SetFiltro([](const std::string& s) { return s.find("CRINTEGMIDJSON2") != std::string::npos; });
    const CXVGuardaSistemaArquivos guarda(falhas);
    const TArgumentos listaArquivo{m_Diretorio.Junta("linhas.jsonl")};
    EXPECT_THAT(Xvcr("carrega --continua", listaArquivo).sSaida,
                testing::EndsWith("\n3 lidas, 2 gravadas, 1 com erro\n"));
    falhas.Programa(
        {.eOperacao = EOperacaoArquivo::eGrava, .bPermanente = true, .eCausa = ECausaArquivo::eDiscoCheio});
    const SExecucao cheio = Xvcr("carrega --continua", listaArquivo);
    EXPECT_EQ(cheio.iSaida, 1);
    EXPECT_THAT(cheio.sSaida, testing::EndsWith("\n2 lidas, 0 gravadas, 2 com erro\n"));
    EXPECT_THAT(cheio.sErro, HasSubstr("linha 2: 0x80043F08 "));
}

TEST(Carga, QuaisFalhasAsLinhasSeguintesNaoEncontrariam) {
    const auto daLinha = [](HRESULT hr, SResultadoLinha::EOperacao eOperacao, XVUInt64 uiDmc) {
        return CXVCarga::EhDaLinha(
            {.eOperacao = eOperacao, .hr = hr, .regDmc = {uiDmc}, .sCampo = {}, .sErro = {}});
    };
    using enum SResultadoLinha::EOperacao;
    for (const HRESULT hr :
         {S_OK, E_INVALIDARG, E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA, E_XVCR_TENTATIVA_LER_POSICAO_ZERO,
          E_XVCR_TENTATIVA_GRAVACAO_INTEGRACAO_COM_CHAVE_SISTEMA_TERCEIRO_ZERADA,
          E_XVCR_INDEXACAO_CHAVE_INTEGRACAO_SISTEMA_TERCEIRO_ZERADA})
        EXPECT_TRUE(daLinha(hr, eIntegracao, 0)) << hr;
    for (const HRESULT hr :
         {E_XVCR_COMPONENTE_NAO_INICIALIZADO, E_XVCR_PARAMETRO_INVALIDO_RUNTIME, eDiskFull, E_OUTOFMEMORY})
        EXPECT_FALSE(daLinha(hr, eStatus, 1)) << hr;
    EXPECT_TRUE(daLinha(E_XVCR_TAMANHO_ARQUIVO_NAO_CONFERE, eStatus, 0)) << "of one day";
    EXPECT_TRUE(daLinha(E_XVCR_TAMANHO_ARQUIVO_NAO_CONFERE, eIntegracao, 1U << 14));
    EXPECT_FALSE(daLinha(E_XVCR_TAMANHO_ARQUIVO_NAO_CONFERE, eIntegracao, 0)) << "today's, for all new ones";
}

TEST(ProgressoCarga, TaxaETempoQueFalta) {
    EXPECT_EQ(XVDescreveProgressoCarga(12, 500, 0, 999), "12 linhas");
    EXPECT_EQ(XVDescreveProgressoCarga(3000, 500, 0, 1500), "3000 linhas, 2000 linhas/s");
    EXPECT_EQ(XVDescreveProgressoCarga(100, 250, 1000, 21000), "100 linhas (25%), 4 linhas/s, faltam 1:03");
}

}  // namespace
