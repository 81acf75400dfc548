// Usage: xv_carga mista CALLS | memoria CALLS | chamadas SECONDS | rodadas ROUNDS | reinicios ROUNDS | mortes
// KILLS Several forms may follow each other. Exit code 0: all held. Run by scripts/soak.
#include "bench/server/XVCarga.h"

#include <psapi.h>

#include <cstdio>
#include <cstdlib>
#include <map>

#include "tests/com/XVAmbienteCom.h"
#include "tests/com/XVServidores.h"

namespace XVCarga {

CXVDadosCR_IntegracaoMiddleware Integracao(XVUInt64 uiChave, std::size_t uiBytes) {
    std::string sTexto = "{\"chave\":" + std::to_string(uiChave) + ",\"itens\":\"";
    sTexto.append(uiBytes > sTexto.size() + 2 ? uiBytes - sTexto.size() - 2 : 0, 'i').append("\"}");
    auto dados = XVAmbienteCom::IntegracaoPendente(sTexto);
    dados.uiChaveIntegracaoSistemaTerceiro = uiChave;
    return dados;
}

std::size_t MemoriaServidor() {
    const auto lista = XVServidores::Lista();
    if (lista.empty()) return 0;
    const HANDLE hProcesso = ::OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, lista.front());
    PROCESS_MEMORY_COUNTERS contadores{};
    ::GetProcessMemoryInfo(hProcesso, &contadores, sizeof(contadores));
    ::CloseHandle(hProcesso);
    return contadores.WorkingSetSize;
}

void DizFalha(const char* pszPasso, HRESULT hr) {
    std::fprintf(stderr, "%s: %s\n", pszPasso, XVCliente::DescreveCodigo(hr).c_str());
}

}  // namespace XVCarga

namespace {

using namespace XVCarga;

int ExecutaFilho(const TArgumentos& a) {
    const XVCliente::CApartamento apartamento;
    if (a.at(0) == "rodadas") RodadasFilho(a);
    if (a.at(0) == "mortes") MortesFilho(a);
    if (a.at(0) == "chamadas") ChamadasFilho(a);
    return 0;
}

const std::map<std::string, bool (*)(int)> k_formas{
    {"mista", Mista},
    {"memoria", Memoria},
    {"chamadas", Chamadas},
    {"mortes", Mortes},
    {"rodadas", [](int iRodadas) { return Rodadas(iRodadas, true); }},
    {"reinicios", [](int iRodadas) { return Rodadas(iRodadas, false); }}};

}  // namespace

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    if (argc > 2 && std::string(argv[1]) == "--filho") return ExecutaFilho({argv + 2, argv + argc});
    const XVCliente::CApartamento apartamento;
    if (!XVAmbienteCom::Prepara()) return 2;
    bool bSegurou = true;
    for (int i = 1; i + 1 < argc; i += 2) {
        const auto forma = k_formas.find(argv[i]);
        bSegurou = forma != k_formas.end() && forma->second(std::atoi(argv[i + 1])) && bSegurou;
    }
    XVAmbienteCom::Desfaz();
    return bSegurou ? 0 : 1;
}
