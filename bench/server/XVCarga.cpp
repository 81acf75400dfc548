// Usage: xv_carga FORM NUMBER [FORM NUMBER]...
// Forms: mista and memoria (calls), chamadas (seconds), rodadas and reinicios (rounds), mortes (kills). Exit
// code 0: all held. Run by scripts/soak.
#include "bench/server/XVCarga.h"

#include <psapi.h>

#include <algorithm>
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

namespace {

std::size_t Residente(HANDLE hProcesso) {
    PROCESS_MEMORY_COUNTERS contadores{};
    ::GetProcessMemoryInfo(hProcesso, &contadores, sizeof(contadores));
    return contadores.WorkingSetSize;
}

DWORD WINAPI EsperaEvento(void* pEvento) {
    return ::WaitForSingleObject(pEvento, INFINITE);
}

// What a thread brings with it: under Wine its whole stack, a megabyte; found out with threads of this
// process.
std::size_t MemoriaDeUmaThread() {
    constexpr std::size_t k_uiThreads = 8;
    const HANDLE hEvento = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    const std::size_t uiAntes = Residente(::GetCurrentProcess());
    HANDLE ahThreads[k_uiThreads];
    for (HANDLE& rh : ahThreads) rh = ::CreateThread(nullptr, 0, EsperaEvento, hEvento, 0, nullptr);
    ::Sleep(200);
    const std::size_t uiTodas = Residente(::GetCurrentProcess()) - uiAntes;
    ::SetEvent(hEvento);
    ::WaitForMultipleObjects(k_uiThreads, ahThreads, TRUE, INFINITE);
    for (const HANDLE h : ahThreads) ::CloseHandle(h);
    ::CloseHandle(hEvento);
    return uiTodas / k_uiThreads;
}

std::size_t Threads(DWORD ulProcesso) {
    std::size_t uiThreads = 0;
    const HANDLE hFoto = ::CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entrada{};
    entrada.dwSize = sizeof(entrada);
    for (BOOL bTem = ::Thread32First(hFoto, &entrada); bTem != FALSE; bTem = ::Thread32Next(hFoto, &entrada))
        if (entrada.th32OwnerProcessID == ulProcesso) ++uiThreads;
    ::CloseHandle(hFoto);
    return uiThreads;
}

}  // namespace

std::size_t MemoriaServidor() {
    static const std::size_t s_uiThread = MemoriaDeUmaThread();
    const auto lista = XVServidores::Lista();
    if (lista.empty()) return 0;
    const HANDLE hProcesso = ::OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, lista.front());
    const std::size_t uiResidente = Residente(hProcesso);
    ::CloseHandle(hProcesso);
    return uiResidente - std::min(uiResidente, s_uiThread * Threads(lista.front()));
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
    if (argc < 3 || argc % 2 == 0) {
        std::fputs("Usage: xv_carga FORM NUMBER [FORM NUMBER]...\n", stderr);
        return 2;
    }
    const XVCliente::CApartamento apartamento;
    if (!XVAmbienteCom::Prepara()) return 2;
    bool bSegurou = true;
    for (int i = 1; i < argc; i += 2) {
        const auto forma = k_formas.find(argv[i]);
        bSegurou = forma != k_formas.end() && forma->second(std::atoi(argv[i + 1])) && bSegurou;
    }
    XVAmbienteCom::Desfaz();
    return bSegurou ? 0 : 1;
}
