#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>
#include <stdio.h>

#include "platform/XVConsole.h"
#include "platform/win32/XVTextoWindows.h"

namespace {

bool EhConsole(DWORD dwFluxo) {
    DWORD dwModo = 0;
    return GetConsoleMode(GetStdHandle(dwFluxo), &dwModo) != FALSE;
}

}  // namespace

namespace XVConsole {

void Prepara() {
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    if (EhConsole(STD_OUTPUT_HANDLE) || EhConsole(STD_ERROR_HANDLE)) SetConsoleOutputCP(CP_UTF8);
}

std::vector<std::string> GetArgumentos(int, const char* const*) {
    // The narrow arguments have lost what the system's code page does not hold.
    std::vector<std::string> listaArgumentos;
    int iQuantidade = 0;
    LPWSTR* ppszLargos = CommandLineToArgvW(GetCommandLineW(), &iQuantidade);
    for (int i = 1; i < iQuantidade; ++i) listaArgumentos.push_back(XVTextoWindows::ParaUtf8(ppszLargos[i]));
    LocalFree(ppszLargos);
    return listaArgumentos;
}

void CanoSemLeitorEhFalha() {}  // it always is

bool SaidaEhTerminal() {
    return EhConsole(STD_OUTPUT_HANDLE);
}
unsigned GetLarguraSaida() {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info) == FALSE) return 0;
    return static_cast<unsigned>(info.srWindow.Right - info.srWindow.Left + 1);
}
bool SaidaAceitaCores() {
    const HANDLE hSaida = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD dwModo = 0;
    return GetConsoleMode(hSaida, &dwModo) != FALSE &&
           SetConsoleMode(hSaida, dwModo | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != FALSE;
}
bool ErroEhTerminal() {
    return EhConsole(STD_ERROR_HANDLE);
}

}  // namespace XVConsole
