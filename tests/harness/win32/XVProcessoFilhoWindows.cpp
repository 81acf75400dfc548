#include <windows.h>

#include <array>
#include <stdexcept>
#include <utility>

#include "platform/XVAmbienteSO.h"
#include "platform/win32/XVTextoWindows.h"
#include "tests/harness/XVProcessoFilho.h"

namespace {

constexpr UINT k_uiCodigoMorto = 0xDEAD;

void Fecha(HANDLE& rhHandle) {
    if (rhHandle != nullptr) {
        CloseHandle(std::exchange(rhHandle, nullptr));
    }
}

// A pipe of which only the child's end can be inherited.
void CriaCano(HANDLE& rhLeitura, HANDLE& rhEscrita, bool bFilhoLe) {
    SECURITY_ATTRIBUTES atributos{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    if (!CreatePipe(&rhLeitura, &rhEscrita, &atributos, 0) ||
        !SetHandleInformation(bFilhoLe ? rhEscrita : rhLeitura, HANDLE_FLAG_INHERIT, 0)) {
        throw std::runtime_error("CreatePipe");
    }
}

}  // namespace

struct CXVProcessoFilho::SSistema {
    HANDLE hProcesso = nullptr;
    HANDLE hEntrada = nullptr;
    HANDLE hSaida = nullptr;
};

CXVProcessoFilho::CXVProcessoFilho(const std::string& sPrograma,
                                   const std::vector<std::string>& listaArgumentos)
    : m_pSistema(std::make_unique<SSistema>()) {
    STARTUPINFOW inicio{};
    inicio.cb = sizeof(inicio);
    inicio.dwFlags = STARTF_USESTDHANDLES;
    inicio.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    CriaCano(inicio.hStdInput, m_pSistema->hEntrada, true);
    CriaCano(m_pSistema->hSaida, inicio.hStdOutput, false);
    // The arguments of the tests hold neither quotes nor a backslash at their end.
    std::string sComando = '"' + sPrograma + '"';
    for (const std::string& sArgumento : listaArgumentos) {
        sComando.append(" \"").append(sArgumento).append(1, '"');
    }
    std::wstring sLargo;
    PROCESS_INFORMATION informacao{};
    const bool bCriado = XVTextoWindows::ParaLargo(sComando, sLargo) &&
                         CreateProcessW(nullptr, sLargo.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                                        &inicio, &informacao);
    Fecha(inicio.hStdInput);
    Fecha(inicio.hStdOutput);
    if (!bCriado) {
        throw std::runtime_error("CreateProcess " + sPrograma);
    }
    Fecha(informacao.hThread);
    m_pSistema->hProcesso = informacao.hProcess;
}

CXVProcessoFilho::~CXVProcessoFilho() {
    Mata();
    Fecha(m_pSistema->hEntrada);
    Fecha(m_pSistema->hSaida);
}

std::string CXVProcessoFilho::LePedaco() {
    std::array<char, 4096> aBytes{};
    DWORD ulLidos = 0;
    if (!ReadFile(m_pSistema->hSaida, aBytes.data(), static_cast<DWORD>(aBytes.size()), &ulLidos, nullptr)) {
        return {};
    }
    return std::string(aBytes.data(), ulLidos);
}

void CXVProcessoFilho::FechaEntrada() {
    Fecha(m_pSistema->hEntrada);
}

void CXVProcessoFilho::Mata() {
    if (m_pSistema->hProcesso != nullptr) {
        TerminateProcess(m_pSistema->hProcesso, k_uiCodigoMorto);
        EsperaFim();
    }
}

int CXVProcessoFilho::EsperaFim() {
    DWORD ulCodigo = k_uiCodigoMorto;
    WaitForSingleObject(m_pSistema->hProcesso, INFINITE);
    GetExitCodeProcess(m_pSistema->hProcesso, &ulCodigo);
    Fecha(m_pSistema->hProcesso);
    return ulCodigo == k_uiCodigoMorto ? -1 : static_cast<int>(ulCodigo);
}

std::string XVProgramaVizinho(const std::string& sNome) {
    return XVAmbienteSO::GetDiretorioExecutavel() + "\\" + sNome + ".exe";
}
