// Examines power failures: xv_queda_energia [states [first state [durability 0 or 1]]]. The number of a state
// that broke a promise is printed; given as the first state, with 1 state, it is that state again.
#include <cstdio>
#include <cstdlib>

#include "tests/middleware/XVQuedaEnergia.h"

namespace {

XVUInt64 Argumento(int argc, char** argv, int i, XVUInt64 uiPadrao) {
    return i < argc ? std::strtoull(argv[i], nullptr, 10) : uiPadrao;
}

bool Examina(EDurabilidade eDurabilidade, XVUInt64 uiPrimeiro, XVUInt64 uiEstados) {
    const auto uiDurabilidade = static_cast<unsigned>(eDurabilidade);
    const SContagemQueda contagem = XVExaminaQuedas(
        eDurabilidade, uiPrimeiro, uiEstados, [&](XVUInt64 uiEstado, const std::string& sFalha) {
            std::printf("Durabilidade %u, state %llu: %s\n", uiDurabilidade,
                        static_cast<unsigned long long>(uiEstado), sFalha.c_str());
        });
    std::printf("Durabilidade %u: %llu states, %llu refused with a name, %llu broke a promise\n",
                uiDurabilidade, static_cast<unsigned long long>(contagem.uiEstados),
                static_cast<unsigned long long>(contagem.uiRecusadas),
                static_cast<unsigned long long>(contagem.uiFalhas));
    return contagem.uiFalhas == 0;
}

}  // namespace

int main(int argc, char** argv) {
    const XVUInt64 uiEstados = Argumento(argc, argv, 1, 5000);
    const XVUInt64 uiPrimeiro = Argumento(argc, argv, 2, 1);
    const XVUInt64 uiDurabilidade = Argumento(argc, argv, 3, 2);
    bool bOk = true;
    if (uiDurabilidade != 0) bOk = Examina(EDurabilidade::eDispositivo, uiPrimeiro, uiEstados);
    if (uiDurabilidade != 1) bOk = Examina(EDurabilidade::eSistema, uiPrimeiro, uiEstados) && bOk;
    return bOk ? EXIT_SUCCESS : EXIT_FAILURE;
}
