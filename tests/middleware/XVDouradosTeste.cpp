// The golden stores of versions 0 to 4, as files: each opens, converts and answers alike.
#include <filesystem>
#include <fstream>
#include <sstream>

#include "contract/XVCR_BuffersPS.h"
#include "middleware/BaseMiddleware.h"
#include "tests/harness/XVProcessoFilho.h"
#include "tests/middleware/XVCenarioConversao.h"

namespace {

TArquivos LePasta(const std::string& sVersao) {
    const auto pasta = std::filesystem::path(XVProgramaVizinho("x")).parent_path() / "golden" / sVersao;
    TArquivos arquivos;
    for (const auto& entrada : std::filesystem::directory_iterator(pasta)) {
        std::ifstream arquivo(entrada.path(), std::ios::binary);
        std::ostringstream bytes;
        bytes << arquivo.rdbuf();
        arquivos[entrada.path().filename().string()] = bytes.str();
    }
    return arquivos;
}

class CXVDouradosTeste : public CXVCenarioConversao, public testing::WithParamInterface<std::string> {};

TEST_P(CXVDouradosTeste, AbreConverteEResponde) {
    const TArquivos antes = LePasta(GetParam());
    const TArquivos esperados = LePasta("v5");
    ASSERT_GT(antes.size(), 5U);
    ASSERT_EQ(esperados.size(), 5U);
    Instala(antes);
    ASSERT_EQ(Converte(), S_OK);
    for (const auto& [sNome, sDados] : esperados) EXPECT_EQ(Dados(Conteudo(sNome)), sDados) << sNome;
    ConfereSemRestos();

    CBaseMiddleware loja;
    ASSERT_EQ(loja.Inicializa(&m_Dono), S_OK);
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    ASSERT_EQ(loja.LeIntegracao({XVChaveDmc(XVDma(2023, 6, 5), 4)}, &reg, 3), S_OK);
    EXPECT_EQ(reg.eTipoIntegracao, 3U) << "old 7";
    EXPECT_EQ(reg.uiChaveIntegracaoSistemaTerceiro, 103U);
    EXPECT_EQ(CXVStringPS::RegToString(reg.regRegistroJSON), "{\"pedido\":3,\"cliente\":\"Três Irmãos\"}");
    EXPECT_EQ(CXVStringPS::RegToString(reg.regMensagemIntegracao), "Integração aceita");
    XVLiberaBuffers(&reg);
    tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS chave{};
    ASSERT_EQ(loja.BuscaChaveRegistroTelvoParaTerceiro({9002, {}, 0, 6, 16, {}}, &chave), S_OK);
    EXPECT_EQ(chave.regDmcRegistroTelvo.uiValor, XVChaveDmc(0, 72, 2)) << "old 10 is found under 6";
}

INSTANTIATE_TEST_SUITE_P(Versoes, CXVDouradosTeste, testing::Values("v0", "v1", "v2", "v3", "v4"));

}  // namespace
