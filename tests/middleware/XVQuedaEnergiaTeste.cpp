// A few hundred power failures; scripts/power-cut runs as many as one likes.
#include <gtest/gtest.h>

#include "tests/middleware/XVQuedaEnergia.h"

namespace {

constexpr XVUInt64 k_uiEstados = 300;

SContagemQueda Examina(EDurabilidade eDurabilidade) {
    return XVExaminaQuedas(eDurabilidade, 1000, k_uiEstados,
                           [](XVUInt64 uiEstado, const std::string& sFalha) {
                               ADD_FAILURE() << "state " << uiEstado << ": " << sFalha;
                           });
}

TEST(CXVQuedaEnergia, ComDurabilidadeNadaReconhecidoSePerde) {
    const SContagemQueda contagem = Examina(EDurabilidade::eDispositivo);
    EXPECT_EQ(contagem.uiEstados, k_uiEstados);
}

TEST(CXVQuedaEnergia, SemDurabilidadeNadaApareceSobOutraChave) {
    const SContagemQueda contagem = Examina(EDurabilidade::eSistema);
    EXPECT_EQ(contagem.uiEstados, k_uiEstados);
    EXPECT_LT(contagem.uiRecusadas, k_uiEstados) << "a store that never opens shows nothing at all";
}

}  // namespace
