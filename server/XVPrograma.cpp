// Entry of the server program.
#include <windows.h>

#include <shellapi.h>

#include <cstdio>

#include "platform/XVRegistryArquivo.h"
#include "platform/win32/XVTextoWindows.h"
#include "server/XVInscricaoClasse.h"
#include "server/XVLinhaComando.h"
#include "server/XVPedidoFim.h"
#include "server/XVServidor.h"
#include "server/XVTratamentoCrash.h"
#include "support/XVAmbiente.h"
#include "support/trace/XVProfiler.h"

namespace {

constexpr const char* k_pszUso =
    "XVCR_Middleware: argumento desconhecido. Use /RegServer [/Conta:conta] [/Acesso:grupo], /UnregServer, "
    "/RegServerPerUser, /UnregServerPerUser ou /Stop, ou nenhum para servir.\n";

// Writes one line to a standard output. This is a program without a console, so it has such an output only
// when whoever started it passed one on; otherwise nothing is written.
void Escreve(DWORD ulSaida, const char* pszLinha) {
    const HANDLE hSaida = ::GetStdHandle(ulSaida);
    if (hSaida == nullptr || hSaida == INVALID_HANDLE_VALUE) return;
    DWORD ulGravados = 0;
    ::WriteFile(hSaida, pszLinha, static_cast<DWORD>(::lstrlenA(pszLinha)), &ulGravados, nullptr);
}

int Relata(HRESULT hr, const char* pszPasso) {
    if (SUCCEEDED(hr)) return 0;
    char szLinha[512];
    std::snprintf(szLinha, sizeof(szLinha), "XVCR_Middleware: não foi possível %s (código 0x%08lX).\n",
                  pszPasso, static_cast<unsigned long>(hr));
    Escreve(STD_ERROR_HANDLE, szLinha);
    XVProfiler::RecordError(nullptr, "XVCR_Middleware", "server/XVPrograma", __LINE__, "%s", szLinha);
    return static_cast<int>(hr);
}

int Relata(const SResultadoInscricao& rResultado) {
    return Relata(rResultado.hr, rResultado.sPasso.c_str());
}

int Para() {
    const SParada parada = XVParaServidores();
    if (FAILED(parada.hr)) return Relata(parada.hr, "terminar o servidor no tempo previsto");
    Escreve(STD_OUTPUT_HANDLE, ("XVCR_Middleware: " + XVTextoDaParada(parada) + "\n").c_str());
    return 0;
}

int Executa(EComandoServidor eComando, const SOpcoesInscricao& rOpcoes) {
    switch (eComando) {
        case EComandoServidor::eRegistra:
            return Relata(XVInscreveClasse(EEscopoInscricao::eMaquina, rOpcoes));
        case EComandoServidor::eDesregistra:
            return Relata(XVRemoveClasse(EEscopoInscricao::eMaquina));
        case EComandoServidor::eRegistraUsuario:
            return Relata(XVInscreveClasse(EEscopoInscricao::eUsuario));
        case EComandoServidor::eDesregistraUsuario:
            return Relata(XVRemoveClasse(EEscopoInscricao::eUsuario));
        case EComandoServidor::ePara:
            return Para();
        case EComandoServidor::eServe:
        case EComandoServidor::eServeAtivado: {
            const SFimServidor fim = XVExecutaServidor(eComando == EComandoServidor::eServeAtivado);
            return Relata(fim.hr, fim.pszPasso);
        }
        case EComandoServidor::eDesconhecido:
            break;
    }
    Escreve(STD_ERROR_HANDLE, k_pszUso);
    return static_cast<int>(E_INVALIDARG);
}

std::vector<std::wstring_view> Argumentos(wchar_t** ppszArgumentos, int iQuantidade) {
    std::vector<std::wstring_view> lista;
    for (int i = 1; i < iQuantidade; ++i) lista.emplace_back(ppszArgumentos[i]);
    return lista;
}

// The module directory as a path of the system; empty where it is not configured.
std::wstring DiretorioLogs() {
    std::string sDiretorio;
    if (FAILED(CAmbienteXV::GetDiretorioModulo(k_eModuloBase, &sDiretorio))) return {};
    std::wstring sLargo;
    return XVTextoWindows::ParaLargo(sDiretorio, sLargo) ? sLargo : std::wstring();
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    // Libraries are looked for beside the program and in the system only.
    ::SetDllDirectoryW(L"");
    // The environment is that of whoever starts the server; its configuration is the machine's.
    ::SetEnvironmentVariableA(CXVRegistryArquivo::k_pszVariavel, nullptr);
    if (XVTratamentoCrash::EstaHabilitado()) XVTratamentoCrash::Instala(DiretorioLogs());
    int iQuantidade = 0;
    wchar_t** ppszArgumentos = ::CommandLineToArgvW(::GetCommandLineW(), &iQuantidade);
    if (ppszArgumentos == nullptr) return static_cast<int>(HRESULT_FROM_WIN32(::GetLastError()));
    SOpcoesInscricao opcoes;
    const EComandoServidor eComando = XVLeLinhaComando(Argumentos(ppszArgumentos, iQuantidade), &opcoes);
    ::LocalFree(ppszArgumentos);
    return Executa(eComando, opcoes);
}
