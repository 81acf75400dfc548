// The last-error record: texts cut at characters, always terminated, never half of one error.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "suite/XVUltimoErro.h"
#include "support/codes/XVCodigos.h"
#include "support/messages/XVMensagens.h"

namespace {

TEST(UltimoErroTeste, GuardaCodigoLugarEFraseELimpa) {
    CXVUltimoErro erro;
    erro.Registra(E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA, "CBaseMiddleware::LeIntegracao", "BaseMiddleware",
                  42);
    REG_DF_ULTIMO_ERROPS reg;
    std::memset(&reg, 0xCC, sizeof(reg));
    erro.CopiaPara(&reg);
    EXPECT_EQ(reg.hrErro, E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
    EXPECT_EQ(reg.ulLinha, 42U);
    EXPECT_STREQ(reg.szNome, "E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA");
    EXPECT_STREQ(reg.szFuncao, "CBaseMiddleware::LeIntegracao");
    EXPECT_STREQ(reg.szFonte, "BaseMiddleware");
    EXPECT_GT(std::strlen(reg.szMensagem), 10U);
    EXPECT_NE(reg.regDataHora, 0U);

    erro.Registra(XVHResult(0x8ABCDEF0U), "f", "u", 1);
    erro.CopiaPara(&reg);
    EXPECT_STREQ(reg.szNome, "") << "nothing of the error before stays";
    EXPECT_STREQ(reg.szFonte, "u");

    erro.Limpa();
    erro.CopiaPara(&reg);
    const REG_DF_ULTIMO_ERROPS vazio{};
    EXPECT_EQ(std::memcmp(&reg, &vazio, sizeof(reg)), 0);
    erro.CopiaPara(nullptr);
}

TEST(UltimoErroTeste, TextoLongoECortadoEntreCaracteres) {
    // Fields of 96 and 40 bytes; "ç" has two bytes, the terminator takes the last one.
    struct SCaso {
        std::string sFuncao;
        std::size_t uiEsperado;
    };
    for (const SCaso& rCaso : {SCaso{std::string(95, 'a'), 95}, SCaso{std::string(96, 'a'), 95},
                               SCaso{std::string(94, 'a') + "ç", 94}, SCaso{std::string(93, 'a') + "ç", 95},
                               SCaso{std::string(92, 'a') + "€", 95}, SCaso{std::string(93, 'a') + "€", 93},
                               SCaso{std::string(200, '\x80'), 0}}) {
        CXVUltimoErro erro;
        erro.Registra(E_FAIL, rCaso.sFuncao, "", 0);
        REG_DF_ULTIMO_ERROPS reg;
        erro.CopiaPara(&reg);
        EXPECT_EQ(::strnlen(reg.szFuncao, sizeof(reg.szFuncao)), rCaso.uiEsperado) << rCaso.sFuncao;
    }
}

}  // namespace
