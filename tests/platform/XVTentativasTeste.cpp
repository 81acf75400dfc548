#include <gtest/gtest.h>

#include "platform/XVTentativas.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRelogioFalso.h"

TEST(CXVTentativasTeste, TentaTantasVezesComUmaPausaEntreDuas) {
    CXVRelogioFalso relogio;
    const CXVGuardaRelogio guarda(relogio);
    // The attempt that succeeds, 0 for none, and how many there are of four.
    const struct {
        unsigned ulSucesso;
        unsigned ulTentativas;
    } aCasos[] = {{0, 4}, {1, 1}, {3, 3}, {4, 4}};
    for (const auto& [ulSucesso, ulEsperadas] : aCasos) {
        unsigned ulTentativas = 0;
        const XVUInt64 uiDormidos = relogio.GetMilissegundosDormidos();
        const CXVErroArquivo erro = XVTentaEnquantoOcupado(4, [&, ulAte = ulSucesso] {
            return ++ulTentativas == ulAte ? CXVErroArquivo(ECausaArquivo::eDiscoCheio, 28)
                                           : CXVErroArquivo(ECausaArquivo::eViolacaoCompartilhamento, 32);
        });
        EXPECT_EQ(erro.GetErroSistema(), ulSucesso == 0 ? 32U : 28U) << "the last answer";
        EXPECT_EQ(ulTentativas, ulEsperadas);
        EXPECT_EQ(relogio.GetMilissegundosDormidos() - uiDormidos, XVUInt64{10} * (ulTentativas - 1));
    }
}
