// Writes error records from several threads: XVEscreveTrace DIRECTORY NAME THREADS RECORDS. Prints the
// number of records that were lost. A log that another process holds is waited for as long as it takes:
// nothing may be lost, however the machine shares itself out.
#include <cstdio>
#include <cstdlib>

#include "platform/XVPlataforma.h"
#include "support/XVAmbiente.h"
#include "support/trace/XVCheck.h"
#include "support/trace/XVProfiler.h"
#include "tests/harness/XVEmThreads.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"
#include "tests/harness/XVSistemaArquivosEnvolto.h"

namespace {

struct SVigiaInsistente {
    template <class TFaz, class TMetade>
    CXVErroArquivo Opera(const SOperacaoArquivo&, TFaz fnFaz, TMetade) {
        CXVErroArquivo erro = fnFaz();
        for (; erro.GetCausa() == ECausaArquivo::eViolacaoCompartilhamento; erro = fnFaz())
            std::this_thread::yield();
        return erro;
    }
    void Abriu(const std::shared_ptr<SAberto>&) {}
    void Fecha(SAberto& rAberto) { rAberto.Solta(); }
};

}  // namespace

int main(int iArgumentos, char** apszArgumentos) {
    if (iArgumentos != 5) return 2;
    CXVRegistryFalso registry;
    registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", apszArgumentos[1]);
    const CXVGuardaRegistry guarda(registry);
    TXVSistemaArquivosEnvolto<SVigiaInsistente> arquivos(XVPlataforma::SistemaArquivosNativo());
    const CXVGuardaSistemaArquivos guardaArquivos(arquivos);
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
