// exporta --sql, read by another program.
#include "tests/harness/XVProcessoFilho.h"
#include "tests/xvcr/XVPrograma.h"

namespace {

class ProgramaSql : public XVPrograma {};

TEST_F(ProgramaSql, OutroBancoTemOsMesmosValores) {
    m_Diretorio.CriaArquivo("cru", "\xff\xfe");
    const std::string sMensagem = "d'água; -- \\\n.quit\n/\ngo\n\\q \"é\" :x $1 ?";
    const std::string sDmc = Grava(
        "grava --sistema Mercos --status Erro --chave 18446744073709551615 --filial 4294967295 --mensagem",
        {sMensagem, "--json-retorno", "@" + m_Diretorio.Junta("cru")});
    Json("mapa grava --registro 0-33-0 --chave-registro 5501 --tipo CadastroProduto --sistema Mercos");
    const SExecucao execucao =
        XVExecuta("/bin/sh", {"-c",
                              R"(banco=$1; shift; "$@" exporta --sql | sqlite3 -bail "$banco" &&
            sqlite3 -json "$banco" "SELECT regDmc, regMensagemIntegracao AS mensagem, regRegistroJSON AS json,
              uiChaveIntegracaoSistemaTerceiro AS chave, ulPonteiroFilial AS filial, regJSONRetornoIntegracao
              AS retorno, integracao.base64, mapa.regDmcRegistroTelvo AS registro FROM integracao, mapa")",
                              "sh", m_Diretorio.Junta("banco.db"), XVProgramaVizinho("xvcr"), "--diretorio",
                              m_Diretorio.GetCaminho(), "--empresa", "001"});
    EXPECT_EQ(execucao.sErro, "");
    const nlohmann::json esperado{{"regDmc", sDmc},
                                  {"mensagem", sMensagem},
                                  {"json", nullptr},
                                  {"chave", "18446744073709551615"},
                                  {"filial", 4294967295U},
                                  {"retorno", "//4="},
                                  {"base64", "regJSONRetornoIntegracao"},
                                  {"registro", "0-33-0"}};
    ASSERT_EQ(execucao.iSaida, 0);
    EXPECT_EQ(nlohmann::json::parse(execucao.sSaida).at(0), esperado);
}

}  // namespace
