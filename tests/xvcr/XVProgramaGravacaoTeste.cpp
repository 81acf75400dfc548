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
    const std::string sDmc =
        Grava("grava", {"--json-enviado", "@" + m_Diretorio.Junta("bytes.bin"), "--mensagem", "",
                        "--json-retorno", "[1, {\"ação\": \"\\\"日本\\\"\"}]"});
    Json("le --json-enviado " + sDmc, {"--para-pasta", m_Diretorio.Junta("saída")});  // and again below
    const nlohmann::json lida =
        Json("le --todos " + sDmc, {"--para-pasta", m_Diretorio.Junta("saída")}).at(0);
    EXPECT_FALSE(lida.contains("regRegistroJSON"));
    EXPECT_EQ(m_Diretorio.LeConteudo("saída/" + sDmc + ".enviado.json"), sTodosOsBytes);
    EXPECT_EQ(m_Diretorio.LeConteudo("saída/" + sDmc + ".mensagem.txt"), "");
    EXPECT_EQ(m_Diretorio.LeConteudo("saída/" + sDmc + ".retorno.json"), "[1, {\"ação\": \"\\\"日本\\\"\"}]");
    const SExecucao pessoa = Xvcr("le --todos " + sDmc);
    EXPECT_THAT(pessoa.sSaida, HasSubstr("\\x1B"));
    EXPECT_EQ(pessoa.sSaida.find('\x1b'), std::string::npos);
}

TEST_F(ProgramaGravacao, TextosPelaEntradaPadraoEArrobaLiteral) {
    const std::string sTexto = "linha\r\nfim\x1a depois";
    const std::string sDmc = Grava("grava --json-enviado - --mensagem @@casa", {}, sTexto);
    const nlohmann::json json = Le(sDmc);
    EXPECT_EQ(json["regRegistroJSON"], sTexto);
    EXPECT_EQ(json["regMensagemIntegracao"], "@casa");
    EXPECT_EQ(Xvcr("grava --json-enviado - --mensagem -", {}, "x").iSaida, 2);
    m_Diretorio.CriaArquivo("zero", std::string("a\0b", 3));
    EXPECT_EQ(Xvcr("grava --mensagem", {"@" + m_Diretorio.Junta("zero")}).iSaida, 2);
}

TEST_F(ProgramaGravacao, FalhaDaBaseTrazCodigoNomeEExplicacaoEFicaNoLog) {
    const std::string sDmc = Grava("grava --status Pendente --sistema Mercos");
    const SExecucao zerada = Xvcr("grava --status Sucesso --dmc " + sDmc);
    EXPECT_EQ(zerada.iSaida, 1);
    EXPECT_EQ(zerada.sSaida, "");
    EXPECT_THAT(zerada.sErro,
                StartsWith("xvcr: 0x81080C67 "
                           "E_XVCR_TENTATIVA_GRAVACAO_INTEGRACAO_COM_CHAVE_SISTEMA_TERCEIRO_ZERADA: "));
    EXPECT_EQ(std::count(zerada.sErro.begin(), zerada.sErro.end(), '\n'), 1);
    EXPECT_EQ(Le(sDmc)["eStatusIntegracao"], "eXVSMiddleware_Pendente") << "nothing was changed";
    const nlohmann::json log = Json("registro --codigo 0x81080C67").at(0);
    EXPECT_EQ(log["Empresa"].get<std::string>() + '/' + log["Usuario"].get<std::string>(), "001/7");
    EXPECT_EQ(log["ClasseFuncao"], "CBaseMiddleware::GravaIntegracao");
}

}  // namespace
