// Writes error records from several threads: XVEscreveTrace DIRECTORY NAME THREADS RECORDS. Prints the
// number of records that were lost.
#include <cstdio>
#include <cstdlib>

#include "support/XVAmbiente.h"
#include "support/trace/XVCheck.h"
#include "support/trace/XVProfiler.h"
#include "tests/harness/XVEmThreads.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"

int main(int iArgumentos, char** apszArgumentos) {
    if (iArgumentos != 5) return 2;
    CXVRegistryFalso registry;
    registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", apszArgumentos[1]);
    const CXVGuardaRegistry guarda(registry);
    const std::string sNome = apszArgumentos[2];
    const int iLinhas = std::atoi(apszArgumentos[4]);
    XVEmThreads(static_cast<unsigned>(std::atoi(apszArgumentos[3])), [&](unsigned iThread) {
        for (int i = 0; i < iLinhas; ++i) {
            const std::string sExpressao = sNome + '/' + std::to_string(iThread) + '/' + std::to_string(i);
            CheckHr(E_FAIL, sExpressao.c_str(), "CEscreve::Escreve", "tests/support/XVEscreveTrace", i,
                    nullptr);
        }
    });
    std::printf("%llu\n", static_cast<unsigned long long>(XVProfiler::GetLinhasPerdidas()));
    return 0;
}
