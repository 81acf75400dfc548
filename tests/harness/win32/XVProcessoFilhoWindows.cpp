#include <windows.h>

#include <stdexcept>
#include <utility>

#include "platform/XVAmbienteSO.h"
#include "platform/win32/XVTextoWindows.h"
#include "tests/harness/XVProcessoFilho.h"

namespace {

constexpr UINT k_uiCodigoMorto = 0xDEAD;

void Fecha(HANDLE& rhHandle) {
    if (rhHandle != nullptr) CloseHandle(std::exchange(rhHandle, nullptr));
}

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

// A pipe of which only the child's end can be inherited.
void CriaCano(HANDLE& rhLeitura, HANDLE& rhEscrita, bool bFilhoLe) {
    SECURITY_ATTRIBUTES atributos{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    if (!CreatePipe(&rhLeitura, &rhEscrita, &atributos, 0) ||
        !SetHandleInformation(bFilhoLe ? rhEscrita : rhLeitura, HANDLE_FLAG_INHERIT, 0))
        throw std::runtime_error("CreatePipe");
}

}  // namespace

struct CXVProcessoFilho::SSistema {
    HANDLE hProcesso = nullptr;
    HANDLE hEntrada = nullptr;
    HANDLE hSaida = nullptr;
};

CXVProcessoFilho::CXVProcessoFilho(const std::string& sPrograma,
                                   const std::vector<std::string>& listaArgumentos,
                                   const SFluxosFilho& rFluxos)
    : m_pSistema(std::make_unique<SSistema>()) {
    STARTUPINFOW inicio{};
    inicio.cb = sizeof(inicio);
    inicio.dwFlags = STARTF_USESTDHANDLES;
    HANDLE hErro = nullptr;
    if (rFluxos.sEntrada.empty())
        CriaCano(inicio.hStdInput, m_pSistema->hEntrada, true);
    else
        inicio.hStdInput = Abre(rFluxos.sEntrada, GENERIC_READ, OPEN_EXISTING);
    if (rFluxos.sSaida.empty())
        CriaCano(m_pSistema->hSaida, inicio.hStdOutput, false);
    else
        inicio.hStdOutput = Abre(rFluxos.sSaida, GENERIC_WRITE, CREATE_ALWAYS);
    if (!rFluxos.sErro.empty()) hErro = Abre(rFluxos.sErro, GENERIC_WRITE, CREATE_ALWAYS);
    inicio.hStdError = hErro != nullptr ? hErro : GetStdHandle(STD_ERROR_HANDLE);
    std::string sComando = Cita(sPrograma);
    for (const std::string& sArgumento : listaArgumentos) sComando += ' ' + Cita(sArgumento);
    std::wstring sLargo = Largo(sComando);
    PROCESS_INFORMATION informacao{};
    const BOOL bCriado = CreateProcessW(nullptr, sLargo.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                                        &inicio, &informacao);
    Fecha(inicio.hStdInput);
    Fecha(inicio.hStdOutput);
    Fecha(hErro);
    if (!bCriado) throw std::runtime_error("CreateProcess " + sPrograma);
    Fecha(informacao.hThread);
    m_pSistema->hProcesso = informacao.hProcess;
}

CXVProcessoFilho::~CXVProcessoFilho() {
    Mata();
    Fecha(m_pSistema->hEntrada);
    Fecha(m_pSistema->hSaida);
}

bool CXVProcessoFilho::LeByte(char& rcByte) {
    DWORD ulLidos = 0;
    return ReadFile(m_pSistema->hSaida, &rcByte, 1, &ulLidos, nullptr) && ulLidos == 1;
}

void CXVProcessoFilho::Escreve(const std::string& sTexto) {
    DWORD ulEscritos = 0;
    if (!WriteFile(m_pSistema->hEntrada, sTexto.data(), static_cast<DWORD>(sTexto.size()), &ulEscritos,
                   nullptr) ||
        ulEscritos != sTexto.size())
        throw std::runtime_error("WriteFile into the child's input");
}

void CXVProcessoFilho::FechaEntrada() {
    Fecha(m_pSistema->hEntrada);
}

long CXVProcessoFilho::GetNumero() const {
    return static_cast<long>(GetProcessId(m_pSistema->hProcesso));
}

void CXVProcessoFilho::Mata() {
    if (m_pSistema->hProcesso == nullptr) return;
    TerminateProcess(m_pSistema->hProcesso, k_uiCodigoMorto);
    EsperaFim();
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
