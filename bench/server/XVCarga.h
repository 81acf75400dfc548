// The load program: the real server under many calls, many clients and deaths. What its forms share, and the
// forms themselves. Each form prints what it sees as it goes and ends with one line of figures; true: what it
// looks for held.
//
// A form is a function of the parent process, which starts this program again for each client of its own
// ("--filho <form> ..."); such a process says what it has to say in lines on its output.
#pragma once

#include <windows.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "client/XVCliente.h"
#include "tests/harness/XVProcessoFilho.h"

namespace XVCarga {

using TArgumentos = std::vector<std::string>;
using TFilhos = std::vector<std::unique_ptr<CXVProcessoFilho>>;

inline std::unique_ptr<CXVProcessoFilho> Filho(TArgumentos argumentos) {
    argumentos.insert(argumentos.begin(), "--filho");
    return std::make_unique<CXVProcessoFilho>(XVProgramaVizinho("xv_carga"), argumentos);
}

class CCronometro {
  public:
    double Segundos() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_inicio).count();
    }

  private:
    const std::chrono::steady_clock::time_point m_inicio = std::chrono::steady_clock::now();
};

// An integration of about the size of a real one, told from all others by its external key and its text.
CXVDadosCR_IntegracaoMiddleware Integracao(XVUInt64 uiChave, std::size_t uiBytes);

// The server's resident memory in bytes, without what its threads bring with them, which come and go with the
// runtime of remote calls; 0: none runs.
std::size_t MemoriaServidor();

// Says on the error output which step failed, and with what.
void DizFalha(const char* pszPasso, HRESULT hr);

// Calls of mixed methods by one client; from 10,000 on the server's memory must stay level.
bool Mista(int iChamadas);
// How much memory a call of each method leaves behind in the server, over iChamadas calls of each.
bool Memoria(int iChamadas);
// Calls a second, of 1 and of 4 client processes.
bool Chamadas(int iSegundos);
void ChamadasFilho(const TArgumentos& a);
// Connect, write, disconnect from 3 processes; with a server that is kept up, or one that leaves with its
// last client. From 300 rounds on with a server that is up, also false where one takes more than 0.3 s.
bool Rodadas(int iRodadas, bool bServidorFica);
void RodadasFilho(const TArgumentos& a);
// The server killed every few seconds under 4 writing clients.
bool Mortes(int iMortes);
void MortesFilho(const TArgumentos& a);

}  // namespace XVCarga
