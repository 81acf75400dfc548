// Loads: many lines, lines that wait for their answers, a disk that is full.
#include <gmock/gmock.h>

#include <algorithm>

#include "support/codes/XVCodigos.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/xvcr/XVPrograma.h"
#include "tools/xvcr/commands/XVSaidaCarga.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class ProgramaCarga : public XVPrograma {};

// The writer waits for the answer to each line, and does not end its lines when the load ends at one.
TEST_F(ProgramaCarga, CadaLinhaERespondidaQuandoChegaEOErroNaoEsperaAProxima) {
    CXVProcessoFilho filho = Carrega("-");
    for (const char* pszLinha : {"linha 1", "linha 2"}) {
        filho.Escreve("{\"eSistemaIntegracao\":16}\n");
        EXPECT_THAT(filho.LeLinha(), StartsWith(pszLinha));
    }
    filho.Escreve("{\"eSistemaIntegracao\":16}\n{}}\n");
    for (const char* pszLinha : {"linha 3: ", "linha 4: erro", "4 lidas, 3 gravadas, 1 com erro"})
        EXPECT_THAT(filho.LeLinha(), StartsWith(pszLinha));
    EXPECT_EQ(filho.EsperaFim(), 1);
    EXPECT_EQ(Xvcr("busca --conta").sSaida, "3\n");
}

// More than are recorded or read at a time, in whatever order they are asked for.
TEST_F(ProgramaCarga, MuitasIntegracoesVoltamTodasNaOrdem) {
    constexpr std::size_t k_uiQuantidade = 300;
    std::string sLinhas, sDmcs;
    for (std::size_t i = 0; i < k_uiQuantidade; ++i)
        sLinhas += "{\"regRegistroJSON\":{\"n\":" + std::to_string(i) + "}}\n";
    ASSERT_EQ(Xvcr("carrega -", {}, sLinhas).iSaida, 0);
    std::vector<nlohmann::json> lidas = Json("busca --le --json-enviado");
    ASSERT_EQ(lidas.size(), k_uiQuantidade);
    const std::string sTabela = Xvcr("busca").sSaida;  // title, rule, rows, their number
    EXPECT_EQ(std::count(sTabela.begin(), sTabela.end(), '\n'), 303);
    for (std::size_t i = 0; i < k_uiQuantidade; ++i) {
        EXPECT_EQ(lidas[i]["regRegistroJSON"], "{\"n\":" + std::to_string(i) + "}");
        const std::string sDmc = lidas[i].value("sDmc", "");
        EXPECT_THAT(sTabela, HasSubstr('\n' + sDmc + ' '));
        sDmcs.insert(0, sDmc + '\n');
    }
    std::reverse(lidas.begin(), lidas.end());
    EXPECT_EQ(Json("le - --json-enviado", {}, sDmcs), lidas);
}

class ProgramaCargaAqui : public XVProgramaAqui {};

// A full disk would refuse each of the lines that follow.
TEST_F(ProgramaCargaAqui, ContinuaNaoPassaDoDiscoCheio) {
    const std::string sLinha = "{\"regRegistroJSON\":\"texto\"}\n";
    m_Diretorio.CriaArquivo("linhas.jsonl", "{}}\n" + sLinha + sLinha);
    CXVSistemaArquivosFalhas falhas(XVPlataforma::SistemaArquivos());
    falhas.SetFiltro([](const std::string& s) { return s.find("CRINTEGMIDJSON2") != std::string::npos; });
    const CXVGuardaSistemaArquivos guarda(falhas);
    const TArgumentos listaArquivo{m_Diretorio.Junta("linhas.jsonl")};
    EXPECT_THAT(Xvcr("carrega --continua", listaArquivo).sSaida,
                EndsWith("\n3 lidas, 2 gravadas, 1 com erro\n"));
    falhas.Programa(
        {.eOperacao = EOperacaoArquivo::eGrava, .bPermanente = true, .eCausa = ECausaArquivo::eDiscoCheio});
    const SExecucao cheio = Xvcr("carrega --continua", listaArquivo);
    EXPECT_EQ(cheio.iSaida, 1);
    EXPECT_THAT(cheio.sSaida, EndsWith("\n2 lidas, 0 gravadas, 2 com erro\n"));
    EXPECT_THAT(cheio.sErro, HasSubstr("linha 2: 0x80043F08 "));
    const nlohmann::json log = Json("registro --codigo 0x80043F08").back();
    EXPECT_EQ(log.value("Empresa", "") + '/' + log.value("Usuario", "") + '/' + log.value("Sessao", ""),
              "001/7/42");
    EXPECT_EQ(log["ClasseFuncao"], "CXVCR_Middleware::GravaIntegracao");
}

TEST(Carga, OProgramaQueFalhaFalhariaEmTodasAsLinhas) {
    const auto daLinha = [](HRESULT hr) {
        return CXVCarga::EhDaLinha({.eOperacao = SResultadoLinha::EOperacao::eStatus,
                                    .hr = hr,
                                    .regDmc = {1},
                                    .sCampo = {},
                                    .sErro = {}});
    };
    EXPECT_TRUE(daLinha(E_INVALIDARG));
    for (const HRESULT hr :
         {E_XVCR_COMPONENTE_NAO_INICIALIZADO, E_XVCR_PARAMETRO_INVALIDO_RUNTIME, E_OUTOFMEMORY})
        EXPECT_FALSE(daLinha(hr)) << hr;
}

TEST(ProgressoCarga, TaxaETempoQueFalta) {
    EXPECT_EQ(XVDescreveProgressoCarga(12, 500, 0, 999), "12 linhas");
    EXPECT_EQ(XVDescreveProgressoCarga(3000, 500, 0, 1500), "3000 linhas, 2000 linhas/s");
    EXPECT_EQ(XVDescreveProgressoCarga(100, 250, 1000, 21000), "100 linhas (25%), 4 linhas/s, faltam 1:03");
}

}  // namespace
