#include <windows.h>

#include <stdexcept>

#include "platform/win32/XVTextoWindows.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVExecucao.h"

namespace {

std::wstring Largo(const std::string& sTexto) {
    std::wstring sLargo;
    if (!XVTextoWindows::ParaLargo(sTexto, sLargo)) throw std::runtime_error("not UTF-8: " + sTexto);
    return sLargo;
}

// The argument so that the started program finds it again as it is: quoted, and with a backslash before each
// quote and before the backslashes that stand before a quote.
std::string Cita(const std::string& sArgumento) {
    std::string sCitado = "\"";
    std::size_t uiBarras = 0;
    for (const char c : sArgumento) {
        if (c == '"') sCitado.append(uiBarras + 1, '\\');
        uiBarras = c == '\\' ? uiBarras + 1 : 0;
        sCitado += c;
    }
    return sCitado.append(uiBarras, '\\') + '"';
}

HANDLE Abre(const std::string& sCaminho, DWORD dwAcesso, DWORD dwCriacao) {
    SECURITY_ATTRIBUTES atributos{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    const HANDLE hArquivo = CreateFileW(Largo(sCaminho).c_str(), dwAcesso, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                        &atributos, dwCriacao, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (hArquivo == INVALID_HANDLE_VALUE) throw std::runtime_error("CreateFile " + sCaminho);
    return hArquivo;
}

}  // namespace

SExecucao XVExecuta(const std::string& sPrograma, const std::vector<std::string>& listaArgumentos,
                    const std::string& sEntrada) {
    const CXVDiretorioTeste diretorio;
    diretorio.CriaArquivo("entrada", sEntrada);
    STARTUPINFOW inicio{};
    inicio.cb = sizeof(inicio);
    inicio.dwFlags = STARTF_USESTDHANDLES;
    inicio.hStdInput = Abre(diretorio.Junta("entrada"), GENERIC_READ, OPEN_EXISTING);
    inicio.hStdOutput = Abre(diretorio.Junta("saida"), GENERIC_WRITE, CREATE_ALWAYS);
    inicio.hStdError = Abre(diretorio.Junta("erro"), GENERIC_WRITE, CREATE_ALWAYS);

    std::string sComando = Cita(sPrograma);
    for (const std::string& rArgumento : listaArgumentos) sComando += ' ' + Cita(rArgumento);
    std::wstring sLargo = Largo(sComando);
    PROCESS_INFORMATION informacao{};
    const BOOL bCriado = CreateProcessW(nullptr, sLargo.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                                        &inicio, &informacao);
    CloseHandle(inicio.hStdInput);
    CloseHandle(inicio.hStdOutput);
    CloseHandle(inicio.hStdError);
    if (!bCriado) throw std::runtime_error("CreateProcess " + sPrograma);

    WaitForSingleObject(informacao.hProcess, INFINITE);
    DWORD ulCodigo = 0;
    GetExitCodeProcess(informacao.hProcess, &ulCodigo);
    CloseHandle(informacao.hThread);
    CloseHandle(informacao.hProcess);
    return {static_cast<int>(ulCodigo), diretorio.LeConteudo("saida").value_or(""),
            diretorio.LeConteudo("erro").value_or("")};
}
