// The last-error record: texts cut at characters, always terminated, never half of one error.
#include <cstring>

#include "suite/XVUltimoErro.h"
#include "support/codes/XVCodigos.h"
#include "support/messages/XVMensagens.h"
#include "support/trace/XVArquivoRecusado.h"
#include "support/trace/XVCapturaTrace.h"
#include "tests/harness/XVEmThreads.h"
#include "tests/suite/XVCenarioSuite.h"

namespace {

using UltimoErroTeste = CXVCenarioSuite;

// The whole record, with nothing left of what stood there.
REG_DF_ULTIMO_ERROPS Copia(const CXVUltimoErro& rErro) {
    REG_DF_ULTIMO_ERROPS reg;
    std::memset(&reg, 0xCC, sizeof(reg));
    rErro.CopiaPara(&reg);
    return reg;
}

bool operator==(const REG_DF_ULTIMO_ERROPS& r, const REG_DF_ULTIMO_ERROPS& rOutro) {
    return std::memcmp(&r, &rOutro, sizeof(r)) == 0;
}

TEST_F(UltimoErroTeste, GuardaCodigoLugarEFraseELimpa) {
    CXVUltimoErro erro;
    erro.Registra(E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA, "CBaseMiddleware::LeIntegracao", "BaseMiddleware",
                  42);
    REG_DF_ULTIMO_ERROPS esperado{E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA,
                                  42,
                                  REG_XVDMAHMSUTC::De({2024, 3, 15, 12, 0, 0}).uiValor,
                                  "E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA",
                                  "CBaseMiddleware::LeIntegracao",
                                  "BaseMiddleware",
                                  {}};
    XVBuscaMensagem(esperado.hrErro)->sDescricao.copy(esperado.szMensagem, sizeof esperado.szMensagem - 1);
    EXPECT_TRUE(Copia(erro) == esperado);

    erro.Registra(XVHResult(0x8ABCDEF0U), "f", "u", 1);  // a code without name and sentence
    REG_DF_ULTIMO_ERROPS semFrase{XVHResult(0x8ABCDEF0U), 1, esperado.regDataHora, {}, "f", "u", {}};
    EXPECT_TRUE(Copia(erro) == semFrase);
    erro.Limpa();
    EXPECT_TRUE(Copia(erro) == REG_DF_ULTIMO_ERROPS{});
}

TEST_F(UltimoErroTeste, TextoLongoECortadoEntreCaracteresENuncaNoNomeDoArquivo) {
    // The function's field has 96 bytes; "ç" has two, the terminator takes the last one.
    const struct {
        std::string sFuncao;
        std::size_t uiEsperado;
    } aCasos[] = {{std::string(95, 'a'), 95},       {std::string(96, 'a'), 95},
                  {std::string(94, 'a') + "ç", 94}, {std::string(93, 'a') + "ç", 95},
                  {std::string(92, 'a') + "€", 95}, {std::string(93, 'a') + "€", 93},
                  {std::string(200, '\x80'), 0}};
    const CXVCapturaTrace captura;
    const CXVArquivosRecusados recusados;
    XVIgnora(XVArquivoRecusado::Anota(eDiskFull, std::string(300, 'd') + "/A20240315.dat", nullptr));
    for (const auto& rCaso : aCasos) {
        CXVUltimoErro erro;
        erro.Registra(eDiskFull, rCaso.sFuncao, "", 0);
        const REG_DF_ULTIMO_ERROPS reg = Copia(erro);
        EXPECT_EQ(std::string_view(reg.szFuncao), rCaso.sFuncao.substr(0, rCaso.uiEsperado));
        EXPECT_TRUE(std::string_view(reg.szMensagem).ends_with("/A20240315.dat (dia 15/03/2024)"));
    }
}

// The thread sanitizer watches this one: without the lock a copy may be half of each error.
TEST_F(UltimoErroTeste, CopiaEntreThreadsEDeUmErroSo) {
    CXVUltimoErro erro;
    XVEmThreads(4, [&](unsigned iThread) {
        const std::string sTexto(30, static_cast<char>('a' + iThread));
        for (int i = 0; i < 200; ++i) {
            erro.Registra(E_FAIL, sTexto, sTexto, 'a' + iThread);
            const REG_DF_ULTIMO_ERROPS reg = Copia(erro);
            EXPECT_EQ(std::string(reg.szFuncao), std::string(30, static_cast<char>(reg.ulLinha)));
            EXPECT_STREQ(reg.szFonte, reg.szFuncao);
        }
    });
}

}  // namespace
