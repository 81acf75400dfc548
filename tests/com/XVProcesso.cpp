#include "tests/com/XVProcesso.h"

#include <tlhelp32.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include "platform/XVAmbienteSO.h"

namespace {

std::wstring ArquivoTemporario() {
    wchar_t szPasta[MAX_PATH];
    wchar_t szArquivo[MAX_PATH];
    ::GetTempPathW(MAX_PATH, szPasta);
    ::GetTempFileNameW(szPasta, L"xvc", 0, szArquivo);
    return szArquivo;
}

}  // namespace

CXVProcesso::CXVProcesso(const std::wstring& sPrograma, const std::wstring& sArgumentos)
    : m_sArquivoErros(ArquivoTemporario()) {
    SECURITY_ATTRIBUTES heranca{sizeof(heranca), nullptr, TRUE};
    const HANDLE hErros = ::CreateFileW(m_sArquivoErros.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &heranca,
                                        CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    STARTUPINFOW inicio{};
    inicio.cb = sizeof(inicio);
    inicio.dwFlags = STARTF_USESTDHANDLES;
    inicio.hStdError = hErros;
    std::wstring sLinha = L"\"" + sPrograma + L"\" " + sArgumentos;
    if (::CreateProcessW(nullptr, sLinha.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &inicio,
                         &m_informacao) == 0)
        m_informacao = {};
    ::CloseHandle(hErros);
}

CXVProcesso::CXVProcesso(CXVProcesso&& rOutro) noexcept
    : m_informacao(std::exchange(rOutro.m_informacao, {})),
      m_sArquivoErros(std::move(rOutro.m_sArquivoErros)) {}

CXVProcesso::~CXVProcesso() {
    if (m_informacao.hProcess == nullptr) return;
    Mata();
    ::CloseHandle(m_informacao.hThread);
    ::CloseHandle(m_informacao.hProcess);
    ::DeleteFileW(m_sArquivoErros.c_str());
}

bool CXVProcesso::Espera(DWORD ulMilissegundos) const {
    return ::WaitForSingleObject(m_informacao.hProcess, ulMilissegundos) == WAIT_OBJECT_0;
}

DWORD CXVProcesso::GetCodigo() const {
    DWORD ulCodigo = 0xFFFFFFFFU;
    if (m_informacao.hProcess != nullptr && Espera(120000))
        ::GetExitCodeProcess(m_informacao.hProcess, &ulCodigo);
    return ulCodigo;
}

std::string CXVProcesso::GetErros() const {
    std::ifstream arquivo{std::filesystem::path(m_sArquivoErros), std::ios::binary};
    return {std::istreambuf_iterator<char>(arquivo), {}};
}

void CXVProcesso::Mata() {
    if (!Espera(0)) ::TerminateProcess(m_informacao.hProcess, 99);
    Espera(10000);
}

namespace XVProcessos {

std::wstring ProgramaAtual() {
    wchar_t szPrograma[MAX_PATH * 2];
    const DWORD ulTamanho =
        ::GetModuleFileNameW(nullptr, szPrograma, static_cast<DWORD>(std::size(szPrograma)));
    return {szPrograma, ulTamanho};
}

// tests/com/<this program>, server/XVCR_Middleware.exe
std::wstring ProgramaServidor() {
    const std::filesystem::path construcao =
        std::filesystem::path(ProgramaAtual()).parent_path() / ".." / "..";
    return (construcao / "server" / "XVCR_Middleware.exe").lexically_normal().make_preferred().wstring();
}

CXVProcesso Filho(const std::wstring& sArgumentos) {
    return {ProgramaAtual(), L"--filho " + sArgumentos};
}

DWORD ExecutaServidor(const std::wstring& sSwitch, std::string* psErros) {
    const CXVProcesso processo(ProgramaServidor(), sSwitch);
    const DWORD ulCodigo = processo.GetCodigo();
    if (psErros != nullptr) *psErros = processo.GetErros();
    return ulCodigo;
}

std::vector<DWORD> Servidores() {
    std::vector<DWORD> lista;
    const HANDLE hFoto = ::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W entrada{};
    entrada.dwSize = sizeof(entrada);
    for (BOOL bTem = ::Process32FirstW(hFoto, &entrada); bTem != FALSE;
         bTem = ::Process32NextW(hFoto, &entrada))
        if (::lstrcmpiW(entrada.szExeFile, L"XVCR_Middleware.exe") == 0)
            lista.push_back(entrada.th32ProcessID);
    ::CloseHandle(hFoto);
    return lista;
}

bool EsperaServidores(std::size_t uiQuantidade, DWORD ulMilissegundos) {
    for (DWORD ulEsperado = 0; ulEsperado <= ulMilissegundos; ulEsperado += 50) {
        if (Servidores().size() == uiQuantidade) return true;
        ::Sleep(50);
    }
    return false;
}

void MataServidores() {
    for (const DWORD ulId : Servidores()) {
        const HANDLE hProcesso = ::OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, ulId);
        if (hProcesso == nullptr) continue;
        ::TerminateProcess(hProcesso, 98);
        ::WaitForSingleObject(hProcesso, 10000);
        ::CloseHandle(hProcesso);
    }
}

void PedeFimAosServidores() {
    if (const HWND hJanela = ::FindWindowW(L"XVCR_Middleware", nullptr); hJanela != nullptr) {
        ::PostMessageW(hJanela, WM_CLOSE, 0, 0);
        return;
    }
    const std::vector<DWORD> lista = Servidores();
    const HANDLE hFoto = ::CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entrada{};
    entrada.dwSize = sizeof(entrada);
    for (BOOL bTem = ::Thread32First(hFoto, &entrada); bTem != FALSE; bTem = ::Thread32Next(hFoto, &entrada))
        if (std::find(lista.begin(), lista.end(), entrada.th32OwnerProcessID) != lista.end())
            ::PostThreadMessageW(entrada.th32ThreadID, WM_QUIT, 0, 0);
    ::CloseHandle(hFoto);
}

}  // namespace XVProcessos
