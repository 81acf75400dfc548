#include <gmock/gmock.h>

#include "tests/xvcr/XVPrograma.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class ProgramaGravacao : public XVPrograma {};

TEST_F(ProgramaGravacao, TextosVoltamByteAByte) {
    std::string sTodosOsBytes;
    for (int i = 1; i < 256; ++i) sTodosOsBytes += static_cast<char>(i);
    sTodosOsBytes += "\r\n\x1a fim";
    m_Diretorio.CriaArquivo("bytes.bin", sTodosOsBytes);
    const std::string sPasta = m_Diretorio.Junta("saída");
    const std::string sDmc = Grava({"--json-enviado", "@" + m_Diretorio.Junta("bytes.bin"), "--mensagem", "",
                                    "--json-retorno", "[1, {\"ação\": \"\\\"日本\\\"\"}]"});
    ASSERT_NE(sDmc, "");

    const std::vector<nlohmann::json> lista = Json({"le", sDmc, "--todos", "--para-pasta", sPasta});
    ASSERT_EQ(lista.size(), 1U);
    EXPECT_FALSE(lista[0].contains("regRegistroJSON"));
    EXPECT_EQ(m_Diretorio.LeConteudo("saída/" + sDmc + ".enviado.json"), sTodosOsBytes);
    EXPECT_EQ(m_Diretorio.LeConteudo("saída/" + sDmc + ".mensagem.txt"), "");
    EXPECT_EQ(m_Diretorio.LeConteudo("saída/" + sDmc + ".retorno.json"), "[1, {\"ação\": \"\\\"日本\\\"\"}]");

    const nlohmann::json json = Json({"le", sDmc, "--todos"}).at(0);
    EXPECT_TRUE(json.contains("regRegistroJSON_base64")) << "bytes that are not UTF-8";
    EXPECT_EQ(json["regMensagemIntegracao"], "");
    const SExecucao pessoa = Xvcr({"le", sDmc, "--todos"});
    EXPECT_EQ(pessoa.iSaida, 0);
    EXPECT_THAT(pessoa.sSaida, HasSubstr("\\x1B"));
    EXPECT_EQ(pessoa.sSaida.find('\x1b'), std::string::npos);
}

TEST_F(ProgramaGravacao, TextosPelaEntradaPadraoEArrobaLiteral) {
    const std::string sTexto = "linha\r\nfim\x1a depois";
    const SExecucao execucao = Xvcr({"grava", "--json-enviado", "-", "--mensagem", "@@casa"}, sTexto);
    ASSERT_EQ(execucao.iSaida, 0) << execucao.sErro;
    const std::string sDmc = execucao.sSaida.substr(0, execucao.sSaida.find('\n'));
    const nlohmann::json json = Json({"le", sDmc, "--todos"}).at(0);
    EXPECT_EQ(json["regRegistroJSON"], sTexto);
    EXPECT_EQ(json["regMensagemIntegracao"], "@casa");
    EXPECT_EQ(Xvcr({"grava", "--json-enviado", "-", "--mensagem", "-"}, "x").iSaida, 2);
    m_Diretorio.CriaArquivo("zero", std::string("a\0b", 3));
    EXPECT_EQ(Xvcr({"grava", "--mensagem", "@" + m_Diretorio.Junta("zero")}).iSaida, 2);
}

TEST_F(ProgramaGravacao, FalhaDaBaseTrazCodigoNomeEExplicacao) {
    const std::string sDmc = Grava("--status Pendente --sistema Mercos");
    const SExecucao zerada = Xvcr({"grava", "--dmc", sDmc, "--status", "Sucesso"});
    EXPECT_EQ(zerada.iSaida, 1);
    EXPECT_EQ(zerada.sSaida, "");
    EXPECT_THAT(zerada.sErro,
                StartsWith("xvcr: 0x81080C67 "
                           "E_XVCR_TENTATIVA_GRAVACAO_INTEGRACAO_COM_CHAVE_SISTEMA_TERCEIRO_ZERADA: "));
    EXPECT_EQ(std::count(zerada.sErro.begin(), zerada.sErro.end(), '\n'), 1);
    const SExecucao ausente = Xvcr("status --chave 404 --sistema Mercos --status Erro");
    EXPECT_EQ(ausente.iSaida, 1);
    EXPECT_THAT(ausente.sErro, StartsWith("xvcr: 0x81080AAA E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA: "));
    EXPECT_EQ(Json("le " + sDmc).at(0)["eStatusIntegracao"], "eXVSMiddleware_Pendente")
        << "nothing was changed";

    const std::vector<nlohmann::json> lista = Json("registro --codigo 0x81080C67");
    ASSERT_FALSE(lista.empty());
    EXPECT_EQ(lista[0]["Empresa"], "001");
    EXPECT_EQ(lista[0]["Usuario"], "7");
    EXPECT_EQ(lista[0]["ClasseFuncao"], "CBaseMiddleware::GravaIntegracao");
}

}  // namespace
