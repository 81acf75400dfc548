// Processes of the tests: the server program with a switch, and this very program again as a client.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

class CXVProcesso {
  public:
    // Starts the program with its arguments; what it writes to the standard error is kept.
    CXVProcesso(const std::wstring& sPrograma, const std::wstring& sArgumentos);
    ~CXVProcesso();  // kills it when it still runs
    CXVProcesso(CXVProcesso&& rOutro) noexcept;
    CXVProcesso(const CXVProcesso&) = delete;
    CXVProcesso& operator=(const CXVProcesso&) = delete;

    // False: still running after the time.
    bool Espera(DWORD ulMilissegundos) const;
    // Waits up to two minutes. A process that does not end: 0xFFFFFFFF.
    DWORD GetCodigo() const;
    std::string GetErros() const;  // after its end
    void Mata();

  private:
    PROCESS_INFORMATION m_informacao{};
    std::wstring m_sArquivoErros;
};

namespace XVProcessos {

std::wstring ProgramaAtual();
std::wstring ProgramaServidor();
// This program as a client ("--filho <modo> ...").
CXVProcesso Filho(const std::wstring& sArgumentos);
DWORD ExecutaServidor(const std::wstring& sSwitch, std::string* psErros = nullptr);

// The server processes that run.
std::vector<DWORD> Servidores();
// Waits until exactly that many run.
bool EsperaServidores(std::size_t uiQuantidade, DWORD ulMilissegundos);
void MataServidores();
// Asks them to end as the system does: WM_CLOSE to the hidden window or, where there is no display for
// one, WM_QUIT to the thread that pumps.
void PedeFimAosServidores();

}  // namespace XVProcessos
