// Runs a random script on the store of company MATRIZ until it is killed or has done all:
// XVGravaAteMorrer DIRECTORY DURABILITY SEED [steps]. A line is on its way when the store is open, after each
// step and at the end; "falha" when one failed. It lingers before each of its file operations, or most deaths
// would fall between two steps.
#include <chrono>
#include <cstdio>

#include "platform/XVPlataforma.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVSistemaArquivosEnvolto.h"
#include "tests/middleware/XVMaquinaMorte.h"

namespace {

bool Diz(const char* pszLinha, bool bOk = true) {
    std::puts(bOk ? pszLinha : "falha");
    std::fflush(stdout);
    return bOk;
}

struct SDemora {
    SDemora() {
        using namespace std::chrono;
        for (const auto fim = steady_clock::now() + microseconds(120); steady_clock::now() < fim;) continue;
    }
};

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) return 2;
    CXVMaquinaMorte maquina(argv[1], static_cast<XVUInt>(std::atoi(argv[2])));
    TXVSistemaArquivosEnvolto<TXVVigiaGuarda<SDemora>> lento(XVPlataforma::SistemaArquivos());
    const CXVGuardaSistemaArquivos guarda(lento);
    CXVRoteiroAleatorio roteiro = maquina.Roteiro(std::strtoull(argv[3], nullptr, 10));
    const std::size_t uiPassos = argc > 4 ? std::strtoull(argv[4], nullptr, 10) : roteiro.GetQuantidade();
    bool bOk = Diz("aberta", roteiro.Abre());
    for (std::size_t ui = 0; bOk && ui < uiPassos; ++ui) bOk = Diz("feito", roteiro.Passo());
    roteiro.Fecha();
    Diz("fim");
    return bOk ? EXIT_SUCCESS : EXIT_FAILURE;
}
